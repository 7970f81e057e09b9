#include "host/commands/Builtin.h"

#include <algorithm>

#include "host/commands/Lookup.h"
#include "host/mel/Command.h"
#include "host/scene/Node.h"
#include "host/scene/Scene.h"
#include "host/scene/Sets.h"
#include "host/scene/Values.h"
#include "host/state/HostState.h"

namespace host::mel {
namespace {

NodePtr findSet(const std::string& name, const CommandContext& context, std::string& error) {
  NodePtr node = findNode(name, context, error);
  if (node != nullptr && !node->isSet()) {
    error = "'" + name + "' is not a set";
    return nullptr;
  }
  return node;
}

// A renderable set is a shading group, and all of these share one partition: a face has one of
// them.
NodePtr makeSet(const CommandContext& context, const Arguments& arguments, std::string& error) {
  const bool renderable = arguments.truth("r");
  const NodeType* type = NodeType::find(renderable ? "shadingEngine" : "objectSet");
  const NodePtr set = context.host().scene.createNode(*type, arguments.text("n"), nullptr, &error);
  if (set == nullptr || !renderable) return set;
  if (const auto only = Plug::find(set, "renderableOnlySet")) writeValue(*only, 1.0);
  for (const NodePtr& partition : context.host().scene.nodesNamed("renderPartition"))
    joinPartition(set, partition);
  return set;
}

CommandResult create(const Arguments& arguments, CommandContext& context) {
  std::vector<SelectionItem> items;
  std::string error;
  if (!arguments.has("em") && !findItems(arguments.objects(), context, items, error))
    return CommandResult::failure("sets: " + error);
  const NodePtr set = makeSet(context, arguments, error);
  if (set == nullptr) return CommandResult::failure("sets: " + error);
  for (const SelectionItem& item : items)
    if (!addMember(set, item, &error)) return CommandResult::failure("sets: " + error);
  return CommandResult::success(context.host().scene.displayName(set));
}

CommandResult query(const Arguments& arguments, CommandContext& context) {
  std::string error;
  const std::string name =
      arguments.objects().empty() ? std::string() : arguments.objects().front();
  const NodePtr set = findSet(name, context, error);
  if (set == nullptr) return CommandResult::failure("sets: " + error);
  if (arguments.has("r")) return CommandResult::success(Value::ofTruth(isRenderable(set)));
  Value::Strings names;
  for (const SelectionItem& item : membersOf(set)) {
    const std::vector<std::string> shown = item.names();
    names.insert(names.end(), shown.begin(), shown.end());
  }
  return CommandResult::success(std::move(names));
}

using Change = bool (*)(const NodePtr&, const SelectionItem&, std::string*);

bool remove(const NodePtr& set, const SelectionItem& item, std::string*) {
  removeMember(set, item);
  return true;
}

CommandResult apply(const Arguments& arguments, CommandContext& context, std::string_view flag,
                    Change change) {
  std::string error;
  const NodePtr set = findSet(arguments.text(flag), context, error);
  std::vector<SelectionItem> items;
  if (set == nullptr || !findItems(arguments.objects(), context, items, error))
    return CommandResult::failure("sets: " + error);
  for (const SelectionItem& item : items)
    if (!change(set, item, &error)) return CommandResult::failure("sets: " + error);
  return CommandResult::success(context.host().scene.displayName(set));
}

CommandResult isMemberOf(const Arguments& arguments, CommandContext& context) {
  std::string error;
  const NodePtr set = findSet(arguments.text("im"), context, error);
  std::vector<SelectionItem> items;
  if (set == nullptr || !findItems(arguments.objects(), context, items, error))
    return CommandResult::failure("sets: " + error);
  const bool all = std::all_of(items.begin(), items.end(),
                               [&](const SelectionItem& item) { return isMember(set, item); });
  return CommandResult::success(Value::ofTruth(all && !items.empty()));
}

CommandResult sets(const Arguments& arguments, CommandContext& context) {
  static constexpr struct {
    std::string_view flag;
    Change change;
  } kChanges[] = {{"fe", forceMember}, {"add", addMember}, {"in", addMember}, {"rm", remove}};
  if (arguments.query()) return query(arguments, context);
  for (const auto& change : kChanges)
    if (arguments.has(change.flag)) return apply(arguments, context, change.flag, change.change);
  if (arguments.has("im")) return isMemberOf(arguments, context);
  if (arguments.has("cl")) {
    std::string error;
    const NodePtr set = findSet(arguments.text("cl"), context, error);
    if (set == nullptr) return CommandResult::failure("sets: " + error);
    clearMembers(set);
    return CommandResult::success(context.host().scene.displayName(set));
  }
  return arguments.edit() ? CommandResult::failure("sets: -edit needs what to change")
                          : create(arguments, context);
}

}  // namespace

void addSetCommands(CommandTable& table) {
  table.add("sets",
            {{"r", "renderable", "b"},
             {"nss", "noSurfaceShader", "b"},
             {"em", "empty", ""},
             {"n", "name", "s"},
             {"e", "edit", ""},
             {"q", "query", ""},
             {"fe", "forceElement", "s"},
             {"add", "addElement", "s"},
             {"in", "include", "s"},
             {"rm", "remove", "s"},
             {"im", "isMember", "s"},
             {"cl", "clear", "s"}},
            sets);
}

}  // namespace host::mel
