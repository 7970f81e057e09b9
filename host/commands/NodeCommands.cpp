#include "host/attribute/NodeTypeTable.h"
#include "host/commands/Builtin.h"

#include <algorithm>

#include "host/commands/Lookup.h"
#include "host/mel/Command.h"
#include "host/scene/Connections.h"
#include "host/scene/Node.h"
#include "host/scene/Scene.h"
#include "host/scene/Sets.h"
#include "host/scene/Values.h"
#include "host/state/HostState.h"

namespace host::mel {
namespace {

std::string shown(const CommandContext& context, const NodePtr& node) {
  return context.host().scene.displayName(node);
}

// --- createNode

const NodeType* typeFor(const std::string& name, bool hasParent, const CommandContext& context) {
  const NodeType* known = NodeType::find(name);
  // A scene file may use types of plug-ins that are not here: what it sets on them is kept. A type
  // stands in a saved scene without quotes.
  const bool invents = known == nullptr && context.inSceneFile && isLegalName(name);
  return invents ? &NodeType::findOrInvent(name, hasParent) : known;
}

void finishCreated(const NodePtr& node, const Arguments& arguments, CommandContext& context) {
  if (context.inSceneFile) {
    context.currentNode = node;
  } else if (!arguments.has("ss")) {
    context.host().scene.selection.clear();
    context.host().scene.selection.add(SelectionItem::of(node));
  }
}

// A shared node is made only when the scene has none of that name; a referenced file shares those
// of the scene.
NodePtr findShared(const Arguments& arguments, const NodePtr& parent,
                   const CommandContext& context) {
  const std::string name = arguments.text("n");
  for (const std::string& candidate : {name, qualifiedName(name, context)}) {
    for (const NodePtr& node : context.host().scene.nodesNamed(candidate)) {
      const auto& parents = node->parents();
      if (parent == nullptr ||
          std::find(parents.begin(), parents.end(), parent.get()) != parents.end()) {
        return node;
      }
    }
  }
  return nullptr;
}

void rememberOwn(const std::string& wanted, const std::string& name, const NodePtr& node,
                 CommandContext& context) {
  const auto [own, isFirst] = context.ownNodes.emplace(wanted, node);
  if (!isFirst) own->second = nullptr;
  if (node->name() != name) context.renames[wanted] = node->name();
}

// The parent that a scene file names. A parent in a missing file gets a stand-in, so that its
// children are not lost. A saved scene names that parent, and leaves the stand-in out.
NodePtr parentNamed(const std::string& name, const Arguments& arguments, CommandContext& context,
                    std::string& error) {
  Scene& scene = context.host().scene;
  NodePtr parent = findNode(name, context, error);
  if (parent == nullptr && arguments.has("s") && !context.nameSpace.empty())
    parent = scene.findNode(name, &error);
  const bool isElsewhere = name.find(':') != name.npos && name.find_first_of("*?") == name.npos;
  if (parent == nullptr && context.inSceneFile && isElsewhere) {
    const std::string whole = qualifiedName(name, context);
    const std::string leaf = whole.substr(whole.rfind('|') + 1);
    if (legalName(leaf) != leaf) return nullptr;
    context.warn("createNode: " + error + "; something else stands in for it");
    parent = scene.createNode(*NodeType::find("fosterParent"), leaf, nullptr, &error);
    parent->isReferenced = true;
  }
  if (parent != nullptr && context.inSceneFile) scene.moveIntoDag(parent);
  return parent;
}

CommandResult createNode(const Arguments& arguments, CommandContext& context) {
  // After any failure: the statements that follow do not belong to the node before.
  context.currentNode = nullptr;
  if (arguments.objects().size() != 1)
    return CommandResult::malformed("createNode: needs one node type");
  std::string error;
  NodePtr parent;
  if (arguments.has("p")) {
    parent = parentNamed(arguments.text("p"), arguments, context, error);
    if (parent == nullptr) return notFound(arguments.text("p"), "createNode: " + error);
  }
  NodePtr node = arguments.has("s") ? findShared(arguments, parent, context) : nullptr;
  if (node == nullptr) {
    const std::string& typeName = arguments.objects().front();
    const NodeType* type = typeFor(typeName, parent != nullptr, context);
    if (type == nullptr)
      return CommandResult::malformed("createNode: unknown node type '" + typeName + "'");
    const std::string wanted = arguments.text("n");
    const std::string name = wanted.empty() ? wanted : context.nameSpace + wanted;
    node = context.host().scene.createNode(*type, name, parent, &error);
    if (node == nullptr) return CommandResult::failure("createNode: " + error);
    node->isShared = arguments.has("s");
    node->isReferenced = context.isReference;
    if (context.inSceneFile && !wanted.empty()) rememberOwn(wanted, name, node, context);
  }
  finishCreated(node, arguments, context);
  return CommandResult::success(shown(context, node));
}

// --- shadingNode, hyperShade

// Nodes for shading are listed by one of the scene's default nodes, which is how the host finds
// them.
void listNode(const CommandContext& context, const NodePtr& node, const char* list,
              const char* plugName) {
  const auto listNodes = context.host().scene.nodesNamed(list);
  const auto array = listNodes.empty() ? std::nullopt : Plug::find(listNodes.front(), plugName);
  const auto message = Plug::find(node, "message");
  if (array && message) connect(*message, nextElement(*array), false);
}

void listByKind(const CommandContext& context, const NodePtr& node) {
  if (node->hasFn(MFn::kLambert))
    listNode(context, node, "defaultShaderList1", "shaders");
  else if (node->type().isA("texture2d") || node->hasFn(MFn::kFileTexture))
    listNode(context, node, "defaultTextureList1", "textures");
}

CommandResult createShadingNode(const CommandContext& context, const std::string& command,
                                const std::string& typeName, const std::string& name, bool select) {
  const NodeType* type = NodeType::find(typeName);
  if (type == nullptr)
    return CommandResult::failure(command + ": unknown node type '" + typeName + "'");
  std::string error;
  const NodePtr node = context.host().scene.createNode(*type, name, nullptr, &error);
  if (node == nullptr) return CommandResult::failure(command + ": " + error);
  listByKind(context, node);
  if (select) {
    context.host().scene.selection.clear();
    context.host().scene.selection.add(SelectionItem::of(node));
  }
  return CommandResult::success(shown(context, node));
}

CommandResult shadingNode(const Arguments& arguments, CommandContext& context) {
  if (arguments.objects().size() != 1)
    return CommandResult::failure("shadingNode: needs one node type");
  return createShadingNode(context, "shadingNode", arguments.objects().front(), arguments.text("n"),
                           !arguments.has("ss"));
}

NodePtr shadingGroupOf(const NodePtr& shader) {
  const auto colour = Plug::find(shader, "outColor");
  for (const Plug& end : colour ? destinationsOf(*colour) : std::vector<Plug>())
    if (end.node()->type().isA("shadingEngine")) return end.node();
  return nullptr;
}

CommandResult hyperShade(const Arguments& arguments, CommandContext& context) {
  if (arguments.has("cn"))
    return createShadingNode(context, "hyperShade", arguments.text("cn"), "", true);
  if (!arguments.has("a") && !arguments.has("o"))
    return CommandResult::failure("hyperShade: needs -createNode, -assign or -objects");
  std::string error;
  const NodePtr shader = findNode(arguments.text(arguments.has("a") ? "a" : "o"), context, error);
  const NodePtr group = shader == nullptr ? nullptr : shadingGroupOf(shader);
  if (group == nullptr) {
    return CommandResult::failure(
        "hyperShade: " +
        (shader == nullptr ? error : "'" + shown(context, shader) + "' has no shading group"));
  }
  Selection& selection = context.host().scene.selection;
  if (arguments.has("o")) {
    selection.clear();
    for (const SelectionItem& item : membersOf(group)) selection.add(item);
    return CommandResult::success();
  }
  for (const SelectionItem& item : selection.items())
    if (!forceMember(group, item, &error)) return CommandResult::failure("hyperShade: " + error);
  return CommandResult::success();
}

// --- rename, delete, lockNode

CommandResult renameNode(const Arguments& arguments, CommandContext& context) {
  const std::vector<std::string>& names = arguments.objects();
  if (arguments.has("uid") && context.inSceneFile) {
    if (context.currentNode != nullptr && !names.empty()) context.currentNode->uuid = names.back();
    return CommandResult::success();
  }
  if (names.empty() || names.size() > 2)
    return CommandResult::failure("rename: needs a name, or an object and a name");
  std::vector<SelectionItem> items;
  std::string error;
  if (!findItems(
          names.size() == 2 ? std::vector<std::string>{names[0]} : std::vector<std::string>(),
          context, items, error)) {
    return CommandResult::failure("rename: " + error);
  }
  if (items.size() != 1) return CommandResult::failure("rename: needs exactly one object");
  if (arguments.has("uid")) {
    items[0].node->uuid = names.back();
    return CommandResult::success(names.back());
  }
  if (!context.host().scene.rename(items[0].node, names.back(), !arguments.has("is"), &error))
    return CommandResult::failure("rename: " + error);
  return CommandResult::success(shownName(context, SelectionItem::of(items[0].node)));
}

void keepWhatItGave(const NodePtr& node) {
  for (const ConnectionPtr& connection : node->connections.inOrder())
    if (connection->source.node() == node && connection->destination.node() != node)
      disconnectKeepingValue(connection);
}

CommandResult deleteNodes(const Arguments& arguments, CommandContext& context) {
  if (context.inSceneFile) return CommandResult::failure("a scene file may not delete nodes");
  std::vector<SelectionItem> items;
  std::string error;
  if (!findItems(arguments.objects(), context, items, error))
    return CommandResult::failure("delete: " + error);
  if (arguments.has("ch")) return CommandResult::success();
  for (const SelectionItem& item : items) {
    if (item.component != nullptr)
      return CommandResult::failure("delete: components cannot be deleted");
    keepWhatItGave(item.node);
    if (item.node->isAlive() && !context.host().scene.deleteNode(item.node, &error))
      return CommandResult::failure("delete: " + error);
  }
  context.host().scene.selection.removeDeleted();
  return CommandResult::success();
}

// Flags of lockNode that the host does not use.
std::string lockFlags(const Arguments& arguments) {
  std::string flags;
  for (const char* flag : {"lu", "ln"})
    if (arguments.has(flag))
      flags += std::string(" -") + flag + (arguments.truth(flag) ? " on" : " off");
  return flags + (arguments.has("ic") ? " -ic" : "");
}

CommandResult lockNode(const Arguments& arguments, CommandContext& context) {
  std::vector<NodePtr> nodes;
  if (context.inSceneFile && arguments.objects().empty()) {
    nodes.push_back(context.currentNode);
  } else {
    std::vector<SelectionItem> items;
    std::string error;
    if (!findItems(arguments.objects(), context, items, error))
      return CommandResult::failure("lockNode: " + error);
    for (const SelectionItem& item : items) nodes.push_back(item.node);
  }
  Value::Ints locked;
  for (const NodePtr& node : nodes) {
    if (node != nullptr && !arguments.query()) {
      node->isLocked = arguments.truth("l", true);
      node->lockFlags = lockFlags(arguments);
    }
    locked.push_back(node != nullptr && node->isLocked ? 1 : 0);
  }
  return arguments.query() ? CommandResult::success(std::move(locked)) : CommandResult::success();
}

// --- Questions

CommandResult objExists(const Arguments& arguments, CommandContext& context) {
  if (arguments.objects().size() != 1) return CommandResult::failure("objExists: needs one name");
  const std::string& name = arguments.objects().front();
  bool exists = !context.host().scene.match(qualifiedName(name, context)).empty();
  if (!exists && name.find('.') != std::string::npos) {
    std::string error;
    exists = !findPlug(name, context, error).isNull();
  }
  return CommandResult::success(Value::ofTruth(exists));
}

// The type of the one object that is named; null with the reason in `error`.
const NodeType* typeOfNamed(const Arguments& arguments, const CommandContext& context,
                            std::string& error) {
  if (arguments.objects().size() != 1) {
    error = "needs one object";
    return nullptr;
  }
  const std::string& name = arguments.objects().front();
  const NodePtr node = findNode(std::string_view(name).substr(0, name.find('.')), context, error);
  return node == nullptr ? nullptr : &node->type();
}

CommandResult objectType(const Arguments& arguments, CommandContext& context) {
  std::string error;
  const NodeType* type = typeOfNamed(arguments, context, error);
  if (type == nullptr) return CommandResult::failure("objectType: " + error);
  if (arguments.has("isa"))
    return CommandResult::success(Value::ofTruth(type->isA(arguments.text("isa"))));
  if (arguments.has("i"))
    return CommandResult::success(Value::ofTruth(type->name() == arguments.text("i")));
  return CommandResult::success(type->name());
}

// From the top down, without the type of all nodes, as the host lists them.
Value::Strings inheritedTypes(const NodeType& own) {
  Value::Strings names;
  for (const NodeType* type = &own; type->base() != nullptr; type = type->base())
    names.insert(names.begin(), type->name());
  return names;
}

// With the type itself.
Value::Strings derivedTypes(const NodeType& base) {
  Value::Strings names;
  for (const NodeTypeRow& row : nodeTypeRows()) {
    const NodeType* const type = NodeType::find(row.name);
    if (type != nullptr && type->isA(base.name())) names.push_back(row.name);
  }
  return names;
}

CommandResult nodeType(const Arguments& arguments, CommandContext& context) {
  std::string error = "needs one name of a type";
  const bool namesType = arguments.has("itn") && arguments.objects().size() == 1;
  const NodeType* type = namesType ? NodeType::find(arguments.objects().front())
                                   : typeOfNamed(arguments, context, error);
  if (type == nullptr)
    return CommandResult::failure("nodeType: " + (namesType ? "no such node type" : error));
  if (arguments.has("d")) return CommandResult::success(derivedTypes(*type));
  if (arguments.has("i")) return CommandResult::success(inheritedTypes(*type));
  return CommandResult::success(arguments.has("api") ? nameOf(type->apiType()) : type->name());
}

}  // namespace

void addNodeCommands(CommandTable& table) {
  table.add(
      "createNode",
      {{"n", "name", "s"}, {"p", "parent", "s"}, {"s", "shared", ""}, {"ss", "skipSelect", ""}},
      createNode);
  table.add("shadingNode",
            {{"as", "asShader", ""},
             {"at", "asTexture", ""},
             {"al", "asLight", ""},
             {"au", "asUtility", ""},
             {"ar", "asRendering", ""},
             {"app", "asPostProcess", ""},
             {"icm", "isColorManaged", ""},
             {"n", "name", "s"},
             {"p", "parent", "s"},
             {"s", "shared", ""},
             {"ss", "skipSelect", ""}},
            shadingNode);
  table.add("hyperShade", {{"cn", "createNode", "s"}, {"a", "assign", "s"}, {"o", "objects", "s"}},
            hyperShade);
  table.add("rename", {{"uid", "uuid", ""}, {"is", "ignoreShape", ""}}, renameNode);
  table.add("delete", {{"ch", "constructionHistory", ""}}, deleteNodes);
  table.add("lockNode",
            {{"l", "lock", "b"},
             {"lu", "lockUnpublished", "b"},
             {"ln", "lockName", "b"},
             {"ic", "ignoreComponents", ""},
             {"q", "query", ""}},
            lockNode);
  table.add("objExists", {}, objExists);
  table.add("objectType", {{"isa", "isAType", "s"}, {"i", "isType", "s"}}, objectType);
  table.add("nodeType",
            {{"i", "inherited", ""},
             {"api", "apiType", ""},
             {"d", "derived", ""},
             {"itn", "isTypeName", ""}},
            nodeType);
}

}  // namespace host::mel
