#include "host/file/SceneFiles.h"

#include <maya/MPxFileTranslator.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <memory>

#include "host/binary/ChunkWalker.h"
#include "host/evaluation/CurrentTime.h"
#include "host/file/InverseKinematics.h"
#include "host/file/SceneReader.h"
#include "host/file/SceneWriter.h"
#include "host/mel/Interpreter.h"
#include "host/plugin/PluginRegistry.h"
#include "host/scene/Scene.h"
#include "host/state/HostState.h"
#include "host/state/SceneGaps.h"
#include "host/state/SceneInfo.h"
#include "host/state/SceneProblems.h"
#include "host/state/SceneProject.h"
#include "host/text/Messages.h"
#include "host/text/NearestName.h"
#include "host/text/Text.h"
#include "util/FileFacts.h"
#include "util/Path.h"
#include "util/SystemStatus.h"

namespace host {
namespace {

namespace fs = std::filesystem;
using morvane::Status;
using morvane::StatusCode;

constexpr char kSceneType[] = "mayaAscii";
constexpr char kBinaryType[] = "mayaBinary";
// The most bytes shown to translators; their number must fit a short.
constexpr std::size_t kFirstBytes = 4096;

void setWorkingFolder(const std::string& folder) {
  std::error_code ignored;
  fs::current_path(morvane::systemPath(folder), ignored);
}

std::string workingFolder() {
  std::error_code error;
  return morvane::nameOf(fs::current_path(error));
}

// When a project's rules cannot be read, it counts as one without rules.
void enterProject(HostState& state, const std::string& sceneFolder) {
  const morvane::Status status = state.project.enter(sceneFolder);
  if (!status.ok()) mel::showWarning("the project's folders are not known: " + status.text());
}

std::string readFirstBytes(const std::string& path) {
  std::string bytes(kFirstBytes, '\0');
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(morvane::openToRead(path),
                                                             &std::fclose);
  bytes.resize(file == nullptr ? 0 : std::fread(bytes.data(), 1, bytes.size(), file.get()));
  return bytes;
}

MFileObject fileObject(const std::string& path) {
  MFileObject file;
  file.setRawFullName(MString(path.data(), static_cast<int>(path.size())));
  return file;
}

const Translator* findTranslator(HostState& state, const std::string& name) {
  for (const Translator& translator : state.plugins.translators())
    if (translator.name == name) return &translator;
  return nullptr;
}

// "; did you mean meadow.ma?" for a file of the folder that has nearly this name.
std::string likelyMeant(const std::string& name) {
  const fs::path path = morvane::pathOf(name);
  std::vector<std::string> names;
  std::error_code error;
  for (fs::directory_iterator entry(morvane::systemPath(path.parent_path()), error), end;
       !error && entry != end; entry.increment(error)) {
    if (entry->is_regular_file(error)) names.push_back(morvane::nameOf(entry->path().filename()));
  }
  const std::string nearest = nearestName(morvane::nameOf(path.filename()), names);
  return nearest.empty() ? "; check the name" : "; did you mean " + nearest + "?";
}

// Whether there is a file that can be read to its end. Files that are none, such as the system's
// own that say they are empty and wait for what they have to tell, are not scenes or images either.
Status checkReadable(const std::string& path) {
  const morvane::FileFacts facts = morvane::factsOf(path);
  if (facts.type == fs::file_type::not_found)
    return {StatusCode::kNotFound, "no file named " + path + likelyMeant(path)};
  if (facts.isFolder()) return {StatusCode::kNotAFile, path + " is a folder; name a file in it"};
  if (facts.error) {
    const Status reason = morvane::systemStatus(facts.error, StatusCode::kCannotRead);
    return {reason.code(),
            "cannot read " + path + ": " + reason.text() + "; check the file and its folders"};
  }
  if (!facts.isFile()) {
    return {StatusCode::kNotAFile,
            path + " is not a file that can be read to its end; name a file"};
  }
  if (facts.size == 0) {
    return {StatusCode::kDamaged,
            path + " is empty; fetch it again, or save it again where it was made"};
  }
  return {};
}

// Whether the type is one of the two kinds of scene. A request may name the wrong one: the file's
// first bytes decide.
bool isSceneType(const std::string& type) {
  return type == kSceneType || type == kBinaryType;
}

// The type that the request names or the file is; fails when it is none that is known.
Status findType(HostState& state, FileRequest& request) {
  if (request.type.empty()) {
    request.type = identifyFile(state, request.path);
    if (!request.type.empty()) return {};
    return {StatusCode::kUnsupported,
            request.path + " is neither a Maya scene nor of a type that a loaded plug-in knows"};
  }
  if (isSceneType(request.type) || findTranslator(state, request.type) != nullptr) return {};
  return {StatusCode::kBadArgument,
          "unknown file type '" + request.type + "'; load the plug-in that reads it"};
}

using Mode = MPxFileTranslator::FileAccessMode;

Status translate(HostState& state, const FileRequest& request, Mode mode) {
  const auto object = state.plugins.make(*findTranslator(state, request.type));
  const bool reads =
      mode == MPxFileTranslator::kOpenAccessMode || mode == MPxFileTranslator::kImportAccessMode;
  const bool able = object != nullptr &&
                    (reads ? object->haveReadMethod() : object->haveWriteMethod()) &&
                    (mode != MPxFileTranslator::kOpenAccessMode || object->canBeOpened());
  if (!able) {
    return {StatusCode::kUnsupported, "files of type '" + request.type + "' cannot be " +
                                          (mode == MPxFileTranslator::kOpenAccessMode ? "opened"
                                           : reads                                    ? "read"
                                                                                      : "written")};
  }
  const MString options(request.options.data(), static_cast<int>(request.options.size()));
  const MFileObject file = fileObject(request.path);
  const MStatus status =
      reads ? object->reader(file, options, mode) : object->writer(file, options, mode);
  if (status == MStatus::kSuccess) return {};
  return {reads ? StatusCode::kCannotRead : StatusCode::kCannotWrite,
          "the '" + request.type + "' translator could not " + (reads ? "read " : "write ") +
              request.path + "; what it printed says why"};
}

// With a notice of what does not come along.
void lookAt(HostState& state, double frame, const std::string& path) {
  const bool isAnother = frame != currentTime(state.scene);
  setCurrentTime(state.scene, frame);
  const std::string note = isAnother ? noteOfHandles(state.scene) : "";
  if (note.empty()) return;
  mel::showWarning(path + ": " + note);
  state.problems.add({SceneProblem::Kind::kNotice, path, 0, note});
}

Status readSceneFile(HostState& state, const std::string& path,
                     const SceneReader::Options& options) {
  const auto& nodes = state.scene.nodes();
  const std::size_t firstNew = nodes.empty() ? 0 : nodes.rbegin()->first + 1;
  SceneReader reader(state);
  const Status status = reader.read(path, options);
  const auto& frame = state.givenFrame;
  if (frame && options.keepsInfo) lookAt(state, *frame, path);
  evaluateSceneHistories(state);
  state.project.findTextures(state.scene, state.folders, firstNew, workingFolder());
  return status;
}

// A scene file may replace a scene file only.
Status mayHoldScene(const std::string& path) {
  const std::string bytes = readFirstBytes(path);
  if (bytes.empty() || isSceneFileStart(bytes)) return {};
  return {StatusCode::kCannotWrite,
          "cannot write " + path + ": the file there is not a scene; give the scene another name"};
}

std::vector<NodePtr> selectedNodes(const HostState& state) {
  std::vector<NodePtr> nodes;
  for (const SelectionItem& item : state.scene.selection.items()) nodes.push_back(item.node);
  return nodes;
}

}  // namespace

void startNewScene(HostState& state) {
  state.scene.clear();
  state.info = SceneInfo();
  state.gaps.clear();
  for (const auto& [serial, node] : state.scene.nodes()) {
    for (const ConnectionPtr& connection : node->connections.inOrder()) {
      std::uint64_t& last = state.info.lastDefaultConnection;
      last = std::max(last, connection->serial);
    }
  }
  const std::string& folder = state.interpreter.callerFolder();
  setWorkingFolder(folder);
  (void)state.project.enter(folder);  // whoever opens a scene of it is told
}

std::string identifyFile(HostState& state, const std::string& path) {
  const std::string bytes = readFirstBytes(path);
  if (isSceneFileStart(bytes)) return isBinarySceneStart(bytes) ? kBinaryType : kSceneType;
  std::string possible;
  for (const Translator& translator : state.plugins.translators()) {
    const auto object = state.plugins.make(translator);
    if (object == nullptr) continue;
    const auto kind =
        object->identifyFile(fileObject(path), bytes.data(), static_cast<short>(bytes.size()));
    if (kind == MPxFileTranslator::kIsMyFileType) return translator.name;
    if (kind == MPxFileTranslator::kCouldBeMyFileType && possible.empty())
      possible = translator.name;
  }
  return possible;
}

Status openFile(HostState& state, const FileRequest& given) {
  FileRequest request = given;
  startNewScene(state);
  Status status = checkReadable(request.path);
  if (status.ok()) status = findType(state, request);
  if (!status.ok()) return status;
  if (!isSceneType(request.type))
    return translate(state, request, MPxFileTranslator::kOpenAccessMode);
  SceneReader::Options options;
  options.keepsInfo = true;
  // Set before anything is read: names in the scene are relative to its folder.
  const std::string folder = morvane::nameOf(morvane::pathOf(request.path).parent_path());
  setWorkingFolder(folder);
  enterProject(state, folder);
  const morvane::FileIdentity identity = morvane::identityAt(request.path);
  status = readSceneFile(state, request.path, options);
  if (!status.ok()) {
    startNewScene(state);
    return status;
  }
  state.info.openedAs = request.path;
  state.info.opened = identity;
  state.scene.fileName = request.path;
  state.scene.selection.clear();
  return status;
}

Status importFile(HostState& state, const FileRequest& given) {
  FileRequest request = given;
  Status status = checkReadable(request.path);
  if (status.ok()) status = findType(state, request);
  if (!status.ok()) return status;
  if (!isSceneType(request.type))
    return translate(state, request, MPxFileTranslator::kImportAccessMode);
  SceneReader::Options options;
  options.nameSpace =
      request.nameSpace.empty() || request.nameSpace == ":" ? "" : request.nameSpace + ":";
  return readSceneFile(state, request.path, options);
}

Status referenceFile(HostState& state, const FileRequest& given, const std::string& node) {
  FileRequest request = given;
  Status status = checkReadable(request.path);
  if (status.ok()) status = findType(state, request);
  if (!status.ok()) return status;
  if (!isSceneType(request.type))
    return {StatusCode::kUnsupported, request.path + " is not a scene; import it"};
  SceneReader::Options options;
  options.nameSpace = request.nameSpace + ":";
  options.isReference = true;
  status = readSceneFile(state, request.path, options);
  if (!status.ok()) return status;
  const NodePtr made = state.scene.createNode(*NodeType::find("reference"), node);
  const std::string rest = " -ns " + mel::quoted(request.nameSpace) + " -rfn " +
                           mel::quoted(made->name()) + " -typ " + mel::quoted(request.type) + " " +
                           mel::quoted(request.path);
  state.info.references.push_back("file -rdi 1" + rest);
  state.info.references.push_back("file -r -dr 1" + rest);
  return status;
}

Status exportFile(HostState& state, const FileRequest& given, bool selectionOnly) {
  FileRequest request = given;
  if (request.type.empty()) request.type = kSceneType;
  Status status = findType(state, request);
  if (!status.ok()) return status;
  if (selectionOnly && state.scene.selection.size() == 0)
    return {StatusCode::kBadArgument, "nothing is selected; select what is to be exported"};
  if (!isSceneType(request.type)) {
    return translate(state, request,
                     selectionOnly ? MPxFileTranslator::kExportActiveAccessMode
                                   : MPxFileTranslator::kExportAccessMode);
  }
  if (request.type == kBinaryType)
    return {StatusCode::kBadArgument, "only Maya ASCII is written; name the type mayaAscii"};
  status = mayHoldScene(request.path);
  if (!status.ok()) return status;
  return selectionOnly ? writeNodes(state, request.path, selectedNodes(state))
                       : writeScene(state, request.path);
}

Status saveFile(HostState& state) {
  const std::string& path = state.scene.fileName;
  if (path.empty())
    return {StatusCode::kBadArgument, "the scene has no name; give it one with file -rename"};
  const Status status = mayHoldScene(path);
  return status.ok() ? writeScene(state, path) : status;
}

}  // namespace host
