#include <algorithm>
#include <set>

#include "host/commands/Builtin.h"
#include "host/mel/Command.h"
#include "host/scene/Scene.h"
#include "host/state/HostState.h"
#include "host/state/SceneInfo.h"

// Namespaces exist when a node's name has them or a script made them. The current one is always the
// root.
namespace host::mel {
namespace {

std::string withoutColons(std::string_view name) {
  while (!name.empty() && name.front() == ':') name.remove_prefix(1);
  while (!name.empty() && name.back() == ':') name.remove_suffix(1);
  return std::string(name);
}

// "a:b" and "a" for a node "a:b:c".
std::set<std::string> allNamespaces(const CommandContext& context) {
  std::set<std::string> all = context.host().info.namespaces;
  for (const auto& [serial, node] : context.host().scene.nodes())
    for (std::size_t colon = node->name().rfind(':'); colon != std::string::npos && colon > 0;
         colon = node->name().rfind(':', colon - 1))
      all.insert(node->name().substr(0, colon));
  return all;
}

bool isIn(const std::string& name, const std::string& space) {
  return name.size() > space.size() && name.compare(0, space.size(), space) == 0 &&
         name[space.size()] == ':';
}

std::vector<NodePtr> nodesIn(const CommandContext& context, const std::string& space) {
  std::vector<NodePtr> found;
  for (const auto& [serial, node] : context.host().scene.nodes())
    if (isIn(node->name(), space)) found.push_back(node);
  return found;
}

// Gives the names in one namespace another.
CommandResult moveNames(const CommandContext& context, const std::string& from,
                        const std::string& to) {
  std::string error;
  for (const NodePtr& node : nodesIn(context, from)) {
    const std::string rest = node->name().substr(from.size() + 1);
    if (node->isReferenced)
      return CommandResult::failure("namespace: '" + node->name() + "' is another file's");
    if (!context.host().scene.rename(node, to.empty() ? rest : to + ":" + rest, false, &error))
      return CommandResult::failure("namespace: " + error);
  }
  auto& made = context.host().info.namespaces;
  for (auto each = made.begin(); each != made.end();)
    each = *each == from || isIn(*each, from) ? made.erase(each) : std::next(each);
  return CommandResult::success(to);
}

CommandResult remove(const CommandContext& context, const Arguments& arguments,
                     const std::string& name) {
  if (!nodesIn(context, name).empty()) {
    if (!arguments.has("mnr") || !arguments.truth("mnr"))
      return CommandResult::failure("namespace: '" + name + "' is not empty");
    return moveNames(context, name, "");
  }
  return moveNames(context, name, "");
}

CommandResult nameSpace(const Arguments& arguments, CommandContext& context) {
  const auto all = allNamespaces(context);
  const auto named = [&](std::string_view flag) { return withoutColons(arguments.text(flag)); };
  if (arguments.has("ex"))
    return CommandResult::success(
        Value::ofTruth(named("ex").empty() || all.count(named("ex")) != 0));
  if (arguments.has("add")) {
    const std::string parent = arguments.has("p") ? named("p") : "";
    const std::string name = (parent.empty() ? "" : parent + ":") + named("add");
    if (name.empty() || all.count(name) != 0)
      return CommandResult::failure("namespace: '" + name + "' exists already");
    if (legalName(name) != name)
      return CommandResult::failure("namespace: '" + name + "' is not a name");
    context.host().info.namespaces.insert(name);
    return CommandResult::success(name);
  }
  if (arguments.has("rm")) {
    if (all.count(named("rm")) == 0)
      return CommandResult::failure("namespace: there is no '" + named("rm") + "'");
    return remove(context, arguments, named("rm"));
  }
  if (arguments.has("ren")) {
    const std::string from = withoutColons(arguments.text("ren", 0));
    const std::string to = withoutColons(arguments.text("ren", 1));
    if (all.count(from) == 0 || all.count(to) != 0 || to.empty() || legalName(to) != to)
      return CommandResult::failure("namespace: '" + from + "' cannot be called '" + to + "'");
    return moveNames(context, from, to);
  }
  if (arguments.has("set") && named("set").empty()) return CommandResult::success();
  return CommandResult::failure(
      "namespace: needs -exists, -add, -removeNamespace or -rename; names are given in full, the "
      "current namespace is always the root");
}

// Those directly in the one that is named, or in the root.
CommandResult namespaceInfo(const Arguments& arguments, CommandContext& context) {
  if (arguments.has("cur")) return CommandResult::success(":");
  const std::string space =
      arguments.objects().empty() ? "" : withoutColons(arguments.objects().front());
  const bool deep = arguments.has("r");
  Value::Strings names;
  for (const std::string& each : allNamespaces(context)) {
    if (!space.empty() && !isIn(each, space)) continue;
    const std::string rest = space.empty() ? each : each.substr(space.size() + 1);
    if (deep || rest.find(':') == std::string::npos) names.push_back(each);
  }
  if (arguments.has("lon")) return CommandResult::success(std::move(names));
  if (!arguments.has("lod"))
    return CommandResult::failure(
        "namespaceInfo: needs -currentNamespace, -listOnlyNamespaces or "
        "-listOnlyDependencyNodes");
  names.clear();
  for (const auto& [serial, node] : context.host().scene.nodes()) {
    const std::size_t colon = node->name().rfind(':');
    const std::string own = colon == std::string::npos ? "" : node->name().substr(0, colon);
    if (own == space || (deep && (space.empty() || isIn(own, space))))
      names.push_back(context.host().scene.displayName(node));
  }
  return CommandResult::success(std::move(names));
}

}  // namespace

void addNamespaceCommands(CommandTable& table) {
  table.add("namespace",
            {{"ex", "exists", "s"},
             {"add", "addNamespace", "s"},
             {"p", "parent", "s"},
             {"rm", "removeNamespace", "s"},
             {"mnr", "mergeNamespaceWithRoot", "b"},
             {"ren", "rename", "ss"},
             {"set", "setNamespace", "s"}},
            nameSpace);
  table.add("namespaceInfo",
            {{"cur", "currentNamespace", ""},
             {"lon", "listOnlyNamespaces", ""},
             {"lod", "listOnlyDependencyNodes", ""},
             {"r", "recurse", ""}},
            namespaceInfo);
}

}  // namespace host::mel
