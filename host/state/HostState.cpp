#include "host/state/HostState.h"

#include <memory>

#include "host/text/Messages.h"

namespace host {
namespace {

// Never destroyed: plug-ins stay in the process when it exits, as nothing may run their code any
// more.
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

FlowingValues& FlowingValues::current() {
  return HostState::current().graph;
}

GraphEvaluation& GraphEvaluation::current() {
  return HostState::current().graph;
}

SceneInfo& SceneInfo::current() {
  return HostState::current().info;
}

SceneGaps& SceneGaps::current() {
  return HostState::current().gaps;
}

SceneProblems& SceneProblems::current() {
  return HostState::current().problems;
}

SceneUnits& currentUnits() {
  return HostState::current().units;
}

DirectoryMap& DirectoryMap::current() {
  return HostState::current().folders;
}

SceneProject& SceneProject::current() {
  return HostState::current().project;
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
