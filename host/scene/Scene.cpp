#include "host/scene/Scene.h"

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
  for (const NodePtr& child : node->children()) {
    height = std::max(height, 1 + heightOf(child, known));
  }
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

// How many paths lead to a node; one more than allowed stands for all larger numbers.
std::size_t boundedPathCount(const Node& node,
                             std::unordered_map<const Node*, std::size_t>& known) {
  if (node.apiType() == MFn::kWorld) return 1;
  const auto found = known.find(&node);
  if (found != known.end()) return found->second;
  std::size_t count = 0;
  for (const Node* parent : node.parents()) count += boundedPathCount(*parent, known);
  return known[&node] = std::min(count, Scene::kMaxInstances + 1);
}

// Whether a node at or below this one has more paths than allowed.
bool hasTooManyPaths(const NodePtr& top) {
  std::unordered_map<const Node*, std::size_t> known;
  std::unordered_set<const Node*> seen;
  std::vector<NodePtr> open = {top};
  while (!open.empty()) {
    const NodePtr node = open.back();
    open.pop_back();
    if (!seen.insert(node.get()).second) continue;
    if (boundedPathCount(*node, known) > Scene::kMaxInstances) return true;
    open.insert(open.end(), node->children().begin(), node->children().end());
  }
  return false;
}

// Whether `node` is `other` or stands above it.
bool isAtOrAbove(const Node& node, const Node& other) {
  if (&node == &other) return true;
  const auto& parents = other.parents();
  return std::any_of(parents.begin(), parents.end(),
                     [&node](const Node* parent) { return isAtOrAbove(node, *parent); });
}

}  // namespace

Scene& Scene::current() {
  static Scene scene;
  return scene;
}

Scene::Scene() {
  clear();
}

Scene::~Scene() {
  removeAll();
}

void Scene::clear() {
  removeAll();
  world_ = std::make_shared<Node>(*NodeType::find("world"), nextSerial_++);
  world_->name_ = "world";
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
  const std::string wanted = legalName(name);
  const std::string free = wanted.empty() ? freeDefaultName(type)
                                          : freeName(wanted, nullptr, {above.get()}, type.isDag());
  return addNode(type, free, above);
}

NodePtr Scene::addNode(const NodeType& type, const std::string& name, const NodePtr& parent) {
  const NodePtr node = std::make_shared<Node>(type, nextSerial_++);
  nodes_.emplace_hint(nodes_.end(), node->serial(), node);
  if (type.isDag()) link(node, parent);
  setName(*node, name);
  return node;
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
    if (parents.empty()) destroy(child);
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

void Scene::link(const NodePtr& child, const NodePtr& parent) {
  child->parents_.push_back(parent.get());
  parent->children_.push_back(child);
}

void Scene::unlink(const NodePtr& child, const NodePtr& parent) {
  child->parents_.erase(findIn(child->parents_, parent.get()));
  parent->children_.erase(findIn(parent->children_, child));
}

// `child` null: a new node.
bool Scene::canTake(const NodePtr& parent, const NodePtr& child, std::string* error) const {
  if (!parent->isAlive() || !parent->isDag() || parent->isShape()) {
    return fail(error, "'" + parent->name() + "' cannot have children");
  }
  if (child && isAtOrAbove(*child, *parent)) {
    return fail(error, "'" + child->name() + "' cannot stand below itself");
  }
  if (child && child->isShape() && parent == world_) {
    return fail(error, "'" + child->name() + "' is a shape and cannot stand at the top");
  }
  const std::size_t height = child ? heightOf(child) : 0;
  if (depthOf(*parent) + 1 + height > kMaxDepth) {
    return fail(error, "'" + parent->name() + "' is too deep below the top for more");
  }
  return true;
}

bool Scene::reparent(const NodePtr& node, const NodePtr& oldParent, const NodePtr& newParent,
                     std::string* error) {
  const NodePtr from = oldParent ? oldParent : world_;
  const NodePtr to = newParent ? newParent : world_;
  if (findIn(node->parents_, from.get()) == node->parents_.end()) {
    return fail(error, "'" + node->name() + "' is no child of '" + from->name() + "'");
  }
  if (from == to || !canTake(to, node, error)) return from == to;
  if (findIn(node->parents_, to.get()) != node->parents_.end()) {
    return fail(error, "'" + node->name() + "' is a child of '" + to->name() + "' already");
  }
  Node*& slot = *findIn(node->parents_, from.get());
  slot = to.get();
  if (pathCount(*to) > 1 && hasTooManyPaths(node)) {
    slot = from.get();
    return fail(error, "'" + node->name() + "' would have too many instances");
  }
  from->children_.erase(findIn(from->children_, node));
  to->children_.push_back(node);
  const std::string name = freeName(node->name(), node.get(), node->parents_, true);
  if (name != node->name()) setName(*node, name);
  return true;
}

bool Scene::addInstance(const NodePtr& node, const NodePtr& parent, std::string* error) {
  const NodePtr to = parent ? parent : world_;
  if (!node->isDag()) return fail(error, "'" + node->name() + "' is no DAG node");
  if (findIn(node->parents_, to.get()) != node->parents_.end()) return true;
  if (!canTake(to, node, error)) return false;
  link(node, to);
  if (hasTooManyPaths(node)) {
    unlink(node, to);
    return fail(error, "'" + node->name() + "' would have too many instances");
  }
  const std::string name = freeName(node->name(), node.get(), node->parents_, true);
  if (name != node->name()) setName(*node, name);
  return true;
}

bool Scene::removeInstance(const NodePtr& node, const NodePtr& parent, std::string* error) {
  const NodePtr from = parent ? parent : world_;
  if (findIn(node->parents_, from.get()) == node->parents_.end()) {
    return fail(error, "'" + node->name() + "' is no child of '" + from->name() + "'");
  }
  if (node->parents_.size() == 1) return deleteNode(node, error);
  unlink(node, from);
  selection.removeDeleted();
  return true;
}

}  // namespace host
