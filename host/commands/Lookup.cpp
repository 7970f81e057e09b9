#include "host/commands/Lookup.h"

#include <algorithm>

#include "host/scene/Scene.h"
#include "host/state/HostState.h"

namespace host::mel {
namespace {

// The part of "a|b.path" that names the node: all before the first dot.
std::string_view nodePart(std::string_view text) {
  return text.substr(0, text.find('.'));
}

NodePtr currentNode(const CommandContext& context) {
  if (context.inSceneFile) return context.currentNode;
  const Selection& selection = context.host().scene.selection;
  return selection.size() == 0 ? nullptr : selection.items().front().node;
}

// In a scene file a name means the file's own node, whatever else the scene holds.
NodePtr ownNode(std::string_view name, const CommandContext& context) {
  if (context.ownNodes.empty()) return nullptr;
  const auto own = context.ownNodes.find(std::string(name));
  return own != context.ownNodes.end() && own->second != nullptr && own->second->isAlive()
             ? own->second
             : nullptr;
}

// The path of a plug of the instance that a name means: of "|b|shape.iog", where b is the second
// place of the shape, "iog[1]".
std::string pathOfInstance(std::string_view path, std::string_view name, const NodePtr& node,
                           const CommandContext& context) {
  for (const std::string_view groups : {"iog", "instObjGroups"}) {
    const bool isWhole = path.substr(0, groups.size()) == groups &&
                         (path.size() == groups.size() || path[groups.size()] == '.');
    const bool isAmbiguous = node->pathCount() > 1 || path.size() > groups.size();
    if (!isWhole || !node->isDag() || !isAmbiguous) continue;
    const DagPath instance = context.host().scene.findPath(qualifiedName(name, context));
    if (instance.isEmpty() || instance.node() != node) continue;
    return std::string(groups) + '[' + std::to_string(instance.instanceNumber()) + ']' +
           std::string(path.substr(groups.size()));
  }
  return std::string(path);
}

}  // namespace

std::string qualifiedName(std::string_view name, const CommandContext& context) {
  if ((context.nameSpace.empty() && context.renames.empty()) || name.empty())
    return std::string(name);
  std::string qualified;
  std::size_t at = 0;
  while (at <= name.size()) {
    const std::size_t arrow = std::min(name.find("->", at), name.size());
    const std::size_t end = std::min(name.find('|', at), arrow);
    const std::string_view part = name.substr(at, end - at);
    const auto renamed = context.renames.find(part);
    if (renamed != context.renames.end()) {
      qualified += renamed->second;
    } else {
      qualified += part.empty() || part.front() == ':' ? "" : context.nameSpace;
      qualified += part;
    }
    // "a->|b" and "a->b" name what stands below a shape.
    at = end + (end == arrow ? 2 : 1);
    if (end < name.size()) qualified += name.substr(end, at - end);
  }
  return qualified;
}

NodePtr findNode(std::string_view name, const CommandContext& context, std::string& error) {
  if (NodePtr own = ownNode(name, context)) return own;
  return context.host().scene.findNode(qualifiedName(name, context), &error);
}

CommandResult notFound(std::string_view name, const std::string& error) {
  const bool isOwn = name.find(':') == name.npos && name.substr(0, 1) != ".";
  return isOwn ? CommandResult::malformed(error) : CommandResult::failure(error);
}

bool splitPlugName(std::string_view text, const CommandContext& context, PlugName& name,
                   std::string& error) {
  const std::string_view node = nodePart(text);
  if (node.size() == text.size()) {
    error = "'" + std::string(text) + "' names no attribute";
    return false;
  }
  name.path = std::string(text.substr(node.size() + 1));
  name.node = node.empty() ? currentNode(context) : findNode(node, context, error);
  if (name.node == nullptr && node.empty())
    error = "'" + std::string(text) + "' names no node, and none is selected";
  if (name.node != nullptr && !node.empty())
    name.path = pathOfInstance(name.path, node, name.node, context);
  return name.node != nullptr;
}

Plug findPlug(std::string_view text, const CommandContext& context, std::string& error) {
  PlugName name;
  if (!splitPlugName(text, context, name, error)) return Plug();
  const auto plug = Plug::find(name.node, name.path);
  if (!plug) {
    error = "no attribute '" + name.path + "' on '" + name.node->name() + "'";
    return Plug();
  }
  return *plug;
}

bool findItems(const std::vector<std::string>& names, const CommandContext& context,
               std::vector<SelectionItem>& items, std::string& error) {
  const Scene& scene = context.host().scene;
  if (names.empty()) {
    items = scene.selection.items();
    return true;
  }
  for (const std::string& name : names) {
    if (const NodePtr own = ownNode(name, context)) {
      items.push_back(SelectionItem::of(own));
      continue;
    }
    std::vector<SelectionItem> found = scene.match(qualifiedName(name, context));
    if (found.empty()) {
      error = "No object matches name: " + name;
      return false;
    }
    const bool isPattern = name.find_first_of("*?") != std::string::npos;
    if (found.size() > 1 && !isPattern && !context.inSceneFile) {
      error = "More than one object matches name: " + name;
      return false;
    }
    items.insert(items.end(), found.begin(), found.end());
  }
  return true;
}

std::string shownName(const CommandContext& context, const SelectionItem& item) {
  return item.path.isEmpty() ? context.host().scene.displayName(item.node)
                             : item.path.partialName();
}

}  // namespace host::mel
