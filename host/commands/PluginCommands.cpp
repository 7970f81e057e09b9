#include "host/commands/Builtin.h"

#include "host/mel/Command.h"
#include "host/plugin/PluginRegistry.h"
#include "host/state/HostState.h"

namespace host::mel {
namespace {

CommandResult loadPluginCommand(const Arguments& arguments, CommandContext& context) {
  if (context.inSceneFile) return CommandResult::failure("a scene file may not load plug-ins");
  Value::Strings names;
  for (const std::string& name : arguments.objects()) {
    std::string error;
    if (!context.host().plugins.load(name, error))
      return CommandResult::failure("loadPlugin: " + error);
    names.push_back(context.host().plugins.find(name)->name);
  }
  return CommandResult::success(std::move(names));
}

CommandResult unloadPluginCommand(const Arguments& arguments, CommandContext& context) {
  if (context.inSceneFile) return CommandResult::failure("a scene file may not unload plug-ins");
  Value::Strings names;
  for (const std::string& name : arguments.objects()) {
    std::string error;
    if (!context.host().plugins.unload(name, error))
      return CommandResult::failure("unloadPlugin: " + error);
    names.push_back(name);
  }
  return CommandResult::success(std::move(names));
}

Value::Strings translatorsOf(const CommandContext& context, const PluginPtr& plugin) {
  Value::Strings names;
  for (const Translator& translator : context.host().plugins.translators())
    if (translator.plugin == plugin) names.push_back(translator.name);
  return names;
}

CommandResult pluginInfo(const Arguments& arguments, CommandContext& context) {
  const PluginRegistry& registry = context.host().plugins;
  if (!arguments.query()) return CommandResult::failure("pluginInfo: only -query is supported");
  if (arguments.has("ls")) {
    Value::Strings names;
    for (const PluginPtr& plugin : registry.plugins()) names.push_back(plugin->name);
    return CommandResult::success(std::move(names));
  }
  if (arguments.objects().size() != 1)
    return CommandResult::failure("pluginInfo: needs one plug-in");
  const PluginPtr plugin = registry.find(arguments.objects().front());
  if (arguments.has("l") || arguments.has("r"))
    return CommandResult::success(Value::ofTruth(plugin != nullptr));
  if (plugin == nullptr) {
    return CommandResult::failure("pluginInfo: no plug-in named " + arguments.objects().front() +
                                  " is loaded");
  }
  if (arguments.has("c")) return CommandResult::success(plugin->commands);
  if (arguments.has("t")) return CommandResult::success(translatorsOf(context, plugin));
  return CommandResult::success(arguments.has("p")    ? plugin->path
                                : arguments.has("vd") ? plugin->vendor
                                                      : plugin->version);
}

}  // namespace

void addPluginCommands(CommandTable& table) {
  table.add("loadPlugin", {{"qt", "quiet", ""}, {"n", "name", "s"}}, loadPluginCommand);
  table.add("unloadPlugin", {{"f", "force", ""}}, unloadPluginCommand);
  table.add("pluginInfo",
            {{"q", "query", ""},
             {"ls", "listPlugins", ""},
             {"l", "loaded", ""},
             {"r", "registered", ""},
             {"c", "command", ""},
             {"t", "translator", ""},
             {"p", "path", ""},
             {"v", "version", ""},
             {"vd", "vendor", ""}},
            pluginInfo);
}

}  // namespace host::mel
