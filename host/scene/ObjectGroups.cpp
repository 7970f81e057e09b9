#include "host/scene/ObjectGroups.h"

#include "host/scene/Scene.h"
#include "host/scene/Values.h"

namespace host {
namespace {

// Reads component texts however they were stored: as texts, or as the words "count text text...".
std::vector<std::string> textsOf(const AttributeValue& value) {
  if (const auto* texts = std::get_if<std::vector<std::string>>(&value)) return *texts;
  if (const auto* kept = std::get_if<KeptWords>(&value)) return kept->words;
  return {};
}

std::vector<std::string> storedTexts(const NodePtr& node, const std::string& path) {
  const AttributeState* state = node->values.find(path);
  return state ? textsOf(state->value) : std::vector<std::string>();
}

NodePtr groupIdOf(const NodePtr& shape, const ObjectGroup& group) {
  const ConnectionPtr connection = shape->connections.into(group.path() + ".objectGroupId");
  return connection ? connection->source.node() : nullptr;
}

std::vector<std::string> componentTexts(const NodePtr& shape, const ObjectGroup& group) {
  std::vector<std::string> texts = storedTexts(shape, group.path() + ".objectGrpCompList");
  const NodePtr groupId = texts.empty() ? groupIdOf(shape, group) : nullptr;
  if (!groupId) return texts;
  for (const ConnectionPtr& connection : groupId->connections.outOfAtOrBelow("groupId")) {
    const NodePtr& user = connection->destination.node();
    if (user->type().isA("groupParts")) return storedTexts(user, "inputComponents");
  }
  return texts;
}

int unusedGroup(const NodePtr& shape, int instance) {
  const std::string array = ObjectGroup{instance, -1}.path() + ".objectGroups";
  int group = shape->connections.nextIndex(array);
  while (shape->values.find(array + "[" + std::to_string(group) + "].objectGrpCompList")) ++group;
  return group;
}

void connectNamed(const NodePtr& from, const char* source, const NodePtr& to,
                  const std::string& destination) {
  const auto sourcePlug = Plug::find(from, source);
  const auto destinationPlug = Plug::find(to, destination);
  if (sourcePlug && destinationPlug) connect(*sourcePlug, nextElement(*destinationPlug), true);
}

}  // namespace

ObjectGroup ObjectGroup::ofPath(const std::string& plugPath) {
  ObjectGroup group;
  const std::size_t dot = plugPath.find('.');
  if (const auto range = splitRange(plugPath.substr(0, dot))) group.instance = range->first;
  if (dot == std::string::npos) return group;
  if (const auto range = splitRange(plugPath.substr(dot + 1))) group.group = range->first;
  return group;
}

std::string ObjectGroup::path() const {
  const std::string whole = "instObjGroups[" + std::to_string(instance) + "]";
  return isWhole() ? whole : whole + ".objectGroups[" + std::to_string(group) + "]";
}

Plug memberPlug(const SelectionItem& item) {
  if (!item.node->isDag()) return Plug::find(item.node, "message").value_or(Plug());
  const ObjectGroup whole{static_cast<int>(item.path.instanceNumber()), -1};
  return Plug::find(item.node, whole.path()).value_or(Plug());
}

ComponentPtr componentsOf(const NodePtr& shape, const ObjectGroup& group) {
  const std::vector<std::string> texts = componentTexts(shape, group);
  std::vector<IndexRange> ranges;
  auto kind = Component::Kind::kFace;
  for (const std::string& text : texts) {
    const ComponentPtr component = Component::parse(text);
    if (!component) continue;
    if (!ranges.empty() && component->kind() != kind) continue;
    kind = component->kind();
    const auto& more = component->elements().ranges();
    ranges.insert(ranges.end(), more.begin(), more.end());
  }
  return std::make_shared<Component>(kind, IndexSet(std::move(ranges)));
}

IndexSet facesOf(const NodePtr& shape, const ObjectGroup& group) {
  return parseFaces(componentTexts(shape, group));
}

void setFaces(const NodePtr& shape, const ObjectGroup& group, const IndexSet& faces) {
  const Component component(Component::Kind::kFace, faces);
  shape->values.at(group.path() + ".objectGrpCompList").value = component.toTexts();
}

Plug makeGroup(const SelectionItem& item, const IndexSet& faces, const NodePtr& set) {
  const int instance = static_cast<int>(item.path.instanceNumber());
  const ObjectGroup group{instance, unusedGroup(item.node, instance)};
  setFaces(item.node, group, faces);
  const NodePtr groupId = item.node->scene()->createNode(*NodeType::find("groupId"));
  connectNamed(groupId, "groupId", item.node, group.path() + ".objectGroupId");
  connectNamed(set, "memberWireframeColor", item.node, group.path() + ".objectGrpColor");
  connectNamed(groupId, "message", set, "groupNodes");
  return Plug::find(item.node, group.path()).value_or(Plug());
}

void removeGroup(const NodePtr& shape, const ObjectGroup& group, const NodePtr& set) {
  if (!shape->connections.outOfAtOrBelow(group.path()).empty()) return;
  const NodePtr groupId = groupIdOf(shape, group);
  for (const ConnectionPtr& connection : shape->connections.intoAtOrBelow(group.path()))
    disconnect(connection);
  shape->values.erase(group.path());
  if (!groupId || !groupId->type().isA("groupId")) return;
  for (const ConnectionPtr& connection : groupId->connections.outOf("message"))
    if (connection->destination.node() == set) disconnect(connection);
  if (groupId->connections.outOf("groupId").empty()) groupId->scene()->deleteNode(groupId);
}

}  // namespace host
