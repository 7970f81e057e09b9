#include "host/file/BinaryReader.h"

#include <algorithm>
#include <optional>
#include <string_view>
#include <utility>

#include "host/binary/AttributeChunk.h"
#include "host/binary/MeshChunk.h"
#include "host/binary/ReferenceEdits.h"
#include "host/binary/ValueChunk.h"
#include "host/file/BinaryAttributes.h"
#include "host/file/StatementReader.h"
#include "host/mesh/MeshData.h"
#include "host/scene/Node.h"
#include "host/state/HostState.h"
#include "host/state/SceneInfo.h"
#include "host/state/SceneUnits.h"
#include "host/text/Numbers.h"
#include "host/text/Text.h"

namespace host {
namespace {

using Kind = SceneProblem::Kind;
using mel::Word;
using mel::Words;

constexpr double kDegreesInRadian = 57.295779513082320876798;

Word flag(const char* text) {
  return {text, false};
}
Word text(std::string_view value) {
  return {std::string(value), true};
}

// --- Time

constexpr double kDefaultFrames = 24.0;
// In a second, where the file says nothing of it.
constexpr double kOldTicks = 6000.0;

double framesIn(std::string_view unit) {
  constexpr std::pair<std::string_view, double> kUnits[] = {
      {"game", 15.0},      {"film", 24.0},       {"pal", 25.0},       {"ntsc", 30.0},
      {"show", 48.0},      {"palf", 50.0},       {"ntscf", 60.0},     {"sec", 1.0},
      {"min", 1.0 / 60.0}, {"hour", 1.0 / 3600}, {"millisec", 1000.0}};
  for (const auto& [name, frames] : kUnits)
    if (name == unit) return frames;
  constexpr std::string_view kEnd = "fps";
  const bool isRate = unit.size() > kEnd.size() && unit.substr(unit.size() - kEnd.size()) == kEnd;
  const auto rate = isRate ? mel::parseNumber(unit.substr(0, unit.size() - kEnd.size()))
                           : std::optional<double>();
  return rate && *rate > 0 ? *rate : kDefaultFrames;
}

// Curves driven by a value, where all others are driven by time.
bool isKeyedByNumbers(const NodePtr& node) {
  constexpr std::string_view kBegin = "animCurveU";
  return node != nullptr && node->type().name().compare(0, kBegin.size(), kBegin) == 0;
}

// --- Nodes

constexpr std::uint8_t kIsShared = 0x01;
constexpr std::uint8_t kIsAtTop = 0x80;
constexpr std::size_t kUuidSize = 16;

// The hexadecimal digits of the bytes. Each word of four bytes is read from its end.
std::string uuidText(const std::uint8_t* bytes) {
  constexpr char kDigits[] = "0123456789ABCDEF";
  std::string uuid;
  for (std::size_t i = 0; i < kUuidSize; ++i) {
    if (i == 4 || i == 6 || i == 8 || i == 10) uuid += '-';
    const std::uint8_t byte = bytes[i / 4 * 4 + 3 - i % 4];
    uuid += kDigits[byte >> 4];
    uuid += kDigits[byte & 15];
  }
  return uuid;
}

// The longest name of an attribute of a mesh that is read, with what stands around it.
constexpr std::uint64_t kLongestHead = 4096;

constexpr std::uint8_t kIsNextAvailable = 0x01;
constexpr std::uint8_t kLocksDestination = 0x02;

std::string fileType(std::string_view path) {
  const std::size_t dot = path.rfind('.');
  const bool isBinary =
      dot != path.npos && (path.substr(dot) == ".mb" || path.substr(dot) == ".MB");
  return isBinary ? "mayaBinary" : "mayaAscii";
}

}  // namespace

// The chunks that are not values of attributes. Skipped chunks have rows too, because a chunk
// without a row counts as unknown.
struct BinaryReader::ChunkRow {
  const char (&letters)[5];
  ReadChunk read;
};
const BinaryReader::ChunkRow BinaryReader::kRows[] = {
    {"VERS", &BinaryReader::readVersion},      {"TUNI", &BinaryReader::readTimeUnit},
    {"TDUR", &BinaryReader::readTicks},        {"FINF", &BinaryReader::readInfo},
    {"PLUG", &BinaryReader::readPlugin},       {"FRDI", &BinaryReader::readDeclaredReference},
    {"FREF", &BinaryReader::readReference},    {"CREA", &BinaryReader::readNode},
    {"SLCT", &BinaryReader::readSelection},    {"ATTR", &BinaryReader::readDynamicAttribute},
    {"PRNT", &BinaryReader::readInstance},     {"CWFL", &BinaryReader::readConnection},
    {"RELA", &BinaryReader::readRelationship}, {"LUNI", &BinaryReader::passOver},
    {"AUNI", &BinaryReader::passOver},         {"UVER", &BinaryReader::passOver},
    {"MADE", &BinaryReader::passOver},         {"CHNG", &BinaryReader::passOver},
    {"ICON", &BinaryReader::passOver},         {"INFO", &BinaryReader::passOver},
    {"OBJN", &BinaryReader::passOver},         {"INCL", &BinaryReader::passOver},
    {"BCSZ", &BinaryReader::passOver},
};

BinaryReader::BinaryReader(mel::CommandContext& context, Note note, RunFile runFile,
                           TakeEdits takeEdits)
    : context_(context),
      note_(std::move(note)),
      runFile_(std::move(runFile)),
      takeEdits_(std::move(takeEdits)),
      framesPerSecond_(kDefaultFrames) {}

// Numbers are centimetres and radians, whatever units the file was edited in.
void BinaryReader::start(bool isWide) {
  context_.host().units = SceneUnits();
  context_.host().units.angle = kDegreesInRadian;
  isWide_ = isWide;
}

morvane::Status BinaryReader::read(const std::string& path, FileRecorder* recorder) {
  const morvane::Status opened = bytes_.open(path);
  if (!opened.ok()) return {opened.code(), "cannot read " + path + ": " + opened.text()};
  Chunks chunks(bytes_);
  start(chunks.isWide());
  recorder_ = recorder;
  if (recorder_ != nullptr) recorder_->setForm(true, isWide_);
  for (auto next = chunks.next(); next != Chunks::Step::kEnd; next = chunks.next())
    step(chunks, next);
  isCut_ = chunks.isCut();
  place_ = isCut_ ? bytes_.size() : place_;
  if (bytes_.failed()) return {bytes_.status().code(), "cannot read all of " + path};
  return {};
}

void BinaryReader::replay(const RecordedFile& file) {
  start(file.isWide);
  for (const RecordedFile::Step& step : file.steps) {
    place_ = step.kind == RecordedFile::Kind::kMesh ? place_ : step.place;
    const std::string_view bytes =
        step.kind == RecordedFile::Kind::kChunk ? file.bytesOf(step) : "";
    if (step.kind == RecordedFile::Kind::kMesh)
      file.giveMesh(step, context_.currentNode);
    else if (step.kind == RecordedFile::Kind::kChunk)
      readContent(step.tag, {reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()});
    else
      enterContainer(step.tag);
  }
}

void BinaryReader::record(RecordedFile::Kind kind, std::uint32_t tag, std::string_view bytes) {
  if (recorder_ == nullptr) return;
  RecordedFile::Step step;
  step.kind = kind;
  step.tag = tag;
  step.place = place_;
  recorder_->add(step, bytes, context_.currentNode);
}

// Or leaves one, to a form of 0.
void BinaryReader::enterContainer(std::uint32_t form) {
  form_ = form;
  context_.currentNode = nullptr;
}

void BinaryReader::step(Chunks& chunks, Chunks::Step step) {
  place_ = chunks.chunk().start;
  switch (step) {
    case Chunks::Step::kOpen:
    case Chunks::Step::kClose:
      enterContainer(step == Chunks::Step::kOpen ? chunks.chunk().form : 0);
      record(RecordedFile::Kind::kContainer, form_, "");
      break;
    case Chunks::Step::kDamage:
      noteHere(Kind::kDamage, chunks.damage());
      break;
    default:
      readChunk(chunks.chunk());
  }
}

void BinaryReader::noteHere(Kind kind, const std::string& text) {
  note_(kind, place_, text);
}

void BinaryReader::run(const char* command, const Words& words) {
  const mel::CommandResult result = mel::runCommand(command, words, context_);
  if (!result.ok) noteHere(result.isMalformed ? Kind::kDamage : Kind::kNotice, result.error);
}

void BinaryReader::readChunk(const Chunk& chunk) {
  if (chunk.tag == tagOf("MESH")) {
    readMesh(chunk);
    return;
  }
  const auto size = static_cast<std::size_t>(chunk.length);
  const std::uint8_t* const bytes = bytes_.at(chunk.data, size);
  if (bytes == nullptr) return;
  readContent(chunk.tag, ByteCursor(bytes, size));
  record(RecordedFile::Kind::kChunk, chunk.tag, {reinterpret_cast<const char*>(bytes), size});
}

void BinaryReader::readContent(std::uint32_t tag, ByteCursor in) {
  for (const ChunkRow& row : kRows) {
    if (tagOf(row.letters) == tag) {
      (this->*row.read)(in);
      return;
    }
  }
  readAttributeValue(tag, in);
}

bool BinaryReader::isWhole(const ByteCursor& in) {
  if (in.failed()) noteHere(Kind::kDamage, "a chunk ends before what it says does");
  return !in.failed();
}

void BinaryReader::noteUnknown(std::uint32_t tag) {
  if (unknown_.insert(tag).second) {
    noteHere(Kind::kNotice,
             "chunks " + tagText(tag) + " hold something that is not known; they are passed over");
  }
}

void BinaryReader::passOver(ByteCursor) {}

// --- Head

void BinaryReader::readVersion(ByteCursor in) {
  const std::string version(in.rest());
  // A saved scene begins with this comment, which must end where its line does.
  const std::string shown = version.substr(0, version.find_first_of("\r\n"));
  if (context_.keepsInfo) context_.host().info.firstLine = "//Maya ASCII " + shown + " scene";
  run("requires", {flag("maya"), text(version)});
}

void BinaryReader::readTimeUnit(ByteCursor in) {
  const std::string unit(in.rest());
  framesPerSecond_ = framesIn(unit);
  run("currentUnit", {flag("-t"), text(unit)});
}

void BinaryReader::readTicks(ByteCursor in) {
  const auto ticks = mel::parseNumber(in.rest());
  if (ticks && *ticks > 0) ticksPerSecond_ = *ticks;
}

void BinaryReader::readInfo(ByteCursor in) {
  const std::string_view key = in.text();
  const std::string_view value = in.text();
  if (isWhole(in)) run("fileInfo", {text(key), text(value)});
}

// A plug-in's name, its version and the flags of the statement that requires it; then its node
// types with their tags.
void BinaryReader::readPlugin(ByteCursor in) {
  const std::string_view name = in.text();
  const std::string_view version = in.text();
  const std::string_view flags = in.text();
  while (in.left() > 0 && !in.failed()) {
    const std::string_view type = in.text();
    const std::uint32_t tag = in.word();
    if (!in.failed()) tags_.add(tag, type);
  }
  if (!isWhole(in)) return;
  std::string command;
  Words words;
  std::string error;
  if (!splitStatement("requires " + std::string(flags), command, words, error)) words.clear();
  words.push_back(text(name));
  words.push_back(text(version));
  run("requires", words);
}

// --- References

void BinaryReader::runReference(ByteCursor& in, Words words) {
  const std::string_view path = in.text();
  const std::string_view nameSpace = in.text();
  in.half();
  const std::string_view node = in.text();
  if (!isWhole(in)) return;
  words.insert(words.end(), {flag("-ns"), text(nameSpace), flag("-rfn"), text(node), flag("-typ"),
                             text(fileType(path)), text(path)});
  runFile_(words);
}

void BinaryReader::readDeclaredReference(ByteCursor in) {
  const std::string depth = std::to_string(in.word());
  runReference(in, {flag("-rdi"), {depth, false}});
}

void BinaryReader::readReference(ByteCursor in) {
  runReference(in, {flag("-r"), flag("-dr"), flag("1")});
}

// --- Nodes

void BinaryReader::createNode(std::string_view name, std::string_view parent, bool isShared) {
  const std::string type = tags_.nameOf(form_);
  Words words{{type, false}};
  if (isShared) words.push_back(flag("-s"));
  words.push_back(flag("-n"));
  words.push_back(text(name));
  if (!parent.empty()) {
    words.push_back(flag("-p"));
    words.push_back(text(parent));
  }
  run("createNode", words);
}

// There is a parent when bytes remain besides the UUID, unless a flag says that there is none.
void BinaryReader::readNode(ByteCursor in) {
  const std::uint8_t flags = in.byte();
  const std::string_view name = in.text();
  const std::size_t idSize = isWide_ && in.left() >= kUuidSize ? kUuidSize : 0;
  const bool hasParent = (flags & kIsAtTop) == 0 && in.left() > idSize;
  const std::string_view parent = hasParent ? in.text() : std::string_view();
  const std::uint8_t* const id = isWide_ && in.left() == kUuidSize ? in.take(kUuidSize) : nullptr;
  if (!isWhole(in)) {
    context_.currentNode = nullptr;
    return;
  }
  createNode(name, parent, (flags & kIsShared) != 0);
  if (id != nullptr && context_.currentNode != nullptr) context_.currentNode->uuid = uuidText(id);
}

void BinaryReader::readSelection(ByteCursor in) {
  run("select", {flag("-ne"), text(in.rest())});
}

void BinaryReader::readDynamicAttribute(ByteCursor in) {
  AttributeDeclaration declaration;
  if (context_.currentNode == nullptr) return;
  if (!readAttributeChunk(in, isWide_, declaration)) {
    noteHere(Kind::kDamage, "a chunk ends before what it says does");
  } else if (declaration.type.empty()) {
    noteHere(Kind::kNotice, "the attribute '" + declaration.longName + "' is of the type " +
                                declaration.typeTag + ", which is not known; it is not added");
  } else {
    run("addAttr", declarationWords(declaration));
  }
}

void BinaryReader::readAttributeValue(std::uint32_t tag, ByteCursor in) {
  BinaryValue value;
  const double ticks = ticksPerSecond_.value_or(kOldTicks);
  const TimeUnit time{ticks / framesPerSecond_, ticksPerSecond_.has_value(),
                      !isKeyedByNumbers(context_.currentNode)};
  const ValueRead read = readValueChunk(tag, in, time, value);
  if (read == ValueRead::kUnknown) {
    noteUnknown(tag);
    return;
  }
  const NodePtr node = context_.currentNode;
  if (node == nullptr) return;
  const std::string name = "'" + node->name() + "." + value.path + "' ";
  if (read == ValueRead::kMalformed) {
    noteHere(Kind::kDamage, name + "holds something else than its chunk says");
    return;
  }
  const auto* const words = std::get_if<KeptWords>(&value.value);
  if (words != nullptr && words->type == kReferenceEditsType) takeEdits_(*words);
  const std::string problem = storeValue(node, std::move(value), context_.host().units);
  if (!problem.empty()) noteHere(Kind::kDamage, name + problem);
}

void BinaryReader::readMesh(const Chunk& chunk) {
  const NodePtr node = context_.currentNode;
  const auto headSize = static_cast<std::size_t>(std::min(chunk.length, kLongestHead));
  const std::uint8_t* const head = bytes_.at(chunk.data, headSize);
  if (node == nullptr || head == nullptr) return;
  ByteCursor in(head, headSize);
  BinaryValue value;
  if (!readValueHead(in, value)) {
    noteHere(Kind::kDamage, "a mesh has no attribute that it belongs to");
    return;
  }
  const std::string name = "'" + node->name() + "." + value.path + "' ";
  if (node->mesh == nullptr || node->mesh->storedFaceStarts().size() > 1) {
    noteHere(Kind::kNotice, name + "holds a mesh that is not its node's own; it is passed over");
    return;
  }
  const std::uint64_t read = headSize - in.left();
  const ChunkProblem problem =
      readMeshChunk(bytes_, chunk.data + read, chunk.length - read, *node->mesh);
  if (recorder_ != nullptr) recorder_->addMeshNumbers(node);
  if (!problem.text.empty())
    note_(Kind::kDamage, problem.place, name + "is damaged: " + problem.text);
}

// --- Connections

void BinaryReader::readInstance(ByteCursor in) {
  in.byte();
  const std::string_view path = in.text();
  const std::string_view parent = in.text();
  if (isWhole(in))
    run("parent", {flag("-s"), flag("-nc"), flag("-r"), flag("-add"), text(path), text(parent)});
}

void BinaryReader::readConnection(ByteCursor in) {
  const std::uint8_t flags = in.byte();
  Words words{text(in.text()), text(in.text())};
  if ((flags & kLocksDestination) != 0) {
    words.push_back(flag("-l"));
    words.push_back(flag("on"));
  }
  if ((flags & kIsNextAvailable) != 0) words.push_back(flag("-na"));
  if (isWhole(in)) run("connectAttr", words);
}

void BinaryReader::readRelationship(ByteCursor in) {
  Words words{text(in.text()), text(in.text())};
  const std::uint32_t count = in.word();
  for (std::uint32_t i = 0; i < count && !in.failed(); ++i) words.push_back(text(in.text()));
  if (isWhole(in)) run("relationship", words);
}

}  // namespace host
