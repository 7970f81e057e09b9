#ifndef MORVANE_HOST_PLUGIN_PLUGINREGISTRY_H_
#define MORVANE_HOST_PLUGIN_PLUGINREGISTRY_H_

#include <memory>
#include <string>
#include <vector>

#include "host/attribute/Object.h"
#include "host/mel/Interpreter.h"
#include "host/mel/Value.h"
#include "host/plugin/SharedLibrary.h"

class MPxFileTranslator;

namespace host {

// A loaded plug-in, as the object that it is handed at start-up.
class Plugin : public Object {
 public:
  MFn::Type apiType() const override { return MFn::kPlugin; }
  bool isAlive() const override { return loaded; }

  std::string name;  // of its file, without folder and suffix
  std::string path;
  std::string vendor = "Unknown";
  std::string version = "Unknown";
  std::vector<std::string> commands;  // in the order in which they were registered
  bool loaded = true;

 private:
  friend class PluginRegistry;
  SharedLibrary library_;
  bool started_ = false;
  int running_ = 0;  // its commands and translators that are under way
};
using PluginPtr = std::shared_ptr<Plugin>;

using ObjectCreator = void* (*)();

// A file format that a plug-in registered.
struct Translator {
  std::string name;
  ObjectCreator create = nullptr;
  PluginPtr plugin;
};

// Plug-ins with what they registered.
class PluginRegistry {
 public:
  static PluginRegistry& current();  // of the host that runs

  // Plug-ins' commands are registered with `interpreter`, which must live longer.
  explicit PluginRegistry(mel::Interpreter& interpreter) : interpreter_(interpreter) {}

  // Folders searched before MAYA_PLUG_IN_PATH.
  void addFolder(const std::string& folder);

  // Loads by path or by name. Success when it is loaded already. A start-up that fails leaves what
  // it registered, and the library, in place.
  bool load(const std::string& nameOrPath, std::string& error);
  // Refused while one of its commands runs.
  bool unload(const std::string& name, std::string& error);
  void unloadAll();  // what is in use stays
  PluginPtr find(const std::string& nameOrPath) const;
  const std::vector<PluginPtr>& plugins() const { return plugins_; }

  bool addCommand(const PluginPtr& plugin, const std::string& name, ObjectCreator create);
  bool removeCommand(const PluginPtr& plugin, const std::string& name);
  bool addTranslator(Translator translator);
  bool removeTranslator(const PluginPtr& plugin, const std::string& name);
  const std::vector<Translator>& translators() const { return translators_; }

  // A translator object to use and drop; its plug-in cannot be unloaded while it lives. Null when
  // its creator gives nothing.
  std::shared_ptr<MPxFileTranslator> make(const Translator& translator);

  // The result of the running command: see MPxCommand::setResult.
  mel::Value result;

 private:
  std::vector<std::string> searched() const;  // the folders, in order
  // Empty, with the reason in `error`, when there is none.
  std::string findFile(const std::string& nameOrPath, std::string& error) const;
  bool start(const PluginPtr& plugin, std::string& error);
  void dropRegistrations(const PluginPtr& plugin);

  mel::Interpreter& interpreter_;
  std::vector<std::string> folders_;
  std::vector<PluginPtr> plugins_;
  std::vector<Translator> translators_;
};

}  // namespace host

#endif  // MORVANE_HOST_PLUGIN_PLUGINREGISTRY_H_
