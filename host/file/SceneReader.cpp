#include "host/file/SceneReader.h"

#include <algorithm>
#include <filesystem>

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

namespace host {
namespace {

namespace fs = std::filesystem;
using Kind = SceneProblem::Kind;
using morvane::Status;
using morvane::StatusCode;

constexpr std::size_t kMaxReferenceDepth = 16;

// Of one scene. Files that each refer to others many times would otherwise multiply without end.
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

std::string absolutePath(const std::string& path) {
  std::error_code error;
  const fs::path absolute = fs::absolute(fs::u8path(path), error);
  return (error ? fs::u8path(path) : absolute).lexically_normal().u8string();
}

// As its project has it, or by its last part beside the scene.
std::string findReference(const std::string& name, const std::string& folder) {
  std::string portable = DirectoryMap::current().convert(name).value_or(name);
  std::replace(portable.begin(), portable.end(), '\\', '/');
  // "path.ma{1}" is the same file referred to once more.
  const std::size_t brace = portable.rfind('{');
  if (brace != std::string::npos && portable.back() == '}') portable.resize(brace);
  const FileSearch search =
      searchFile(portable, folder, SceneProject::current().project(), "scene");
  const fs::path asWritten = search.found ? fs::u8path(search.places.back()) : fs::path();
  const fs::path beside = fs::u8path(folder) / fs::u8path(portable).filename();
  for (const fs::path& candidate : {asWritten, beside}) {
    std::error_code error;
    if (fs::is_regular_file(candidate, error) && fs::file_size(candidate, error) != 0)
      return candidate.u8string();
  }
  return std::string();
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
  const auto line = statements_.line() + std::count(text.begin(), end, '\n');
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
    SceneProblems::current().add({kind, path_, 0, text});
    return;
  }
  mel::showWarning(path_ + ":" + std::to_string(statements_.line()) + ":" +
                   std::to_string(statements_.column()) + ": " + text);
  SceneProblems::current().add({kind, path_, statements_.line(), text});
}

void SceneReader::noteByte(Kind kind, std::uint64_t place, const std::string& text) {
  const std::string placed = "byte " + std::to_string(place) + ": " + text;
  mel::showWarning(path_ + ": " + placed);
  SceneProblems::current().add({kind, path_, 0, placed});
}

Status SceneReader::mayRead(const std::string& absolute, bool isReference) {
  FilesBeingRead& files = HostState::current().files;
  if (std::find(files.open.begin(), files.open.end(), absolute) != files.open.end())
    return {StatusCode::kDamaged, path_ + " refers to itself; remove that reference"};
  if (files.open.size() >= kMaxReferenceDepth) {
    return {StatusCode::kTooLarge, path_ + " is not loaded: files refer to one another more than " +
                                       std::to_string(kMaxReferenceDepth) + " deep"};
  }
  files.references = isReference ? files.references + 1 : 0;
  files.reportedTooLarge = files.reportedTooLarge && isReference;
  if (isReference && Scene::current().nodes().size() > kMostNodes) {
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
  Status status = mayRead(absolute, options.isReference);
  if (status.ok()) status = openScene();
  if (!status.ok()) return status;
  isBinary_ = isBinarySceneStart(statements_.firstBytes());
  prepareContext(options, absolute);
  const SceneUnits outerUnits = currentUnits();
  currentUnits() = SceneUnits();
  FilesBeingRead& files = HostState::current().files;
  files.open.push_back(absolute);
  status = isBinary_ ? readBinary() : readStatements();
  applyEdits();
  files.open.pop_back();
  currentUnits() = outerUnits;
  return status;
}

void SceneReader::prepareContext(const Options& options, const std::string& absolute) {
  context_ = mel::CommandContext(mel::Interpreter::current());
  context_.inSceneFile = true;
  context_.isReference = options.isReference;
  context_.keepsInfo = options.keepsInfo;
  context_.nameSpace = options.nameSpace;
  context_.folder = fs::u8path(absolute).parent_path().u8string();
  context_.onWarning = [this](const std::string& text) { note(Kind::kNotice, text); };
}

Status SceneReader::readStatements() {
  if (context_.keepsInfo) SceneInfo::current().firstLine = statements_.firstLine();
  std::string_view statement;
  while (statements_.next(statement)) runStatement(statement);
  noteEnd();
  if (statements_.failed()) return {StatusCode::kCannotRead, "cannot read all of " + path_};
  return {};
}

Status SceneReader::readBinary() {
  BinaryReader reader(
      context_,
      [this](Kind kind, std::uint64_t place, const std::string& text) {
        noteByte(kind, place, text);
      },
      [this](const mel::Words& words) { runFileStatement(words); },
      [this](const KeptWords& edits) { addEdits(edits); });
  binary_ = &reader;
  const Status status = reader.read(path_);
  if (reader.isCut()) note(Kind::kDamage, "the file is cut off here; fetch it again");
  binary_ = nullptr;
  currentUnits() = SceneUnits();  // of the edits, which are texts
  addEnd(reader.isCut() ? SceneProblems::End::kCut : SceneProblems::End::kWhole);
  return status;
}

void SceneReader::addEnd(SceneProblems::End end) {
  if (!context_.isReference)
    SceneProblems::current().end = std::max(SceneProblems::current().end, end);
}

// A file that stops between two statements is whole only if it never was one of Maya's own.
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

// The bulk of a large scene: numbers go from the text into the mesh, with nothing between.
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
      setMeshData(*context_.currentNode->mesh, path, rest, currentUnits().length);
  if (!problem.empty())
    note(Kind::kDamage, "'" + context_.currentNode->name() + "." + path + "' " + problem);
  return true;
}

void SceneReader::runStatement(std::string_view statement) {
  if (noteZeroBytes(statement)) return;
  const bool isSetAttr =
      statement.substr(0, 7) == "setAttr" && statement.size() > 7 && isBlank(statement[7]);
  if (isSetAttr && (runMeshStatement(statement) || keepNumbers(context_.currentNode, statement)))
    return;
  std::string error;
  if (!splitStatement(statement, name_, words_, error)) {
    note(Kind::kDamage, error);
    return;
  }
  if (name_ == "file") {
    runFileStatement(words_);
    return;
  }
  if (isSetAttr && statement.find("dataReferenceEdits") != statement.npos) addEdits(words_);
  const mel::CommandResult result = mel::runCommand(name_, words_, context_);
  if (!result.ok) note(result.isMalformed ? Kind::kDamage : Kind::kNotice, result.error);
}

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
  SceneGaps& gaps = SceneGaps::current();
  for (const auto& [name, gap] : missing_) {
    const NodePtr node = Scene::current().findNode(context_.nameSpace + name);
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

// References stand there twice: first what there is (-rdi), then the order to load it (-r).
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
  if (context_.keepsInfo)
    SceneInfo::current().references.push_back(mel::asStatement("file", words));
  // What is listed as deferred was not loaded in the scene as it was saved. The order to load says
  // so of every reference.
  if (!loads) {
    if (defers) deferred_.insert(node);
    return;
  }
  const std::string& name = words.back().text;
  if (!node.empty() && deferred_.count(node) != 0) {
    note(Kind::kNotice, "the referenced file " + name + " was not loaded in the scene as saved");
    return;
  }
  loadReference(name, nameSpace.empty() || nameSpace == ":" ? "" : nameSpace + ":", node);
}

void SceneReader::loadReference(const std::string& name, const std::string& nameSpace,
                                const std::string& node) {
  const std::string needed = "needs the referenced file " + name + " (" + node + "), which ";
  const std::string found = findReference(name, context_.folder);
  if (found.empty()) {
    const std::string advice = "tell where its folder is (--map, dirmap)";
    note(Kind::kNotice, "the referenced file " + name + " was not found; " + advice);
    missing_[node] = {needed + "was not found", advice};
    return;
  }
  Options options;
  options.isReference = true;
  options.nameSpace = context_.nameSpace + nameSpace;
  SceneReader reader;
  const Status status = reader.read(found, options);
  if (!status.ok()) {
    // Files that multiply would be named thousands of times.
    bool& told = HostState::current().files.reportedTooLarge;
    if (status.code() != StatusCode::kTooLarge || !told) note(Kind::kNotice, status.text());
    told = told || status.code() == StatusCode::kTooLarge;
    missing_[node] = {needed + "cannot be read", status.text()};
    return;
  }
  loaded_.insert(node);
  for (const std::string& inner : reader.loaded_) loaded_.insert(nameSpace + inner);
  for (const auto& [inner, gap] : reader.missing_) missing_[nameSpace + inner] = gap;
}

}  // namespace host
