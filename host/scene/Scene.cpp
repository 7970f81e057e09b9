#include "host/scene/Scene.h"
#include "host/scene/SceneChanges.h"

#include <algorithm>
#include <unordered_map>
#include <unordered_set>

namespace host {
namespace {

bool fail(std::string* error, std::string text) {
  if (error) *error = std::move(text);
  return false;
}

template <typename Container, typename Value>
auto findIn(Container& container, const Value& value) {
  return std::find(container.begin(), container.end(), value);
}

// Longest way down from a node. Instances are met once for each parent, so results are kept.
std::size_t heightOf(const NodePtr& node, std::unordered_map<const Node*, std::size_t>& known) {
  const auto found = known.find(node.get());
  if (found != known.end()) return found->second;
  std::size_t height = 0;
  for (const NodePtr& child : node->children())
    height = std::max(height, 1 + heightOf(child, known));
  known[node.get()] = height;
  return height;
}

std::size_t heightOf(const NodePtr& node) {
  std::unordered_map<const Node*, std::size_t> known;
  return heightOf(node, known);
}

std::size_t depthOf(const Node& node, std::unordered_map<const Node*, std::size_t>& known) {
  const auto found = known.find(&node);
  if (found != known.end()) return found->second;
  std::size_t depth = 0;
  for (const Node* parent : node.parents()) depth = std::max(depth, 1 + depthOf(*parent, known));
  known[&node] = depth;
  return depth;
}

std::size_t depthOf(const Node& node) {
  std::unordered_map<const Node*, std::size_t> known;
  return depthOf(node, known);
}

void appendParentsFirst(Node& node, std::unordered_set<Node*>& seen, std::vector<Node*>& order) {
  if (!seen.insert(&node).second) return;
  for (const NodePtr& child : node.children()) appendParentsFirst(*child, seen, order);
  order.push_back(&node);
}

// The node and all below it, every node after those of its parents that are among them.
std::vector<Node*> parentsFirst(Node& top) {
  std::unordered_set<Node*> seen;
  std::vector<Node*> order;
  appendParentsFirst(top, seen, order);
  std::reverse(order.begin(), order.end());
  return order;
}

// Whether `node` is `other` or stands above it.
bool isAtOrAbove(const Node& node, const Node& other) {
  if (&node == &other) return true;
  const auto& parents = other.parents();
  return std::any_of(parents.begin(), parents.end(),
                     [&node](const Node* parent) { return isAtOrAbove(node, *parent); });
}

}  // namespace

Scene::Scene() {
  clear();
}

Scene::~Scene() {
  removeAll();
}

void Scene::clear() {
  removeAll();
  world_ = std::make_shared<Node>(*NodeType::find("world"), nextSerial_++, *this);
  world_->name_ = "world";
  world_->pathCount_ = 1;
  world_->isDefault = true;
  makeDefaultNodes();
}

// Connections and parents hold nodes in circles, so they go first.
void Scene::removeAll() {
  selection.clear();
  fileName.clear();
  for (const auto& [serial, node] : nodes_) {
    disconnectAll(node);
    node->parents_.clear();
    node->children_.clear();
    node->alive_ = false;
  }
  if (world_) {
    world_->children_.clear();
    world_->alive_ = false;
  }
  nodes_.clear();
  byName_.clear();
  numbers_.clear();
}

NodePtr Scene::nodeAtOrAfter(std::size_t serial) const {
  const auto found = nodes_.lower_bound(serial);
  return found == nodes_.end() ? nullptr : found->second;
}

NodePtr Scene::createNode(const NodeType& type, std::string_view name, const NodePtr& parent,
                          std::string* error) {
  NodePtr above = parent ? parent : world_;
  if (type.isShape() && above == world_) {
    const std::string transform = numbered(type.defaultName(), 1);
    above = addNode(*NodeType::find("transform"), transform, world_);
  }
  if (type.isDag() && !canTake(above, nullptr, error)) return nullptr;
  const std::string wanted = numberedOrLegal(name);
  const std::string free = wanted.empty() ? freeDefaultName(type)
                                          : freeName(wanted, nullptr, {above.get()}, type.isDag());
  return addNode(type, free, above);
}

NodePtr Scene::addNode(const NodeType& type, const std::string& name, const NodePtr& parent) {
  const NodePtr node = std::make_shared<Node>(type, nextSerial_++, *this);
  nodes_.emplace_hint(nodes_.end(), node->serial(), node);
  if (type.isDag()) link(node, parent);
  setName(*node, name);
  return node;
}

bool Scene::moveIntoDag(const NodePtr& node) {
  if (node->isDag() || !node->type().isInvented() || node->isDefault) return node->isDag();
  node->type_ = &NodeType::findOrInvent(node->type().name(), true);
  link(node, world_);
  setName(*node, std::string(node->name()));
  return true;
}

bool Scene::deleteNode(const NodePtr& node, std::string* error) {
  if (!node || !node->isAlive()) return fail(error, "nothing to delete");
  if (node->isDefault || node->isLocked) {
    return fail(error, "'" + displayName(node) + "' is " +
                           (node->isDefault ? "a default node" : "locked") +
                           " and cannot be deleted");
  }
  destroy(node);
  selection.removeDeleted();
  return true;
}

void Scene::destroy(const NodePtr& node) {
  const std::vector<NodePtr> children = std::move(node->children_);
  node->children_.clear();
  for (const NodePtr& child : children) {
    auto& parents = child->parents_;
    parents.erase(findIn(parents, node.get()));
    if (parents.empty())
      destroy(child);
    else
      changePathCounts(*child, -static_cast<std::ptrdiff_t>(node->pathCount_));
  }
  for (Node* parent : node->parents_) {
    auto& siblings = parent->children_;
    siblings.erase(findIn(siblings, node));
  }
  node->parents_.clear();
  disconnectAll(node);
  forgetName(*node);
  node->alive_ = false;
  nodes_.erase(node->serial());
}

// Adds `difference` to the number of paths to the node, and for each way down to a node below it as
// many to that node's. False when a node then has more than allowed.
bool Scene::changePathCounts(Node& node, std::ptrdiff_t difference) {
  if (node.children_.empty()) {
    node.pathCount_ += static_cast<std::size_t>(difference);
    return node.pathCount_ <= kMaxInstances;
  }
  if (difference == 0) return true;
  std::unordered_map<const Node*, std::ptrdiff_t> ways = {{&node, 1}};
  bool isAllowed = true;
  for (Node* each : parentsFirst(node)) {
    const std::ptrdiff_t waysHere = ways[each];
    each->pathCount_ += static_cast<std::size_t>(waysHere * difference);
    isAllowed = isAllowed && each->pathCount_ <= kMaxInstances;
    for (const NodePtr& child : each->children_) ways[child.get()] += waysHere;
  }
  return isAllowed;
}

bool Scene::link(const NodePtr& child, const NodePtr& parent) {
  changes.note(*child);
  child->parents_.push_back(parent.get());
  parent->children_.push_back(child);
  return changePathCounts(*child, static_cast<std::ptrdiff_t>(parent->pathCount_));
}

void Scene::unlink(const NodePtr& child, const NodePtr& parent) {
  child->parents_.erase(findIn(child->parents_, parent.get()));
  parent->children_.erase(findIn(parent->children_, child));
  changePathCounts(*child, -static_cast<std::ptrdiff_t>(parent->pathCount_));
}

// `child` null: a new node, which may also stand below a shape, as image planes and curves on
// surfaces do.
bool Scene::canTake(const NodePtr& parent, const NodePtr& child, std::string* error) const {
  if (!parent->isAlive() || !parent->isDag() || (child && parent->isShape()))
    return fail(error, "'" + parent->name() + "' cannot have children");
  if (child && isAtOrAbove(*child, *parent))
    return fail(error, "'" + child->name() + "' cannot stand below itself");
  if (child && child->isShape() && parent == world_)
    return fail(error, "'" + child->name() + "' is a shape and cannot stand at the top");
  const std::size_t height = child ? heightOf(child) : 0;
  if (depthOf(*parent) + 1 + height > kMaxDepth)
    return fail(error, "'" + parent->name() + "' is too deep below the top for more");
  return true;
}

bool Scene::reparent(const NodePtr& node, const NodePtr& oldParent, const NodePtr& newParent,
                     std::string* error) {
  const NodePtr from = oldParent ? oldParent : world_;
  const NodePtr to = newParent ? newParent : world_;
  if (findIn(node->parents_, from.get()) == node->parents_.end())
    return fail(error, "'" + node->name() + "' is not a child of '" + from->name() + "'");
  if (from == to || !canTake(to, node, error)) return from == to;
  if (findIn(node->parents_, to.get()) != node->parents_.end())
    return fail(error, "'" + node->name() + "' is a child of '" + to->name() + "' already");
  Node*& slot = *findIn(node->parents_, from.get());
  slot = to.get();
  const auto more = static_cast<std::ptrdiff_t>(to->pathCount_ - from->pathCount_);
  if (!changePathCounts(*node, more)) {
    changePathCounts(*node, -more);
    slot = from.get();
    return fail(error, "'" + node->name() + "' would have too many instances");
  }
  from->children_.erase(findIn(from->children_, node));
  to->children_.push_back(node);
  const std::string name = freeName(node->name(), node.get(), {to.get()}, true);
  if (name != node->name()) setName(*node, name);
  return true;
}

bool Scene::addInstance(const NodePtr& node, const NodePtr& parent, std::string* error) {
  const NodePtr to = parent ? parent : world_;
  if (!node->isDag()) return fail(error, "'" + node->name() + "' is not a DAG node");
  if (findIn(node->parents_, to.get()) != node->parents_.end()) return true;
  if (!canTake(to, node, error)) return false;
  if (!link(node, to)) {
    unlink(node, to);
    return fail(error, "'" + node->name() + "' would have too many instances");
  }
  const std::string name = freeName(node->name(), node.get(), {to.get()}, true);
  if (name != node->name()) setName(*node, name);
  return true;
}

bool Scene::removeInstance(const NodePtr& node, const NodePtr& parent, std::string* error) {
  const NodePtr from = parent ? parent : world_;
  if (findIn(node->parents_, from.get()) == node->parents_.end())
    return fail(error, "'" + node->name() + "' is not a child of '" + from->name() + "'");
  if (node->parents_.size() == 1) return deleteNode(node, error);
  unlink(node, from);
  selection.removeDeleted();
  return true;
}

}  // namespace host
