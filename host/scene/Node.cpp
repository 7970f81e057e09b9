#include "host/scene/Node.h"

#include <algorithm>

#include "host/mesh/MeshData.h"
#include "host/scene/MeshHistory.h"
#include "host/scene/Scene.h"
#include "host/scene/Values.h"

namespace host {

Node::Node(const NodeType& type, std::size_t serial, Scene& scene)
    : type_(&type), serial_(serial), scene_(&scene) {
  if (type.isA("mesh")) mesh = std::make_unique<MeshData>();
}

Node::~Node() = default;

std::string Node::displayName() {
  return alive_ ? scene_->displayName(pointer()) : name_;
}

void Node::noteChange() const {
  if (alive_) scene_->changes.note(*this);
}

bool Node::isIntermediate() const {
  const AttributeState* state = values.find("intermediateObject");
  const double* number = state ? std::get_if<double>(&state->value) : nullptr;
  return number && *number != 0.0;
}

AttributePtr Node::findAttribute(std::string_view longOrShortName) const {
  const auto own = ownNames_.find(longOrShortName);
  if (own != ownNames_.end()) return own->second;
  return type_->findAttribute(longOrShortName);
}

bool Node::addAttribute(const AttributePtr& attribute) {
  if (findAttribute(attribute->longName()) || findAttribute(attribute->shortName())) return false;
  attribute->isDynamic = attribute->kind() != Attribute::Kind::kLoose;
  dynamicAttributes_.push_back(attribute);
  indexNames(attribute);
  return true;
}

bool Node::addChildAttribute(const AttributePtr& parent, const AttributePtr& child) {
  if (findAttribute(child->longName()) || findAttribute(child->shortName())) return false;
  child->isDynamic = true;
  Attribute::adopt(parent, child);
  indexNames(child);
  return true;
}

bool Node::removeAttribute(const AttributePtr& attribute) {
  const auto found = std::find(dynamicAttributes_.begin(), dynamicAttributes_.end(), attribute);
  if (found == dynamicAttributes_.end()) return false;
  const Plug plug = Plug::ofAttribute(pointer(), attribute);
  for (const ConnectionPtr& connection : connectionsAtOrBelow(plug, true, true))
    disconnect(connection);
  forgetValues(plug);
  for (auto name = ownNames_.begin(); name != ownNames_.end();) {
    AttributePtr top = name->second;
    while (const AttributePtr above = top->parent()) top = above;
    name = top == attribute ? ownNames_.erase(name) : std::next(name);
  }
  dynamicAttributes_.erase(found);
  return true;
}

AttributePtr Node::findOrKeepLoose(std::string_view name) {
  if (AttributePtr known = findAttribute(name)) return known;
  const AttributePtr loose = Attribute::makeLoose(std::string(name));
  addAttribute(loose);
  return loose;
}

void Node::indexNames(const AttributePtr& attribute) {
  ownNames_.emplace(attribute->longName(), attribute);
  ownNames_.emplace(attribute->shortName(), attribute);
  for (const AttributePtr& child : attribute->children()) indexNames(child);
}

}  // namespace host
