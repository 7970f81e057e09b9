#include "host/commands/Builtin.h"

#include <algorithm>
#include <random>

#include "host/commands/Lookup.h"
#include "host/mel/Command.h"
#include "host/mel/Pattern.h"
#include "host/scene/Dag.h"
#include "host/scene/Node.h"
#include "host/scene/Scene.h"
#include "host/scene/Sets.h"
#include "host/scene/Values.h"
#include "host/state/HostState.h"
#include "host/text/Numbers.h"

namespace host::mel {
namespace {

using Items = std::vector<SelectionItem>;

void addPathsBelow(const DagPath& path, bool shapes, Items& items) {
  // Iterates instead of recursing: a scene may be as deep as the scene allows.
  std::vector<DagPath> waiting{path};
  while (!waiting.empty()) {
    const DagPath next = waiting.back();
    waiting.pop_back();
    if (!shapes || next.node()->isShape()) items.push_back(SelectionItem::of(next));
    const auto& children = next.node()->children();
    for (auto child = children.rbegin(); child != children.rend(); ++child)
      waiting.push_back(next.extendedBy(*child));
  }
}

// --- select

// Without -noExpand a set stands for its members.
Items expandSets(const Items& items) {
  Items expanded;
  for (const SelectionItem& item : items) {
    if (item.node->isSet()) {
      const Items members = flattenedMembersOf(item.node);
      expanded.insert(expanded.end(), members.begin(), members.end());
    } else {
      expanded.push_back(item);
    }
  }
  return expanded;
}

Items withHierarchy(const Items& items) {
  Items all;
  for (const SelectionItem& item : items)
    if (item.path.isEmpty())
      all.push_back(item);
    else
      addPathsBelow(item.path, false, all);
  return all;
}

Items allSelectable(const CommandContext& context) {
  Items items;
  for (const NodePtr& node : context.host().scene.world()->children())
    if (!node->isDefault) items.push_back(SelectionItem::of(node));
  return items;
}

void applySelection(const CommandContext& context, const Arguments& arguments, const Items& items) {
  Selection& selection = context.host().scene.selection;
  const bool keeps =
      arguments.has("add") || arguments.has("d") || arguments.has("tgl") || arguments.has("af");
  if (!keeps) selection.clear();
  for (const SelectionItem& item : items) {
    const bool removes = arguments.has("d") || (arguments.has("tgl") && selection.contains(item));
    if (removes)
      selection.remove(item);
    else
      selection.addIfMissing(item);
  }
}

CommandResult selectInSceneFile(const Arguments& arguments, CommandContext& context) {
  context.currentNode = nullptr;
  if (arguments.objects().empty()) return CommandResult::success();
  std::string error;
  const std::string& name = arguments.objects().front();
  context.currentNode = findNode(name, context, error);
  // Later versions have default nodes that the host does not know.
  if (context.currentNode == nullptr && name.front() == ':' && isLegalName(name.substr(1))) {
    context.currentNode = context.host().scene.makeDefaultNode(name.substr(1));
    context.currentNode->isReferenced = context.isReference;
  }
  if (context.currentNode != nullptr && context.currentNode->isDefault && !context.isReference)
    context.currentNode->isReferenced = false;
  return context.currentNode != nullptr ? CommandResult::success()
                                        : CommandResult::failure("select: " + error);
}

CommandResult select(const Arguments& arguments, CommandContext& context) {
  if (context.inSceneFile) return selectInSceneFile(arguments, context);
  if (arguments.has("cl")) {
    context.host().scene.selection.clear();
    return CommandResult::success();
  }
  Items items;
  std::string error;
  if (arguments.has("all"))
    items = allSelectable(context);
  else if (!findItems(arguments.objects(), context, items, error))
    return CommandResult::failure("select: " + error);
  if (!arguments.has("ne")) items = expandSets(items);
  if (arguments.has("hi")) items = withHierarchy(items);
  applySelection(context, arguments, items);
  return CommandResult::success();
}

// --- ls

bool isMaterial(const Node& node) {
  return node.type().isA("lambert") || node.type().isA("surfaceShader");
}
bool isTexture(const Node& node) {
  return node.type().isA("texture2d") || node.type().isA("layeredTexture");
}

bool isExcluded(const Arguments& arguments, const Node& node) {
  const std::vector<std::string> types = arguments.texts("ext");
  return std::find(types.begin(), types.end(), node.type().name()) != types.end();
}

// Shown by its own and every visibility above.
bool isVisible(const SelectionItem& item) {
  const auto& nodes = item.path.nodes();
  return !nodes.empty() && std::all_of(nodes.begin(), nodes.end(), [](const NodePtr& node) {
    return truthOf(node, "visibility") && !node->isIntermediate();
  });
}

bool isShownAsAsked(const Arguments& arguments, const SelectionItem& item) {
  return (!arguments.has("v") || isVisible(item)) &&
         (!arguments.has("iv") || (!item.path.isEmpty() && !isVisible(item)));
}

bool admits(const Arguments& arguments, const Node& node) {
  const std::vector<std::string> types = arguments.texts("typ");
  const bool typed =
      types.empty() || std::any_of(types.begin(), types.end(),
                                   [&](const std::string& type) { return node.type().isA(type); });
  const std::vector<std::string> exact = arguments.texts("et");
  const bool exactly =
      exact.empty() || std::find(exact.begin(), exact.end(), node.type().name()) != exact.end();
  const auto only = [&](std::string_view flag, bool holds) {
    return !arguments.has(flag) || holds;
  };
  return typed && exactly && only("s", node.isShape()) && only("tr", node.isTransform()) &&
         only("g", node.isShape() && node.type().isA("geometryShape")) &&
         only("mat", isMaterial(node)) && only("tex", isTexture(node)) &&
         only("set", node.isSet()) && only("ca", node.type().isA("camera")) &&
         only("ro", node.isReferenced) && only("ni", !node.isIntermediate()) &&
         only("io", node.isIntermediate()) && only("lt", node.type().isA("light")) &&
         only("dep", !node.isDag()) && only("rn", node.isReferenced) &&
         only("rf", node.type().name() == "reference") &&
         only("pr", node.type().isA("partition")) && only("con", node.type().isA("container")) &&
         only("ud", node.isDefault) && only("lf", node.isDag() && node.children().empty()) &&
         only("ln", node.isLocked) && only("dn", node.isDefault) && !isExcluded(arguments, node);
}

Items everything(const CommandContext& context, const Arguments& arguments) {
  Items items;
  for (const auto& [serial, node] : context.host().scene.nodes()) {
    if (node->isDag() && (arguments.has("ap") || arguments.has("dag")))
      for (const DagPath& path : allPaths(node)) items.push_back(SelectionItem::of(path));
    else
      items.push_back(SelectionItem::of(node));
  }
  return items;
}

// One that no file gave is made when it is asked for, of random bits (version 4).
const std::string& uuidOf(Node& node) {
  if (!node.uuid.empty()) return node.uuid;
  std::random_device random;
  constexpr std::string_view kPattern = "xxxxxxxx-xxxx-4xxx-yxxx-xxxxxxxxxxxx";
  for (const char c : kPattern) {
    const unsigned bits = random() % 16;
    const unsigned digit = c == 'y' ? 8 + bits % 4 : bits;
    node.uuid += c == 'x' || c == 'y' ? "0123456789ABCDEF"[digit] : c;
  }
  return node.uuid;
}

std::vector<std::string> shownNames(const CommandContext& context, const Arguments& arguments,
                                    const SelectionItem& item) {
  if (arguments.has("uid")) return {uuidOf(*item.node)};
  if (arguments.has("l") && !item.path.isEmpty()) {
    std::vector<std::string> names{item.path.fullName()};
    if (item.component != nullptr && !arguments.has("o")) {
      names = item.component->toTexts();
      for (std::string& name : names) name = item.path.fullName() + "." + name;
    }
    return names;
  }
  return item.component != nullptr && !arguments.has("o")
             ? item.names()
             : std::vector<std::string>{shownName(context, item)};
}

// With -flatten each component is listed alone, with -showType each name is followed by the node's
// type.
void addShown(const CommandContext& context, const Arguments& arguments, const SelectionItem& item,
              const std::string& name, Value::Strings& names) {
  const auto range =
      arguments.has("fl") && item.component != nullptr ? splitRange(name) : std::nullopt;
  const std::size_t most = context.interpreter->limits().arraySize;
  for (int i = range ? range->first : 0; i <= (range ? range->last : 0); ++i) {
    if (names.size() + 1 >= most) return;
    names.push_back(range ? std::string(range->stem) + "[" + std::to_string(i) + "]" : name);
    if (arguments.has("st")) names.push_back(item.node->type().name());
  }
}

void addAllPaths(const Items& found, Items& items) {
  for (const SelectionItem& item : found) {
    if (item.path.isEmpty()) items.push_back(item);
    for (const DagPath& path : allPaths(item.node))
      items.push_back(SelectionItem::of(path, item.component));
  }
}

// What a name or a UUID names.
Items namedItems(const std::string& name, bool inNamespaces, const CommandContext& context) {
  Items found = context.host().scene.match(qualifiedName(name, context), inNamespaces);
  const bool mayBeUuid = found.empty() && name.size() == 36 && name[8] == '-' && name[13] == '-';
  if (mayBeUuid) {
    for (const auto& [serial, node] : context.host().scene.nodes())
      if (node->uuid == name) found.push_back(SelectionItem::of(node));
  }
  return found;
}

void addMatchingPlugs(const NodePtr& node, const AttributePtr& attribute,
                      const std::string& pattern, Value::Strings& paths) {
  const bool matches =
      matchesGlob(attribute->longName(), pattern) || matchesGlob(attribute->shortName(), pattern);
  if (attribute->kind() == Attribute::Kind::kLoose) return;
  if (matches) paths.push_back(Plug::ofAttribute(node, attribute).path());
  for (const AttributePtr& child : attribute->children())
    addMatchingPlugs(node, child, pattern, paths);
}

Value::Strings plugPaths(const NodePtr& node, const std::string& pattern) {
  Value::Strings paths;
  if (pattern.find_first_of("*?") == pattern.npos) {
    const auto plug = Plug::find(node, pattern);
    return plug ? Value::Strings{plug->path()} : paths;
  }
  for (const NodeType* type = &node->type(); type != nullptr; type = type->base())
    for (const AttributePtr& attribute : type->ownAttributes())
      addMatchingPlugs(node, attribute, pattern, paths);
  for (const AttributePtr& attribute : node->dynamicAttributes())
    addMatchingPlugs(node, attribute, pattern, paths);
  return paths;
}

// What "persp.tx" or "*.translate*" names.
void addPlugs(const std::string& name, const Arguments& arguments, const CommandContext& context,
              Value::Strings& names) {
  const std::size_t dot = name.find('.');
  if (dot == name.npos) return;
  for (const SelectionItem& item : namedItems(name.substr(0, dot), arguments.truth("r"), context)) {
    const std::string object = arguments.has("l") && !item.path.isEmpty()
                                   ? item.path.fullName()
                                   : shownName(context, item);
    const Value::Strings paths = plugPaths(item.node, name.substr(dot + 1));
    if (!paths.empty() && arguments.has("o")) names.push_back(object);
    for (const std::string& path : paths)
      if (!arguments.has("o")) names.push_back(object + "." + path);
  }
}

CommandResult ls(const Arguments& arguments, CommandContext& context) {
  Items items;
  Value::Strings names;
  const bool asksSelection = arguments.has("sl") || arguments.has("os");
  if (asksSelection)
    items = context.host().scene.selection.items();
  else if (arguments.objects().empty())
    items = everything(context, arguments);
  for (const std::string& name : arguments.objects()) {
    const Items found = namedItems(name, arguments.truth("r"), context);
    if (found.empty()) addPlugs(name, arguments, context, names);
    if (arguments.has("ap") && name.find('|') == std::string::npos)
      addAllPaths(found, items);
    else
      items.insert(items.end(), found.begin(), found.end());
  }
  if (arguments.has("dag")) {
    Items below;
    for (const SelectionItem& item : items) {
      if (!item.path.isEmpty()) {
        arguments.objects().empty() && !asksSelection ? below.push_back(item)
                                                      : addPathsBelow(item.path, false, below);
      }
    }
    items = std::move(below);
  }
  for (const SelectionItem& item : items) {
    const bool assembly = !arguments.has("as") || item.path.nodes().size() == 1;
    if (!assembly || !admits(arguments, *item.node) || !isShownAsAsked(arguments, item)) continue;
    for (const std::string& name : shownNames(context, arguments, item))
      addShown(context, arguments, item, name, names);
  }
  if (arguments.has("tl")) {
    const auto count = static_cast<std::size_t>(std::max(0, toInteger(arguments.number("tl"))));
    const std::size_t extra = names.size() - std::min(names.size(), count);
    names.erase(names.begin(), names.begin() + static_cast<std::ptrdiff_t>(extra));
  }
  if (arguments.has("hd")) {
    const auto count = static_cast<std::size_t>(std::max(0, toInteger(arguments.number("hd"))));
    names.resize(std::min(names.size(), count));
  }
  return CommandResult::success(std::move(names));
}

// --- listRelatives

Items childrenOf(const DagPath& path, const Arguments& arguments) {
  Items items;
  if (arguments.has("ad")) {
    addPathsBelow(path, false, items);
    items.erase(items.begin());
    std::reverse(items.begin(), items.end());
    return items;
  }
  for (const NodePtr& child : path.node()->children())
    items.push_back(SelectionItem::of(path.extendedBy(child)));
  return items;
}

Items parentsOf(const DagPath& path, const Arguments& arguments) {
  Items items;
  for (const DagPath& each :
       arguments.has("ap") ? allPaths(path.node()) : std::vector<DagPath>{path}) {
    if (each.nodes().size() > 1) items.push_back(SelectionItem::of(each.parent()));
  }
  return items;
}

CommandResult listRelatives(const Arguments& arguments, CommandContext& context) {
  Items items;
  std::string error;
  if (!findItems(arguments.objects(), context, items, error))
    return CommandResult::failure("listRelatives: " + error);
  Value::Strings names;
  for (const SelectionItem& item : items) {
    if (item.path.isEmpty()) continue;
    const Items relatives = arguments.has("p") || arguments.has("ap")
                                ? parentsOf(item.path, arguments)
                                : childrenOf(item.path, arguments);
    for (const SelectionItem& relative : relatives)
      if (admits(arguments, *relative.node))
        names.push_back(arguments.has("f") ? relative.path.fullName()
                                           : shownName(context, relative));
  }
  return CommandResult::success(std::move(names));
}

}  // namespace

void addSelectionCommands(CommandTable& table) {
  table.add("select",
            {{"r", "replace", ""},
             {"add", "add", ""},
             {"d", "deselect", ""},
             {"tgl", "toggle", ""},
             {"cl", "clear", ""},
             {"all", "all", ""},
             {"hi", "hierarchy", ""},
             {"ne", "noExpand", ""},
             {"af", "addFirst", ""}},
            select);
  table.add("ls",
            {{"sl", "selection", ""},
             {"l", "long", ""},
             {"typ", "type", "s"},
             {"et", "exactType", "s"},
             {"dag", "dagObjects", ""},
             {"s", "shapes", ""},
             {"tr", "transforms", ""},
             {"g", "geometry", ""},
             {"mat", "materials", ""},
             {"tex", "textures", ""},
             {"set", "sets", ""},
             {"ca", "cameras", ""},
             {"ap", "allPaths", ""},
             {"as", "assemblies", ""},
             {"o", "objectsOnly", ""},
             {"ro", "readOnly", ""},
             {"ni", "noIntermediate", ""},
             {"hd", "head", "i"},
             {"uid", "uuid", ""},
             {"tl", "tail", "i"},
             {"v", "visible", ""},
             {"iv", "invisible", ""},
             {"fl", "flatten", ""},
             {"st", "showType", ""},
             {"lt", "lights", ""},
             {"ln", "lockedNodes", ""},
             {"io", "intermediateObjects", ""},
             {"dn", "defaultNodes", ""},
             {"ext", "excludeType", "s"},
             {"r", "recursive", "b"},
             {"sn", "shortNames", ""},
             {"dep", "dependencyNodes", ""},
             {"rn", "referencedNodes", ""},
             {"rf", "references", ""},
             {"pr", "partitions", ""},
             {"con", "containers", ""},
             {"ud", "undeletable", ""},
             {"lf", "leaf", ""},
             {"os", "orderedSelection", ""}},
            ls);
  table.add("listRelatives",
            {{"c", "children", ""},
             {"p", "parent", ""},
             {"ap", "allParents", ""},
             {"ad", "allDescendents", ""},
             {"s", "shapes", ""},
             {"f", "fullPath", ""},
             {"pa", "path", ""},
             {"typ", "type", "s"},
             {"ni", "noIntermediate", ""}},
            listRelatives);
}

}  // namespace host::mel
