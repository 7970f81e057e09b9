#include "host/Host.h"

#include <algorithm>
#include <filesystem>
#include <utility>

#include "host/commands/Builtin.h"
#include "host/file/SceneFiles.h"
#include "host/file/SceneWriter.h"
#include "host/mel/Interpreter.h"
#include "host/plugin/PluginRegistry.h"
#include "host/scene/Scene.h"
#include "host/scene/Values.h"
#include "host/state/DirectoryMap.h"
#include "host/state/HostState.h"
#include "host/state/SceneProject.h"
#include "host/text/Messages.h"
#include "host/text/Text.h"
#include "util/Path.h"

namespace host {
namespace {

bool report(bool ok, const std::string& error) {
  if (!ok) mel::showError(error);
  return ok;
}

morvane::Status reported(morvane::Status status) {
  if (!status.ok()) mel::showError(status.text());
  return status;
}

bool report(const mel::Outcome& outcome) {
  return report(outcome.ok, outcome.failure.describe());
}

std::string fromCaller(const std::string& path) {
  return mel::resolvedPath(path, HostState::current().interpreter.callerFolder());
}

Answer answerOf(const mel::Value& value) {
  using Type = mel::Value::Type;
  Answer answer;
  answer.isArray = value.isArray();
  const auto array =
      value.convertedTo(value.isArray() ? value.type() : mel::arrayType(value.type()));
  if (value.type() == Type::kNone || !array) return answer;
  if (array->ints() != nullptr) {
    answer.kind = Answer::Kind::kInts;
    answer.ints = *array->ints();
  } else if (array->floats() != nullptr) {
    answer.kind = Answer::Kind::kFloats;
    answer.floats = *array->floats();
  } else {
    answer.kind = Answer::Kind::kStrings;
    answer.strings = *array->strings();
  }
  return answer;
}

}  // namespace

std::vector<std::string> textureNames() {
  std::vector<std::string> names;
  for (const auto& [serial, node] : HostState::current().scene.nodes()) {
    const auto plug =
        node->hasFn(MFn::kFileTexture) ? Plug::find(node, "fileTextureName") : std::nullopt;
    const auto name = plug ? readText(*plug) : std::nullopt;
    if (name && !name->empty()) names.push_back(*name);
  }
  return names;
}

void start(const std::string& callerFolder) {
  mel::addBuiltinCommands(HostState::current().interpreter.commands());
  HostState::current().interpreter.setCallerFolder(callerFolder);
  startNewScene(HostState::current());
}

void newScene() {
  startNewScene(HostState::current());
}

morvane::Status openScene(const std::string& path) {
  return reported(openFile(HostState::current(), {fromCaller(path), "mayaAscii", "", ""}));
}

SceneProblems takeSceneProblems() {
  return std::exchange(HostState::current().problems, SceneProblems());
}

morvane::Status saveScene(const std::string& path) {
  return reported(writeScene(HostState::current(), fromCaller(path)));
}

bool execute(const std::string& text, const std::string& origin) {
  return report(HostState::current().interpreter.execute(text, origin));
}

bool evaluate(const std::string& text, Answer& answer, std::string& reason) {
  const mel::Outcome outcome = HostState::current().interpreter.execute(text, "");
  reason = outcome.failure.text;
  if (outcome.ok) answer = answerOf(outcome.value);
  return outcome.ok;
}

bool executeFile(const std::string& path) {
  return report(HostState::current().interpreter.executeFile(path));
}

void addPlugInFolder(const std::string& folder) {
  HostState::current().plugins.addFolder(folder);
}
void addScriptFolder(const std::string& folder) {
  HostState::current().interpreter.addScriptFolder(folder);
}

bool mapFolder(const std::string& from, const std::string& to) {
  HostState::current().folders.enabled = true;
  return HostState::current().folders.add(from, to);
}

std::vector<std::string> unusedFolders() {
  return HostState::current().folders.unused();
}

bool isMapped(const std::string& name) {
  return HostState::current().folders.hasGiven(name);
}

void useProject(const std::string& folder) {
  HostState::current().project.give(fromCaller(folder));
  (void)HostState::current().project.enter(folder);  // whoever opens a scene is told
}

void allowFiles() {
  HostState::current().readFiles.isAllowed = true;
}

void openAtFrame(double frame) {
  HostState::current().givenFrame = frame;
}

FileSearch searchOfTexture(const std::string& name) {
  std::error_code error;
  return HostState::current().project.searchOf(
      name, morvane::nameOf(std::filesystem::current_path(error)));
}

bool loadPlugin(const std::string& nameOrPath) {
  std::string error;
  return report(HostState::current().plugins.load(nameOrPath, error), error);
}

void beforeMessages(std::function<void(std::string_view)> listener) {
  mel::beforeMessage() = std::move(listener);
}

morvane::Status select(const std::string& name, bool onlyTransforms) {
  const std::vector<SelectionItem> found = HostState::current().scene.match(name);
  const bool isThere = std::any_of(found.begin(), found.end(), [&](const SelectionItem& item) {
    return !onlyTransforms || item.node->isTransform();
  });
  if (!isThere) return {morvane::StatusCode::kNotFound, "no object matches the name " + name};
  const std::string script =
      "select -add " +
      (onlyTransforms ? "`ls -long -transforms " + mel::quoted(name) + "`" : mel::quoted(name));
  const mel::Outcome outcome = HostState::current().interpreter.execute(script, "");
  if (!outcome.ok) return {morvane::StatusCode::kBadArgument, outcome.failure.text};
  return {};
}

}  // namespace host
