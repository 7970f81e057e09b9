#ifndef MORVANE_HOST_COMMANDS_LOOKUP_H_
#define MORVANE_HOST_COMMANDS_LOOKUP_H_

#include <string>
#include <string_view>
#include <vector>

#include "host/mel/Command.h"
#include "host/scene/Dag.h"
#include "host/scene/Plug.h"
#include "host/scene/Selection.h"

// How commands find what their words name.
namespace host::mel {

// The name in the scene. In a referenced file every part of a path gets the file's namespace,
// unless it is absolute (":lambert1").
std::string qualifiedName(std::string_view name, const CommandContext& context);

// Null with the reason in `error`.
NodePtr findNode(std::string_view name, const CommandContext& context, std::string& error);

// The failure of a command that did not find `name`. A name without a namespace is one of the scene
// file's own, so that what made it is missing there; any other may be a file's that is not here, or
// the current node's that could not be made.
CommandResult notFound(std::string_view name, const std::string& error);

// "node.path", or ".path" of the current node (in a script: the first selected one). In a scene
// file, a path that the node does not have gives the null plug with `error` empty, and `node` and
// `path` say what was meant.
struct PlugName {
  NodePtr node;
  std::string path;
};
bool splitPlugName(std::string_view text, const CommandContext& context, PlugName& name,
                   std::string& error);
Plug findPlug(std::string_view text, const CommandContext& context, std::string& error);

// The objects that the names match, in order; without names the active selection. A failure when a
// name matches nothing, or a name without wildcards matches several objects.
bool findItems(const std::vector<std::string>& names, const CommandContext& context,
               std::vector<SelectionItem>& items, std::string& error);

// The name that shows an item's node, without components.
std::string shownName(const CommandContext& context, const SelectionItem& item);

}  // namespace host::mel

#endif  // MORVANE_HOST_COMMANDS_LOOKUP_H_
