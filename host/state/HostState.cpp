#include "host/state/HostState.h"

#include <memory>

#include "host/text/Messages.h"

namespace host {
namespace {

// Never destroyed: when the process exits, plug-ins stay loaded and none of their code may run.
std::unique_ptr<HostState>& running() {
  static auto& state = *new std::unique_ptr<HostState>(std::make_unique<HostState>());
  return state;
}

}  // namespace

HostState& HostState::current() {
  return *running();
}

void HostState::reset() {
  running()->plugins.unloadAll();
  running() = std::make_unique<HostState>();
}

Scene& Scene::current() {
  return HostState::current().scene;
}

PluginRegistry& PluginRegistry::current() {
  return HostState::current().plugins;
}

namespace mel {

Interpreter& Interpreter::current() {
  return HostState::current().interpreter;
}

std::function<void(std::string_view)>& beforeMessage() {
  return HostState::current().beforeMessage;
}

}  // namespace mel
}  // namespace host
