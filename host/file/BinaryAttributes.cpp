#include "host/file/BinaryAttributes.h"

#include <algorithm>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

#include "host/file/MeshText.h"
#include "host/scene/Plug.h"
#include "host/scene/Values.h"
#include "host/state/SceneUnits.h"
#include "host/text/Numbers.h"
#include "host/text/Text.h"

namespace host {
namespace {

using Numbers = std::vector<double>;
using Texts = std::vector<std::string>;
using Flag = AttributeState::Flag;

bool isNothing(const BinaryValue& value) {
  return std::holds_alternative<std::monostate>(value.value);
}

// --- Flags

// Attributes that are keyable unless the file says otherwise.
constexpr std::string_view kChannels[] = {"visibility", "translateX", "translateY", "translateZ",
                                          "rotateX",    "rotateY",    "rotateZ",    "scaleX",
                                          "scaleY",     "scaleZ"};

bool isChannel(const Attribute& attribute) {
  return std::find(std::begin(kChannels), std::end(kChannels), attribute.longName()) !=
         std::end(kChannels);
}

Flag onOrUnset(bool isOn) {
  return isOn ? Flag::kOn : Flag::kUnset;
}

// The flags that a statement would state. The file has flags for every value, and most equal the
// attribute's usual ones. For attributes that are neither channels nor added the usual ones are
// unknown; only a chunk of nothing but flags states them then.
AttributeState flagsOf(const BinaryValue& value, const Attribute* attribute) {
  const bool isDynamic = attribute != nullptr && attribute->isDynamic;
  const bool isUsuallyKeyable =
      isDynamic ? attribute->keyable : attribute != nullptr && isChannel(*attribute);
  const bool isSaid = isDynamic || (isNothing(value) && !value.hasSize && !value.isLocked);
  AttributeState flags;
  flags.locked = onOrUnset(value.isLocked);
  flags.altered = onOrUnset(value.isAltered);
  if (isUsuallyKeyable && !value.isKeyable)
    flags.keyable = Flag::kOff;
  else if (isSaid && (isDynamic || !isUsuallyKeyable))
    flags.keyable = onOrUnset(value.isKeyable);
  if (isSaid || isUsuallyKeyable) flags.channelBox = onOrUnset(value.isInChannelBox);
  return flags;
}

// --- Values of attributes that the host knows

// Numbers that one plug after another takes.
struct NumberQueue {
  const Numbers& numbers;
  const SceneUnits& units;  // in which they are
  std::size_t next = 0;
  std::size_t left() const { return numbers.size() - next; }
};

bool storeNumbers(const Plug& plug, NumberQueue& queue) {
  const Attribute& attribute = *plug.attribute();
  if (attribute.kind() == Attribute::Kind::kCompound) {
    const std::vector<Plug> children = plug.children();
    return !children.empty() &&
           std::all_of(children.begin(), children.end(),
                       [&queue](const Plug& child) { return storeNumbers(child, queue); });
  }
  if (attribute.kind() != Attribute::Kind::kNumber || queue.left() == 0) return false;
  const double number = queue.numbers[queue.next++] * unitFactor(queue.units, attribute);
  return writeValue(plug, number);
}

std::optional<Plug> elementOf(const NodePtr& node, const PathRange& range, int index) {
  return Plug::find(node, std::string(range.stem) + "[" + std::to_string(index) + "]");
}

// A range means its elements in order. Only as many elements as numbers are touched.
bool storeRange(const NodePtr& node, const PathRange& range, NumberQueue& queue) {
  for (int i = range.first; i <= range.last && queue.left() > 0; ++i) {
    const auto plug = elementOf(node, range, i);
    if (!plug || !storeNumbers(*plug, queue)) return false;
  }
  return true;
}

constexpr char kUnsuitable[] = "cannot hold what the file sets it to";
constexpr char kUncounted[] = "is set to as many numbers as it does not have";

// Whether the attribute takes a value of this kind; others are kept.
bool canHold(const Attribute& attribute, const BinaryValue& given) {
  if (isNothing(given)) return true;
  switch (attribute.kind()) {
    case Attribute::Kind::kNumber:
    case Attribute::Kind::kCompound:
      return std::holds_alternative<Numbers>(given.value);
    case Attribute::Kind::kText:
      return std::holds_alternative<std::string>(given.value);
    case Attribute::Kind::kData:
      return std::holds_alternative<KeptWords>(given.value) || given.type == attribute.typeWord();
    default:
      return false;
  }
}

// --- Values that are kept

// Angles of attributes that the host does not know: the numbers from `first` on, `step` apart.
// Statements have them in degrees. Matched with ASCII scenes.
struct KeptAngle {
  std::string_view type;  // of the node, or of a base
  std::string_view name;  // the last of the path; in a compound of three, the compound's
  std::size_t first;
  std::size_t step;
};
constexpr KeptAngle kKeptAngles[] = {{"dagNode", "mnrl", 0, 1},    {"dagNode", "mxrl", 0, 1},
                                     {"joint", "pa", 0, 1},        {"polySplitRing", "sma", 0, 1},
                                     {"animCurveTA", "ktv", 1, 2}, {"animCurveUA", "ktv", 1, 2}};

bool isNamed(std::string_view path, std::string_view name) {
  const std::string_view last = path.substr(path.rfind('.') + 1);
  const std::string_view bare = last.substr(0, last.find('['));
  if (bare.substr(0, name.size()) != name) return false;
  const std::string_view rest = bare.substr(name.size());
  return rest.empty() || rest == "x" || rest == "y" || rest == "z";
}

void turnIntoDegrees(const Node& node, std::string_view path, double angle, Numbers& numbers) {
  for (const KeptAngle& row : kKeptAngles) {
    if (!isNamed(path, row.name) || (!node.type().isA(row.type) && node.type().name() != row.type))
      continue;
    for (std::size_t i = row.first; i < numbers.size(); i += row.step) numbers[i] *= angle;
  }
}

bool isCounted(std::string_view type) {
  return type == "Int32Array" || type == "stringArray" || type == "componentList";
}

struct WordsOf {
  const std::string& type;

