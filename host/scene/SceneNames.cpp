// How nodes get their names.

#include <algorithm>

#include "host/scene/Scene.h"

namespace host {
namespace {

bool isChildOf(const Node& node, const Node* parent) {
  const auto& parents = node.parents();
  return std::find(parents.begin(), parents.end(), parent) != parents.end();
}

}  // namespace

// `node` wants the name, and does not block it; null for a new node.
bool Scene::isNameFree(const std::string& name, const Node* node, const Node* parent,
                       bool isDag) const {
  const auto found = byName_.find(name);
  if (found == byName_.end()) return true;
  const Namesakes& namesakes = found->second;
  const auto isOther = [node](const NodePtr& candidate) { return candidate.get() != node; };
  for (const auto& entry : namesakes.others)
    if (isOther(entry.second)) return false;
  if (!isDag) return namesakes.dag.empty();
  if (parent->children().size() < namesakes.dag.size()) {
    const auto& siblings = parent->children();
    return std::none_of(siblings.begin(), siblings.end(), [&](const NodePtr& sibling) {
      return sibling->name() == name && isOther(sibling);
    });
  }
  return std::none_of(namesakes.dag.begin(), namesakes.dag.end(), [&](const auto& entry) {
    return isOther(entry.second) && isChildOf(*entry.second, parent);
  });
}

std::string Scene::freeName(const std::string& wanted, const Node* node,
                            const std::vector<Node*>& parents, bool isDag) {
  const bool isFree = std::all_of(parents.begin(), parents.end(), [&](const Node* parent) {
    return isNameFree(wanted, node, parent, isDag);
  });
  if (isFree) return wanted;
  const NumberedName parts = NumberedName::split(wanted);
  return numbered(parts.stem, parts.number < 0 ? 1 : parts.number + 1);
}

std::string Scene::freeDefaultName(const NodeType& type) {
  return numbered(type.defaultName() + (type.isShape() ? "Shape" : ""), 1);
}

std::string Scene::numbered(const std::string& stem, long first) {
  return numbers_.next(
      stem, first, [this](const std::string& name) { return byName_.find(name) == byName_.end(); });
}

// A "#" at the end stands for the first number that makes the name unique.
std::string Scene::numberedOrLegal(std::string_view name) {
  if (name.empty() || name.back() != '#') return legalName(name);
  const std::string stem = legalName(name.substr(0, name.size() - 1));
  return stem.empty() ? stem : numbered(stem, 1);
}

void Scene::setName(Node& node, const std::string& name) {
  if (!node.name_.empty()) forgetName(node);
  node.name_ = name;
  Namesakes& namesakes = byName_[name];
  (node.isDag() ? namesakes.dag : namesakes.others).emplace(node.serial(), node.pointer());
}

void Scene::forgetName(const Node& node) {
  const auto found = byName_.find(node.name());
  if (found == byName_.end()) return;
  found->second.dag.erase(node.serial());
  found->second.others.erase(node.serial());
  if (!found->second.dag.empty() || !found->second.others.empty()) return;
  byName_.erase(found);
  numbers_.release(node.name());
}

bool Scene::rename(const NodePtr& node, std::string_view name, bool withShapes,
                   std::string* error) {
  const std::string wanted = numberedOrLegal(name);
  if (wanted.empty() || node->isDefault || node->isLocked) {
    if (error) {
      *error = "Cannot rename '" + node->name() + "'" +
               (wanted.empty() ? ": the new name is empty" : ": it is read only");
    }
    return false;
  }
  const std::string shapeName = shapeNameFor(node->name());
  setName(*node, freeName(wanted, node.get(), node->parents_, node->isDag()));
  if (!withShapes || !node->isTransform()) return true;
  const std::string newShapeName = shapeNameFor(node->name());
  for (const NodePtr& child : node->children())
    if (child->isShape() && child->name() == shapeName) rename(child, newShapeName);
  return true;
}

std::vector<NodePtr> Scene::nodesNamed(std::string_view name) const {
  std::vector<NodePtr> found;
  const auto entry = byName_.find(std::string(name));
  if (entry == byName_.end()) return found;
  for (const auto* nodes : {&entry->second.others, &entry->second.dag})
    for (const auto& [serial, node] : *nodes) found.push_back(node);
  return found;
}

}  // namespace host
