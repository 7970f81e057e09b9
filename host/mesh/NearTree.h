#ifndef MORVANE_HOST_MESH_NEARTREE_H_
#define MORVANE_HOST_MESH_NEARTREE_H_

#include <memory>
#include <vector>

namespace host {

struct NearBox {
  float low[3];
  float high[3];
};

// A running search: what it has found decides how far it still has to look.
class NearSearch {
 public:
  virtual ~NearSearch() = default;
  // Looks at the content of a box, given by the box's index. Returns the distance beyond which no
  // further box need be visited.
  virtual float visit(unsigned box) = 0;
};

// Boxes that a search visits from near to far.
class NearTree {
 public:
  virtual ~NearTree() = default;
  // Visits at least every box that is no farther from `from`, a finite point, than what the last
  // visit returned.
  virtual void search(const float (&from)[3], NearSearch& search) const = 0;
};

// `boxes` are finite and at least one. The first is Embree's, or null when Embree cannot start; a
// build without Embree has only the second, which is a binary tree of boxes.
std::unique_ptr<NearTree> makeEmbreeTree(std::vector<NearBox> boxes);
std::unique_ptr<NearTree> makeBoxTree(std::vector<NearBox> boxes);

}  // namespace host

#endif  // MORVANE_HOST_MESH_NEARTREE_H_
