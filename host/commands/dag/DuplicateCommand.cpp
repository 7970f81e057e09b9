#include <unordered_map>

#include "host/commands/Builtin.h"
#include "host/commands/Lookup.h"
#include "host/mel/Command.h"
#include "host/mesh/MeshData.h"
#include "host/scene/Dag.h"
#include "host/scene/Node.h"
#include "host/scene/Scene.h"
#include "host/scene/Sets.h"
#include "host/state/HostState.h"

namespace host::mel {
namespace {

// Copies of nodes by the node that each is a copy of: what is instanced below is copied once.
using Copies = std::unordered_map<const Node*, NodePtr>;

// What is set on a node, without what connections say.
void copyValues(const Node& from, Node& to) {
  for (const AttributePtr& attribute : from.dynamicAttributes()) to.addAttribute(attribute);
  for (const AttributeState& state : from.values.inWrittenOrder()) {
    const std::string_view name =
        std::string_view(state.path).substr(0, state.path.find_first_of(".["));
    if (name == "instObjGroups") continue;
    if (to.findAttribute(name) == nullptr) to.findOrKeepLoose(name);
    to.values.at(state.path) = state;
  }
  if (from.mesh != nullptr && to.mesh != nullptr) *to.mesh = from.mesh->clone();
}

// The copy of a shape is shaded as the shape is, face by face.
void copyShading(const NodePtr& from, const NodePtr& to) {
  for (const NodePtr& set : setsHolding(from)) {
    for (const SelectionItem& member : membersOf(set))
      if (member.node == from && isRenderable(set))
        addMember(set, SelectionItem::of(firstPath(to), member.component));
  }
}

NodePtr copyNode(const CommandContext& context, const NodePtr& from, const std::string& name,
                 const NodePtr& parent, std::string& error) {
  const NodePtr copy = context.host().scene.createNode(from->type(), name, parent, &error);
  if (copy != nullptr) copyValues(*from, *copy);
  return copy;
}

// Breadth first, without recursion: a scene may be as deep as the scene allows.
// Gives the copies of transforms, the root first; none when it fails.
std::vector<NodePtr> copyTree(const CommandContext& context, const SelectionItem& item,
                              const std::string& name, bool whole, std::string& error) {
  const auto& nodes = item.path.nodes();
  const NodePtr above = nodes.size() > 1 ? nodes[nodes.size() - 2] : nullptr;
  const NodePtr root =
      copyNode(context, item.node, name.empty() ? item.node->name() : name, above, error);
  if (root == nullptr || !whole)
    return root == nullptr ? std::vector<NodePtr>() : std::vector<NodePtr>{root};
  Copies copies{{item.node.get(), root}};
  std::vector<NodePtr> waiting{item.node};
  std::vector<NodePtr> transforms{root};
  for (std::size_t i = 0; i < waiting.size(); ++i) {
    const NodePtr from = waiting[i];
    const NodePtr to = copies[from.get()];
    for (const NodePtr& child : from->children()) {
      const auto known = copies.find(child.get());
      if (known != copies.end()) {
        if (!context.host().scene.addInstance(known->second, to, &error)) return {};
        continue;
      }
      const bool isNamedAfter = child->name() == shapeNameFor(from->name());
      const NodePtr copy = copyNode(
          context, child, isNamedAfter ? shapeNameFor(to->name()) : child->name(), to, error);
      if (copy == nullptr) return {};
      copies[child.get()] = copy;
      waiting.push_back(child);
      if (child->isShape())
        copyShading(child, copy);
      else
        transforms.push_back(copy);
    }
  }
  return transforms;
}

CommandResult duplicate(const Arguments& arguments, CommandContext& context) {
  if (context.inSceneFile) return CommandResult::failure("a scene file may not duplicate nodes");
  std::vector<SelectionItem> items;
  std::string error = "nothing is named or selected";
  if (!findItems(arguments.objects(), context, items, error) || items.empty())
    return CommandResult::failure("duplicate: " + error);
  Value::Strings names;
  std::vector<SelectionItem> made;
  for (const SelectionItem& item : items) {
    if (!item.node->isTransform() || item.component != nullptr)
      return CommandResult::failure("duplicate: '" + shownName(context, item) +
                                    "' is not a transform");
    const std::vector<NodePtr> copies =
        copyTree(context, item, arguments.text("n"), !arguments.has("po"), error);
    if (copies.empty()) return CommandResult::failure("duplicate: " + error);
    made.push_back(SelectionItem::of(copies.front()));
    for (std::size_t i = 0; i < (arguments.has("rr") ? 1 : copies.size()); ++i)
      names.push_back(shownName(context, SelectionItem::of(copies[i])));
  }
  context.host().scene.selection.clear();
  for (const SelectionItem& item : made) context.host().scene.selection.add(item);
  return CommandResult::success(std::move(names));
}

}  // namespace

void addDuplicateCommand(CommandTable& table) {
  table.add("duplicate",
            {{"n", "name", "s"},
             {"rr", "returnRootsOnly", ""},
             {"po", "parentOnly", ""},
             {"rc", "renameChildren", ""}},
            duplicate);
}

}  // namespace host::mel
