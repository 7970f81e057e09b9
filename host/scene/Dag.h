#ifndef MORVANE_HOST_SCENE_DAG_H_
#define MORVANE_HOST_SCENE_DAG_H_

#include <maya/MBoundingBox.h>
#include <maya/MMatrix.h>

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include "host/scene/Node.h"

namespace host {

// One way from the world down to a node. The world itself has the empty path.
class DagPath {
 public:
  DagPath() = default;
  explicit DagPath(std::vector<NodePtr> nodes) : nodes_(std::move(nodes)) {}

  const std::vector<NodePtr>& nodes() const {
    return nodes_;
  }  // from the top down, without the world
  bool isEmpty() const { return nodes_.empty(); }
  const NodePtr& node() const { return nodes_.back(); }  // not for the empty path
  bool isAlive() const;  // every node is, and each is still the next one's parent

  std::string fullName() const;     // "|a|b"; "|" for the world
  std::string partialName() const;  // the shortest end of it that names this path only
  unsigned instanceNumber() const;  // position in `allPaths`

  DagPath extendedBy(const NodePtr& child) const;
  DagPath parent() const;

  // From the last node's space (its parent's) to the world's, for row vectors.
  MMatrix inclusiveMatrix() const;
  MMatrix exclusiveMatrix() const;

  bool operator==(const DagPath& o) const { return nodes_ == o.nodes_; }
  bool operator!=(const DagPath& o) const { return nodes_ != o.nodes_; }

 private:
  const Node* worldAbove() const;  // null when the first node is not alive

  std::vector<NodePtr> nodes_;
};

// A node's paths in instance order; the empty path alone for the world, none for what is not a DAG
// node.
std::vector<DagPath> allPaths(const NodePtr& node);
DagPath firstPath(const NodePtr& node);
DagPath pathOfInstance(const NodePtr& node, std::size_t instance);  // empty when there is none

// Calls `visit` with the node and all nodes below it, parents first and each instance once, until
// it returns false. Returns whether `visit` never did.
bool visitBelow(const NodePtr& node, const std::function<bool(const NodePtr&)>& visit);

// Children that are shapes and not intermediate.
std::vector<NodePtr> shapesBelow(const Node& transform);

// A transform's matrix, to its parent's space: scale pivot, scale, shear, back, scale pivot
// translation, rotate pivot, rotate axis, rotate, (joint orient,) back, rotate pivot translation,
// translate. The identity for what is not a transform.
MMatrix localMatrix(const NodePtr& node);

// The parts of that matrix that turn (rotate axis, rotate, joint orient) and stretch (scale and
// shear), about the origin.
MMatrix rotationMatrix(const NodePtr& node);
MMatrix scaleShearMatrix(const NodePtr& node);

// A shape's box in its own space; a transform's box, around all shapes below, in its parent's
// space.
MBoundingBox boundingBox(const NodePtr& node);

}  // namespace host

#endif  // MORVANE_HOST_SCENE_DAG_H_