  KeptWords operator()(std::monostate) const { return KeptWords(); }
  KeptWords operator()(double number) const { return (*this)(Numbers{number}); }
  KeptWords operator()(const std::string& text) const { return {type, {mel::quoted(text)}}; }
  KeptWords operator()(const Numbers& numbers) const {
    KeptWords kept{type, {}};
    if (isCounted(type)) kept.words.push_back(std::to_string(numbers.size()));
    for (const double number : numbers) kept.words.push_back(mel::formatNumber(number));
    return kept;
  }
  KeptWords operator()(const Texts& texts) const {
    KeptWords kept{type, {std::to_string(texts.size())}};
    for (const std::string& text : texts) kept.words.push_back(mel::quoted(text));
    return kept;
  }
  KeptWords operator()(const KeptWords& kept) const { return kept; }
};

void keep(const NodePtr& node, BinaryValue& value, const SceneUnits& units) {
  const AttributeState flags = flagsOf(value, nullptr);
  if (isNothing(value) && !saysAnything(flags)) return;
  if (auto* const numbers = std::get_if<Numbers>(&value.value))
    turnIntoDegrees(*node, value.path, units.angle, *numbers);
  // Under the name that a saved scene gives it, so that a second save has the same bytes.
  const auto plug = Plug::find(node, value.path);
  keepAsWritten(node, plug ? plug->path() : value.path,
                std::visit(WordsOf{value.type}, value.value), flags);
}

// --- Arrays

// A declaration does not say that the attribute is an array, but a size does.
void makeArray(const Node& node, const std::string& path) {
  const AttributePtr attribute = node.findAttribute(path);
  if (attribute != nullptr && attribute->isDynamic && !attribute->isArray) {
    attribute->isArray = true;
    attribute->declaration.emplace_back("-m");
  }
}

// --- Meshes

std::string storeInMesh(MeshData& mesh, const BinaryValue& value) {
  const auto* const text = std::get_if<std::string>(&value.value);
  if (text != nullptr)
    return isMeshText(value.path) ? setMeshText(mesh, value.path, *text) : kUnsuitable;
  const auto* const numbers = std::get_if<Numbers>(&value.value);
  return numbers != nullptr ? setMeshNumbers(mesh, value.path, *numbers) : std::string();
}

}  // namespace

std::string storeValue(const NodePtr& node, BinaryValue value, const SceneUnits& units) {
  if (value.hasSize) makeArray(*node, value.path);
  if (node->mesh != nullptr && isMeshData(value.path)) return storeInMesh(*node->mesh, value);
  const auto range = splitRange(value.path);
  const auto plug = Plug::find(node, value.path);
  const auto first = plug || !range ? plug : elementOf(node, *range, range->first);
  if (!first || !canHold(*first->attribute(), value)) {
    keep(node, value, units);
    return std::string();
  }
  const AttributeState flags = flagsOf(value, first->attribute().get());
  if (saysAnything(flags)) setFlags(*first, flags);
  if (isNothing(value)) return std::string();
  const auto* const numbers = std::get_if<Numbers>(&value.value);
  if (numbers == nullptr || first->attribute()->kind() == Attribute::Kind::kData)
    return writeValue(*first, std::move(value.value)) ? std::string() : kUnsuitable;
  NumberQueue queue{*numbers, units};
  const bool ok = plug ? storeNumbers(*plug, queue) : storeRange(node, *range, queue);
  return ok && queue.left() == 0 ? std::string() : kUncounted;
}

// --- Declarations

namespace {

void addFlag(mel::Words& words, const char* flag) {
  words.push_back({flag, false});
}
void addText(mel::Words& words, const char* flag, const std::string& text) {
  if (!text.empty()) {
    addFlag(words, flag);
    words.push_back({text, true});
  }
}
void addNumber(mel::Words& words, const char* flag, const std::optional<double>& number) {
  if (number) {
    addFlag(words, flag);
    words.push_back({mel::formatNumber(*number), false});
  }
}
void addTruth(mel::Words& words, const char* flag, bool isTrue) {
  if (isTrue) {
    addFlag(words, flag);
    words.push_back({"true", false});
  }
}

}  // namespace

mel::Words declarationWords(const AttributeDeclaration& declaration) {
  mel::Words words;
  if (declaration.isColour) addFlag(words, "-uac");
  addTruth(words, "-is", declaration.isInternal);
  addTruth(words, "-ci", true);
  addTruth(words, "-h", declaration.isHidden);
  addTruth(words, "-k", declaration.isKeyable);
  addText(words, "-sn", declaration.shortName);
  addText(words, "-ln", declaration.longName);
  addText(words, "-nn", declaration.niceName);
  addNumber(words, "-dv", declaration.defaultValue);
  addNumber(words, "-min", declaration.min);
  addNumber(words, "-max", declaration.max);
  addNumber(words, "-smn", declaration.softMin);
  addNumber(words, "-smx", declaration.softMax);
  addText(words, "-en", declaration.enumNames);
  addText(words, declaration.isData ? "-dt" : "-at", declaration.type);
  addText(words, "-p", declaration.parent);
  if (declaration.children > 0)
    addNumber(words, "-nc", double{static_cast<double>(declaration.children)});
  return words;
}

}  // namespace host
