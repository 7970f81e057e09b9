#include "host/file/SceneReader.h"

#include <algorithm>

#include "host/binary/ChunkWalker.h"
#include "host/file/BinaryReader.h"
#include "host/file/KeptNumbers.h"
#include "host/file/MeshText.h"
#include "host/mel/Interpreter.h"
#include "host/mesh/MeshData.h"
#include "host/scene/Node.h"
#include "host/scene/Scene.h"
#include "host/state/DirectoryMap.h"
#include "host/state/HostState.h"
#include "host/state/SceneInfo.h"
#include "host/state/SceneProject.h"
#include "host/state/SceneUnits.h"
#include "host/text/Blank.h"
#include "host/text/Messages.h"
#include "host/text/Text.h"
#include "util/Path.h"
#include "util/WholeNames.h"

namespace host {
namespace {

using Kind = SceneProblem::Kind;
using morvane::Status;
using morvane::StatusCode;

constexpr std::size_t kMaxReferenceDepth = 16;

// Limits of one scene: files that each refer to others many times would multiply without end.
constexpr int kMaxReferences = 10000;
constexpr std::size_t kMostNodes = 1000000;

// The next blank-separated word of a statement, quotes included.
std::string_view takeWord(std::string_view& rest) {
  while (!rest.empty() && isBlank(rest.front())) rest.remove_prefix(1);
  std::size_t end = 0;
  if (!rest.empty() && rest.front() == '"') {
    const std::size_t close = mel::findClosingQuote(rest, 0);
    end = close == rest.npos ? rest.size() : close + 1;
  } else {
    while (end < rest.size() && !isBlank(rest[end]) && rest[end] != '"') ++end;
  }
  const std::string_view word = rest.substr(0, end);
  rest.remove_prefix(end);
  return word;
}

bool takesNoArgument(std::string_view flag) {
  return flag == "-av" || flag == "-alteredValue" || flag == "-c" || flag == "-clamp";
}

}  // namespace

bool isSceneFileStart(std::string_view bytes) {
  if (isBinarySceneStart(bytes)) return true;
  if (bytes.substr(0, 3) == "\xEF\xBB\xBF") bytes.remove_prefix(3);
  return bytes.substr(0, 6) == "//Maya";
}

// Disks and copies that lost a block leave such bytes; Maya never writes one.
bool SceneReader::noteZeroBytes(std::string_view text) {
  const std::size_t first = text.find('\0');
  if (first == text.npos) return false;
  const auto end = text.begin() + static_cast<std::ptrdiff_t>(first);
  const auto line = line_ + std::count(text.begin(), end, '\n');
  note(Kind::kDamage, "zero bytes stand in the file from line " + std::to_string(line) +
                          " on, where a part of it was lost");
  return true;
}

void SceneReader::note(SceneProblem::Kind kind, const std::string& text) {
  if (binary_ != nullptr) {
    noteByte(kind, binary_->place(), text);
    return;
  }
  if (isBinary_) {
    mel::showWarning(path_ + ": " + text);
    state_.problems.add({kind, path_, 0, text});
    return;
  }
  mel::showWarning(path_ + ":" + std::to_string(line_) + ":" + std::to_string(column_) + ": " +
                   text);
  state_.problems.add({kind, path_, line_, text});
}

void SceneReader::noteByte(Kind kind, std::uint64_t place, const std::string& text) {
  const std::string placed = "byte " + std::to_string(place) + ": " + text;
  mel::showWarning(path_ + ": " + placed);
  state_.problems.add({kind, path_, 0, placed});
}

std::string SceneReader::absolutePath(const std::string& path) {
  return morvane::resolvedName(morvane::absoluteName(path), "");
}

Status SceneReader::mayRead(const std::string& absolute, bool isReference) {
  FilesBeingRead& files = state_.files;
  if (std::find(files.open.begin(), files.open.end(), absolute) != files.open.end())
    return {StatusCode::kDamaged, path_ + " refers to itself; remove that reference"};
  if (files.open.size() >= kMaxReferenceDepth) {
    return {StatusCode::kTooLarge, path_ + " is not loaded: files refer to one another more than " +
                                       std::to_string(kMaxReferenceDepth) + " deep"};
  }
  files.references = isReference ? files.references + 1 : 0;
  files.reportedTooLarge = files.reportedTooLarge && isReference;
  if (isReference && state_.scene.nodes().size() > kMostNodes) {
    return {StatusCode::kTooLarge, path_ +
                                       " is not loaded: the files that the scene refers to have "
                                       "more than " +
                                       std::to_string(kMostNodes) + " nodes"};
  }
  if (files.references > kMaxReferences) {
    return {StatusCode::kTooLarge,
            path_ + " is not loaded: the scene refers to too many files, more than " +
                std::to_string(kMaxReferences)};
  }
  return {};
}

Status SceneReader::openScene() {
  const Status opened = statements_.open(path_);
  if (!opened.ok() || isSceneFileStart(statements_.firstBytes())) return opened;
  const bool isOtherBinary = statements_.firstBytes().substr(0, 3) == "FOR";
  return {
      StatusCode::kUnsupported,
      path_ + (isOtherBinary ? " begins as a binary file, but not as one of a Maya scene; open "
                               "it where it was made and save it as Maya ASCII, .ma"
                             : " is not a scene file: it does not begin with //Maya; save it as "
                               "Maya ASCII")};
}

Status SceneReader::read(const std::string& path, const Options& options) {
  path_ = path;
  const std::string absolute = absolutePath(path);
  if (recordings_ == nullptr) recordings_ = std::make_shared<RecordedFiles>();
  const RecordedFile* const recorded = recordings_->find(absolute);
  Status status = mayRead(absolute, options.isReference);
  if (status.ok() && recorded == nullptr) status = openScene();
  if (!status.ok()) return status;
  isBinary_ =
      recorded != nullptr ? recorded->isBinary : isBinarySceneStart(statements_.firstBytes());
  prepareContext(options, absolute);
  if (recorded == nullptr && options.isReference)
    recorder_ = recordings_->recorderFor(absolute, state_.scene);
  const SceneUnits outerUnits = state_.units;
  state_.units = SceneUnits();
  FilesBeingRead& files = state_.files;
  files.open.push_back(absolute);
  status = readContent(recorded);
  applyEdits();
  gatherCurves();
  files.open.pop_back();
  if (files.open.empty()) takeSceneUnits(curves_, ratesOf(state_.info));
  state_.units = outerUnits;
  if (recorder_ != nullptr && status.ok()) recordings_->keep(absolute, *recorder_);
  recordings_.reset();
  return status;
}

// The scene's own are in its units already.
void SceneReader::gatherCurves() {
  if (context_.keepsInfo) return;
  SceneUnits units = state_.units;
  if (isBinary_) units.length = units.angle = 1.0;  // whatever unit the file was edited in
  for (const auto& [name, node] : context_.ownNodes)
    if (node != nullptr && node->type().isA("animCurve")) curves_.push_back({node, units});
}

Status SceneReader::readContent(const RecordedFile* recorded) {
  if (isBinary_) return readBinary(recorded);
  if (recorded == nullptr) return readStatements();
  replay(*recorded);
  return {};
}

void SceneReader::prepareContext(const Options& options, const std::string& absolute) {
  context_ = mel::CommandContext(state_.interpreter);
  context_.inSceneFile = true;
  context_.isReference = options.isReference;
  context_.keepsInfo = options.keepsInfo;
  context_.nameSpace = options.nameSpace;
  context_.folder = morvane::nameOf(morvane::pathOf(absolute).parent_path());
  context_.onWarning = [this](const std::string& text) { note(Kind::kNotice, text); };
}

Status SceneReader::readStatements() {
  if (context_.keepsInfo) state_.info.firstLine = statements_.firstLine();
  std::string_view statement;
  while (statements_.next(statement)) runNext(statement);
  line_ = statements_.line();
  column_ = statements_.column();
  noteEnd();
  if (statements_.failed()) return {StatusCode::kCannotRead, "cannot read all of " + path_};
  return {};
}

void SceneReader::runNext(std::string_view statement) {
  line_ = statements_.line();
  column_ = statements_.column();
  const Effect effect = runStatement(statement);
  if (recorder_ == nullptr) return;
  if (effect == Effect::kMeshNumbers) recorder_->addMeshNumbers(context_.currentNode);
  if (effect != Effect::kStatement) return;
  RecordedFile::Step step;
  step.column = column_;
  step.place = static_cast<std::uint64_t>(line_);
  recorder_->add(step, statement, context_.currentNode);
}

void SceneReader::replay(const RecordedFile& recorded) {
  for (const RecordedFile::Step& step : recorded.steps) {
    if (step.kind == RecordedFile::Kind::kMesh) {
      recorded.giveMesh(step, context_.currentNode);
      continue;
    }
    line_ = static_cast<int>(step.place);
    column_ = step.column;
    runStatement(recorded.bytesOf(step));
  }
}

Status SceneReader::readBinary(const RecordedFile* recorded) {
  BinaryReader reader(
      context_,
      [this](Kind kind, std::uint64_t place, const std::string& text) {
        noteByte(kind, place, text);
      },
      [this](const mel::Words& words) { runFileStatement(words); },
      [this](const KeptWords& edits) { addEdits(edits); });
  binary_ = &reader;
  Status status;
  if (recorded != nullptr)
    reader.replay(*recorded);
  else
    status = reader.read(path_, recorder_.get());
  if (reader.isCut()) note(Kind::kDamage, "the file is cut off here; fetch it again");
  binary_ = nullptr;
  const double rate = state_.units.framesPerSecond;
  state_.units = SceneUnits();  // of the edits, which are texts
  state_.units.framesPerSecond = rate;
  addEnd(reader.isCut() ? SceneProblems::End::kCut : SceneProblems::End::kWhole);
  return status;
}

void SceneReader::addEnd(SceneProblems::End end) {
  if (!context_.isReference) state_.problems.end = std::max(state_.problems.end, end);
}

// A file that stops between two statements is complete only if Maya did not write it.
void SceneReader::noteEnd() {
  using End = SceneProblems::End;
  End end = statements_.hasEnd() ? End::kWhole : End::kUnmarked;
  if (statements_.endedEarly()) {
    if (!noteZeroBytes(statements_.unfinished())) {
      end = End::kCut;
      note(Kind::kDamage,
           "the file ends inside a statement; it is cut off, or lacks its last semicolon");
    }
  } else if (!statements_.hasEnd() && statements_.isNamed()) {
    end = End::kDoubtful;
    note(Kind::kDamage,
         "the file looks cut off here: it lacks the line // End of, with which Maya ends a scene; "
         "fetch it again or, where nothing is missing, add that line at its end");
  }
  addEnd(end);
}

// Most of a large scene is read here: numbers go from the text straight into the mesh.
bool SceneReader::runMeshStatement(std::string_view statement) {
  if (context_.currentNode == nullptr || context_.currentNode->mesh == nullptr) return false;
  std::string_view rest = statement;
  takeWord(rest);
  std::string_view word = takeWord(rest);
  while (!word.empty() && word.front() == '-') {
    if (!takesNoArgument(word)) takeWord(rest);
    word = takeWord(rest);
  }
  if (word.size() > 1 && word.front() == '"') word = word.substr(1, word.size() - 2);
  if (word.size() < 2 || word.front() != '.' || !isMeshData(word.substr(1))) return false;
  const std::string path(word.substr(1));
  const std::string problem =
      setMeshData(*context_.currentNode->mesh, path, rest, state_.units.length);
  if (!problem.empty())
    note(Kind::kDamage, "'" + context_.currentNode->name() + "." + path + "' " + problem);
  return true;
}

SceneReader::Effect SceneReader::runStatement(std::string_view statement) {
  if (noteZeroBytes(statement)) return Effect::kNone;
  const bool isSetAttr =
      statement.substr(0, 7) == "setAttr" && statement.size() > 7 && isBlank(statement[7]);
  if (isSetAttr && runMeshStatement(statement)) return Effect::kMeshNumbers;
  if (isSetAttr && keepNumbers(context_.currentNode, statement, state_.units))
    return Effect::kStatement;
  std::string error;
  if (!splitStatement(statement, name_, words_, error)) {
    note(Kind::kDamage, error);
    return Effect::kNone;
  }
  if (name_ == "file") {
    runFileStatement(words_);
    return Effect::kStatement;
  }
  if (isSetAttr && statement.find("dataReferenceEdits") != statement.npos) addEdits(words_);
  const mel::CommandResult result = mel::runCommand(name_, words_, context_);
  if (!result.ok) note(result.isMalformed ? Kind::kDamage : Kind::kNotice, result.error);
  return Effect::kStatement;
}

}  // namespace host
