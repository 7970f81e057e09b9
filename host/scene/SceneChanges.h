#ifndef MORVANE_HOST_SCENE_SCENECHANGES_H_
#define MORVANE_HOST_SCENE_SCENECHANGES_H_

#include <cstddef>
#include <cstdint>
#include <set>
#include <utility>
#include <vector>

#include "host/scene/Node.h"

namespace host {

// Which nodes were given a value, a connection or another place in the DAG since they were last
// taken.
class SceneChanges {
 public:
  void note(const Node& node) {
    ++count_;
    if (serials_.empty() || serials_.back() != node.serial()) serials_.push_back(node.serial());
  }
  bool isEmpty() const { return serials_.empty(); }
  std::vector<std::size_t> take() { return std::exchange(serials_, {}); }
  // How often anything changed since the scene began: what was worked out at the same count holds.
  std::uint64_t count() const { return count_; }

  // The serials of the meshes whose shapes depend on other nodes; some of them may be gone.
  std::set<std::size_t> dependentMeshes;

 private:
  std::vector<std::size_t> serials_;
  std::uint64_t count_ = 0;
};

}  // namespace host

#endif  // MORVANE_HOST_SCENE_SCENECHANGES_H_
