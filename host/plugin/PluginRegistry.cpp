#include "host/plugin/PluginRegistry.h"

#include <maya/MArgList.h>
#include <maya/MObject.h>
#include <maya/MPxCommand.h>
#include <maya/MPxFileTranslator.h>

#include <algorithm>
#include <filesystem>
#include <utility>

#include "host/mel/Command.h"
#include "host/mel/Functions.h"
#include "host/mel/Interpreter.h"
#include "util/Environment.h"
#include "util/FileFacts.h"
#include "util/Path.h"

namespace host {
namespace {

namespace fs = std::filesystem;

using EntryPoint = MStatus (*)(MObject);

EntryPoint entryPoint(const SharedLibrary& library, const char* name) {
  return reinterpret_cast<EntryPoint>(library.symbol(name));
}

MArgList asArgumentList(const mel::Words& words) {
  MArgList list;
  for (const mel::Word& word : words)
    list.addArg(MString(word.text.data(), static_cast<int>(word.text.size())));
  return list;
}

mel::CommandResult runCommand(const std::string& name, ObjectCreator create,
                              const mel::Words& words, mel::Value& result) {
  // Commands nest: the outer command's result is put back when the inner one is done.
  mel::Value outer = std::exchange(result, mel::Value());
  const std::unique_ptr<MPxCommand> command(static_cast<MPxCommand*>(create()));
  const bool ok = command != nullptr && command->doIt(asArgumentList(words)) == MStatus::kSuccess;
  mel::Value value = std::exchange(result, std::move(outer));
  return ok ? mel::CommandResult::success(std::move(value))
            : mel::CommandResult::failure(name + ": the command failed");
}

// The file itself, or with the platform's suffix behind it.
std::string asPlugin(const std::string& path) {
  if (morvane::factsOf(path).isFile()) return path;
  const std::string longer = path + SharedLibrary::pluginSuffix();
  return morvane::factsOf(longer).isFile() ? longer : std::string();
}

// A name without a folder means only a plug-in: programs and folders often have the same name.
bool isPluginName(const fs::path& name) {
  const std::string suffix = morvane::nameOf(name.extension());
  return suffix == SharedLibrary::pluginSuffix() || suffix == ".dylib";
}

}  // namespace

void PluginRegistry::addFolder(const std::string& folder) {
  folders_.push_back(folder);
}

std::vector<std::string> PluginRegistry::searched() const {
  std::vector<std::string> folders = folders_;
  const std::vector<std::string> listed = mel::foldersOf("MAYA_PLUG_IN_PATH");
  folders.insert(folders.end(), listed.begin(), listed.end());
  const std::string program = morvane::programFolder();
  if (!program.empty()) {
    folders.push_back(program);
    folders.push_back(
        morvane::nameOf(morvane::pathOf(program + "/../plug-ins").lexically_normal()));
  }
  std::vector<std::string> once;
  for (const std::string& folder : folders) {
    std::string path = mel::resolvedPath(folder, interpreter_.callerFolder());
    if (std::find(once.begin(), once.end(), path) == once.end()) once.push_back(std::move(path));
  }
  return once;
}

std::string PluginRegistry::findFile(const std::string& nameOrPath, std::string& error) const {
  const fs::path given = morvane::pathOf(nameOrPath);
  if (given.has_parent_path()) {
    std::string found = asPlugin(mel::resolvedPath(nameOrPath, interpreter_.callerFolder()));
    if (found.empty()) error = "no plug-in named " + nameOrPath + " was found; check the path";
    return found;
  }
  const std::string name = nameOrPath + (isPluginName(given) ? "" : SharedLibrary::pluginSuffix());
  error = "no plug-in named " + nameOrPath + " was found: " + name + " is missing in ";
  for (const std::string& folder : searched()) {
    std::string path = mel::resolvedPath(name, folder);
    if (morvane::factsOf(path).isFile()) return path;
    error += (error.back() == ' ' ? "" : ", ") + folder;
  }
  error += "; give its path, or its folder in MAYA_PLUG_IN_PATH";
  return std::string();
}

PluginPtr PluginRegistry::find(const std::string& nameOrPath) const {
  const std::string name = morvane::nameOf(morvane::pathOf(nameOrPath).stem());
  for (const PluginPtr& plugin : plugins_)
    if (plugin->name == name) return plugin;
  return nullptr;
}

bool PluginRegistry::load(const std::string& nameOrPath, std::string& error) {
  const std::string path = findFile(nameOrPath, error);
  if (path.empty()) return false;
  if (const PluginPtr known = find(path)) {
    error = "the start-up of " + known->path + " failed before; unload it first";
    return known->started_;
  }
  const auto plugin = std::make_shared<Plugin>();
  plugin->name = morvane::nameOf(morvane::pathOf(path).stem());
  plugin->path = path;
  if (!plugin->library_.open(path, error)) return false;
  for (const char* symbol : {"initializePlugin", "uninitializePlugin", "MApiVersion"}) {
    if (plugin->library_.symbol(symbol) == nullptr) {
      error = path + " is not a plug-in: it does not export " + symbol;
      plugin->library_.close();
      return false;
    }
  }
  return start(plugin, error);
}

bool PluginRegistry::start(const PluginPtr& plugin, std::string& error) {
  plugins_.push_back(plugin);
  const EntryPoint initialize = entryPoint(plugin->library_, "initializePlugin");
  ++plugin->running_;
  const MStatus status = initialize(MObject(plugin));
  --plugin->running_;
  plugin->started_ = status == MStatus::kSuccess;
  error = "the start-up of " + plugin->path + " failed; what it printed says why";
  return plugin->started_;
}

bool PluginRegistry::unload(const std::string& name, std::string& error) {
  const PluginPtr plugin = find(name);
  if (plugin == nullptr) {
    error = "no plug-in named " + name + " is loaded";
    return false;
  }
  if (plugin->running_ > 0) {
    error = "the plug-in " + name + " is in use";
    return false;
  }
  const EntryPoint uninitialize = entryPoint(plugin->library_, "uninitializePlugin");
  const bool ok = uninitialize(MObject(plugin)) == MStatus::kSuccess;
  dropRegistrations(plugin);
  plugin->loaded = false;
  plugins_.erase(std::find(plugins_.begin(), plugins_.end(), plugin));
  plugin->library_.close();
  if (!ok) error = "the removal of " + plugin->path + " failed; it is unloaded";
  return ok;
}

void PluginRegistry::unloadAll() {
  const std::vector<PluginPtr> plugins = plugins_;
  for (const PluginPtr& plugin : plugins) {
    std::string ignored;
    unload(plugin->name, ignored);
  }
}

void PluginRegistry::dropRegistrations(const PluginPtr& plugin) {
  const std::vector<std::string> commands = plugin->commands;
  for (const std::string& command : commands) removeCommand(plugin, command);
  translators_.erase(
      std::remove_if(translators_.begin(), translators_.end(),
                     [&](const Translator& translator) { return translator.plugin == plugin; }),
      translators_.end());
}

bool PluginRegistry::addCommand(const PluginPtr& plugin, const std::string& name,
                                ObjectCreator create) {
  const bool taken = mel::findFunction(name) != nullptr || interpreter_.isProcedure(name);
  Plugin* owner = plugin.get();
  const auto run = [this, owner, name, create](const mel::Words& words) {
    ++owner->running_;
    mel::CommandResult outcome = runCommand(name, create, words, result);
    --owner->running_;
    return outcome;
  };
  if (name.empty() || create == nullptr || taken ||
      !interpreter_.commands().addFromPlugin(name, run)) {
    return false;
  }
  plugin->commands.push_back(name);
  return true;
}

bool PluginRegistry::removeCommand(const PluginPtr& plugin, const std::string& name) {
  const auto command = std::find(plugin->commands.begin(), plugin->commands.end(), name);
  if (command == plugin->commands.end()) return false;
  plugin->commands.erase(command);
  interpreter_.commands().remove(name);
  return true;
}

bool PluginRegistry::addTranslator(Translator translator) {
  const bool taken =
      std::any_of(translators_.begin(), translators_.end(),
                  [&](const Translator& other) { return other.name == translator.name; });
  if (taken || translator.name.empty() || translator.create == nullptr) return false;
  translators_.push_back(std::move(translator));
  return true;
}

bool PluginRegistry::removeTranslator(const PluginPtr& plugin, const std::string& name) {
  const auto found =
      std::find_if(translators_.begin(), translators_.end(), [&](const Translator& translator) {
        return translator.plugin == plugin && translator.name == name;
      });
  if (found == translators_.end()) return false;
  translators_.erase(found);
  return true;
}

std::shared_ptr<MPxFileTranslator> PluginRegistry::make(const Translator& translator) {
  auto* object = static_cast<MPxFileTranslator*>(translator.create());
  if (object == nullptr) return nullptr;
  const PluginPtr plugin = translator.plugin;
  ++plugin->running_;
  return std::shared_ptr<MPxFileTranslator>(object, [plugin](MPxFileTranslator* done) {
    delete done;
    --plugin->running_;
  });
}

}  // namespace host
