#include "host/scene/Dag.h"

#include <algorithm>
#include <unordered_set>

#include "host/scene/Scene.h"
#include "host/scene/Values.h"

namespace host {
namespace {

bool isWorld(const Node& node) {
  return node.apiType() == MFn::kWorld;
}

bool hasParent(const Node& node, const Node* parent) {
  const auto& parents = node.parents();
  return std::find(parents.begin(), parents.end(), parent) != parents.end();
}

// The last `count` names of the path: "b|c" of "|a|b|c" for 2. A name below a shape follows "->|"
// in place of "|".
std::string tailOf(const std::vector<NodePtr>& nodes, std::size_t count) {
  std::string text;
  for (std::size_t i = nodes.size() - count; i < nodes.size(); ++i) {
    if (!text.empty()) text += nodes[i - 1]->isShape() ? "->|" : "|";
    text += nodes[i]->name();
  }
  return text;
}

}  // namespace

const Node* DagPath::worldAbove() const {
  const Scene* scene = isEmpty() ? nullptr : nodes_.front()->scene();
  return scene == nullptr ? nullptr : scene->world().get();
}

bool DagPath::isAlive() const {
  const Node* parent = worldAbove();
  for (const NodePtr& node : nodes_) {
    if (!node->isAlive() || !hasParent(*node, parent)) return false;
    parent = node.get();
  }
  return true;
}

std::string DagPath::fullName() const {
  return "|" + tailOf(nodes_, nodes_.size());
}

std::string DagPath::partialName() const {
  const Scene* scene = isEmpty() ? nullptr : nodes_.back()->scene();
  for (std::size_t count = 1; scene != nullptr && count <= nodes_.size(); ++count) {
    std::string tail = tailOf(nodes_, count);
    if (scene->isOnlyPath(tail)) return tail;
  }
  return fullName();
}

unsigned DagPath::instanceNumber() const {
  std::size_t number = 0;
  const Node* parent = worldAbove();
  for (const NodePtr& node : nodes_) {
    std::size_t before = 0;
    for (const Node* other : node->parents()) {
      if (other == parent) break;
      before += other->pathCount();
    }
    number += before;
    parent = node.get();
  }
  return static_cast<unsigned>(number);
}

DagPath DagPath::extendedBy(const NodePtr& child) const {
  std::vector<NodePtr> nodes = nodes_;
  nodes.push_back(child);
  return DagPath(std::move(nodes));
}

DagPath DagPath::parent() const {
  std::vector<NodePtr> nodes = nodes_;
  if (!nodes.empty()) nodes.pop_back();
  return DagPath(std::move(nodes));
}

DagPath pathOfInstance(const NodePtr& node, std::size_t instance) {
  std::vector<NodePtr> nodes;
  Node* current = node.get();
  while (!isWorld(*current)) {
    nodes.push_back(current->pointer());
    Node* through = nullptr;
    for (Node* parent : current->parents()) {
      const std::size_t count = parent->pathCount();
      if (instance < count) {
        through = parent;
        break;
      }
      instance -= count;
    }
    if (!through) return DagPath();
    current = through;
  }
  std::reverse(nodes.begin(), nodes.end());
  return DagPath(std::move(nodes));
}

std::vector<DagPath> allPaths(const NodePtr& node) {
  std::vector<DagPath> paths;
  if (isWorld(*node)) return {DagPath()};
  for (Node* parent : node->parents())
    for (const DagPath& above : allPaths(parent->pointer()))
      paths.push_back(above.extendedBy(node));
  return paths;
}

DagPath firstPath(const NodePtr& node) {
  return pathOfInstance(node, 0);
}

bool visitBelow(const NodePtr& node, const std::function<bool(const NodePtr&)>& visit) {
  // Iterates instead of recursing: a scene may be as deep as kMaxDepth.
  std::vector<NodePtr> waiting{node};
  std::unordered_set<const Node*> seen;
  while (!waiting.empty()) {
    const NodePtr next = waiting.back();
    waiting.pop_back();
    if (!seen.insert(next.get()).second) continue;
    if (!visit(next)) return false;
    waiting.insert(waiting.end(), next->children().rbegin(), next->children().rend());
  }
  return true;
}

std::vector<NodePtr> shapesBelow(const Node& transform) {
  std::vector<NodePtr> shapes;
  for (const NodePtr& child : transform.children())
    if (child->isShape() && !child->isIntermediate()) shapes.push_back(child);
  return shapes;
}

}  // namespace host
