#include <algorithm>

#include "host/file/RecordedFile.h"
#include "host/file/SceneReader.h"
#include "host/scene/Node.h"
#include "host/scene/Scene.h"
#include "host/state/DirectoryMap.h"
#include "host/state/HostState.h"
#include "host/state/SceneInfo.h"
#include "host/state/SceneProject.h"
#include "util/FileFacts.h"
#include "util/Path.h"

// The part of SceneReader that deals with the files that a scene refers to.
namespace host {
namespace {

using Kind = SceneProblem::Kind;
using morvane::Status;
using morvane::StatusCode;

// The file where its project has it, or the file of its name beside the scene.
std::string findReference(HostState& state, const std::string& name, const std::string& folder) {
  std::string portable = state.folders.convert(name).value_or(name);
  std::replace(portable.begin(), portable.end(), '\\', '/');
  // "path.ma{1}" is the same file referred to once more.
  const std::size_t brace = portable.rfind('{');
  if (brace != std::string::npos && portable.back() == '}') portable.resize(brace);
  const FileSearch search = searchFile(portable, folder, state.project.project(), "scene");
  const std::string asWritten = search.found ? search.places.back() : std::string();
  const std::string beside =
      morvane::nameOf(morvane::pathOf(folder) / morvane::pathOf(portable).filename());
  for (const std::string& candidate : {asWritten, beside})
    if (morvane::factsOf(candidate).size != 0) return candidate;
  return std::string();
}

}  // namespace

void SceneReader::addEdits(const mel::Words& words) {
  const std::vector<ReferenceEdit> edits = parseReferenceEdits(words);
  edits_.insert(edits_.end(), edits.begin(), edits.end());
}

// Of a binary file.
void SceneReader::addEdits(const KeptWords& edits) {
  std::string statement = "setAttr -type " + edits.type;
  for (const std::string& word : edits.words) statement += ' ' + word;
  std::string error;
  if (splitStatement(statement, name_, words_, error)) addEdits(words_);
}

// Once everything is there that they speak of.
void SceneReader::applyEdits() {
  const auto firstElsewhere = std::stable_partition(
      edits_.begin(), edits_.end(),
      [this](const ReferenceEdit& edit) { return loaded_.count(edit.reference) != 0; });
  const std::vector<ReferenceEdit> applicable(edits_.begin(), firstElsewhere);
  const std::vector<UnappliedEdit> unapplied = applyReferenceEdits(applicable, context_);
  if (!unapplied.empty()) {
    note(Kind::kNotice, std::to_string(unapplied.size()) + " of " +
                            std::to_string(applicable.size()) +
                            " edits of references were not applied, first " +
                            unapplied[0].edit->reference + ": " + unapplied[0].reason);
  }
  noteGaps(unapplied);
}

void SceneReader::noteGaps(const std::vector<UnappliedEdit>& unapplied) const {
  SceneGaps& gaps = state_.gaps;
  for (const auto& [name, gap] : missing_) {
    const NodePtr node = state_.scene.findNode(context_.nameSpace + name);
    if (node != nullptr) gaps.add({node}, gap);
  }
  for (const ReferenceEdit& edit : edits_) {
    const auto missing = missing_.find(edit.reference);
    if (missing != missing_.end()) gaps.add(nodesOf(edit, context_), missing->second);
  }
  for (const UnappliedEdit& each : unapplied) {
    gaps.add(nodesOf(*each.edit, context_),
             {"has an edit of " + each.edit->reference + " that was not applied: " + each.reason,
              "import that reference into the scene in Maya, or take the edit out of it there"});
  }
}

// A reference occurs twice in a file: first what it is (-rdi), then the order to load it (-r).
void SceneReader::runFileStatement(const mel::Words& words) {
  std::string nameSpace;
  std::string node;
  bool loads = false;
  bool declares = false;
  bool defers = false;
  for (std::size_t i = 0; i < words.size(); ++i) {
    const std::string& word = words[i].text;
    const bool isFlag = !words[i].quoted;
    loads = loads || (isFlag && (word == "-r" || word == "-reference"));
    declares = declares || (isFlag && (word == "-rdi" || word == "-referenceDepthInfo"));
    if (isFlag && (word == "-ns" || word == "-namespace") && i + 1 < words.size())
      nameSpace = words[i + 1].text;
    if (isFlag && (word == "-rfn" || word == "-referenceNode") && i + 1 < words.size())
      node = words[i + 1].text;
    defers = defers || (isFlag && (word == "-dr" || word == "-deferReference") &&
                        i + 1 < words.size() && words[i + 1].text == "1");
  }
  if ((!loads && !declares) || words.empty()) {
    note(Kind::kNotice, "file: a scene file may refer to other files, and nothing else");
    return;
  }
  if (context_.keepsInfo) state_.info.references.push_back(mel::asStatement("file", words));
  const std::string& name = words.back().text;
  // A reference listed as deferred was not loaded when the scene was saved. The order to load it is
  // there for every reference.
  if (!loads) {
    if (defers)
      deferred_.insert(node);
    else
      announceReference(name);
    return;
  }
  if (!node.empty() && deferred_.count(node) != 0) {
    note(Kind::kNotice, "the referenced file " + name + " was not loaded in the scene as saved");
    return;
  }
  loadReference(name, nameSpace.empty() || nameSpace == ":" ? "" : nameSpace + ":", node);
}

void SceneReader::announceReference(const std::string& name) {
  const std::string found = findReference(state_, name, context_.folder);
  if (!found.empty()) recordings_->announce(absolutePath(found));
}

void SceneReader::loadReference(const std::string& name, const std::string& nameSpace,
                                const std::string& node) {
  const std::string needed = "needs the referenced file " + name + " (" + node + "), which ";
  const std::string found = findReference(state_, name, context_.folder);
  if (found.empty()) {
    const std::string advice = "tell where its folder is (--map, dirmap)";
    note(Kind::kNotice, "the referenced file " + name + " was not found; " + advice);
    missing_[node] = {needed + "was not found", advice};
    return;
  }
  Options options;
  options.isReference = true;
  options.nameSpace = context_.nameSpace + nameSpace;
  SceneReader reader(state_);
  reader.recordings_ = recordings_;
  const Status status = reader.read(found, options);
  if (!status.ok()) {
    // One report is enough: files that multiply would be named thousands of times.
    bool& told = state_.files.reportedTooLarge;
    if (status.code() != StatusCode::kTooLarge || !told) note(Kind::kNotice, status.text());
    told = told || status.code() == StatusCode::kTooLarge;
    missing_[node] = {needed + "cannot be read", status.text()};
    return;
  }
  loaded_.insert(node);
  curves_.insert(curves_.end(), reader.curves_.begin(), reader.curves_.end());
  for (const std::string& inner : reader.loaded_) loaded_.insert(nameSpace + inner);
  for (const auto& [inner, gap] : reader.missing_) missing_[nameSpace + inner] = gap;
}

}  // namespace host
