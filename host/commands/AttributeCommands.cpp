#include "host/commands/AttributeNames.h"
#include "host/commands/Builtin.h"

#include <algorithm>
#include <set>

#include "host/commands/Lookup.h"
#include "host/evaluation/ArrayElements.h"
#include "host/evaluation/CurrentTime.h"
#include "host/file/MeshText.h"
#include "host/mel/Command.h"
#include "host/mesh/MeshData.h"
#include "host/scene/Connections.h"
#include "host/scene/Scene.h"
#include "host/scene/Values.h"
#include "host/state/HostState.h"
#include "host/state/KeptLengths.h"
#include "host/state/SceneInfo.h"
#include "host/state/SceneUnits.h"
#include "host/state/Variables.h"
#include "host/text/Numbers.h"
#include "host/text/Text.h"

namespace host::mel {
namespace {

using Texts = std::vector<std::string>;

// --- setAttr

// The values of a setAttr, which its plugs take one after another.
struct Values {
  std::string type;  // the word after -type
  bool clamps;       // -clamp
  Texts words;
  std::size_t next = 0;

  std::size_t left() const { return words.size() - next; }
};

bool isNumberData(const std::string& type) {
  return numericCompoundSize(type) > 0 || type == "matrix" || type == "doubleArray" ||
         type == "Int32Array" || type == "vectorArray" || type == "floatArray" ||
         type == "pointArray";
}
bool isTextData(const std::string& type) {
  return type == "stringArray" || type == "componentList";
}

std::string joined(const Texts& words) {
  std::string text;
  for (const std::string& word : words) text += (text.empty() ? "" : " ") + word;
  return text;
}

// Whether a script may set the number. With -clamp a number beyond a limit becomes the limit.
bool keepsLimits(const Plug& plug, bool clamps, double& number, std::string& error) {
  const Attribute& attribute = *plug.attribute();
  const bool above = attribute.max && number > *attribute.max;
  if (!above && !(attribute.min && number < *attribute.min)) return true;
  const double limit = above ? *attribute.max : *attribute.min;
  number = limit;
  if (!clamps) {
    error = "Cannot set the attribute '" + plug.name() + "' " +
            (above ? "past its maximum" : "below its minimum") + " value of " +
            formatNumber(limit) + ".";
  }
  return clamps;
}

bool takeNumber(const Plug& plug, Values& values, const CommandContext& context, double& number,
                std::string& error) {
  if (values.left() == 0) {
    error = "too few values for '" + plug.name() + "'";
    return false;
  }
  const std::string& word = values.words[values.next++];
  const auto read = parseNumber(word);
  const auto truth = parseTruth(word);
  if (!read && !truth) {
    error = "'" + word + "' is not a number for '" + plug.name() + "'";
    return false;
  }
  number = read ? *read : (*truth ? 1.0 : 0.0);
  if (context.inSceneFile) {
    number *= unitFactor(context.host().units, *plug.attribute());
    return true;
  }
  return keepsLimits(plug, values.clamps, number, error);
}

// Data is a count and as many entries, or just entries. False for anything else.
bool takeCounted(Values& values, AttributeValue& value) {
  const Texts entries(values.words.begin() + static_cast<std::ptrdiff_t>(values.next),
                      values.words.end());
  if (isTextData(values.type)) {
    value = Texts(entries.begin() + (entries.empty() ? 0 : 1), entries.end());
    return true;
  }
  const auto fixed =
      static_cast<std::size_t>(values.type == "matrix" ? 16 : numericCompoundSize(values.type));
  std::vector<double> numbers;
  for (std::size_t i = fixed > 0 ? 0 : 1; i < entries.size(); ++i) {
    const auto number = parseNumber(entries[i]);
    if (!number) return false;
    numbers.push_back(*number);
  }
  value = std::move(numbers);
  return fixed == 0 || entries.size() == fixed;
}

bool takesNoArgument(std::string_view flag) {
  return flag == "-av" || flag == "-alteredValue" || flag == "-c" || flag == "-clamp";
}

// Kept words are as in a scene file: texts have their quotes.
KeptWords keptWords(const Arguments& arguments, const std::string& plugText, std::string type) {
  KeptWords kept{std::move(type), {}};
  bool passedPlug = false;
  for (std::size_t i = 0; i < arguments.words().size(); ++i) {
    const Word& word = arguments.words()[i];
    if (isFlag(word))
      i += takesNoArgument(word.text) ? 0 : 1;
    else if (!passedPlug && word.text == plugText)
      passedPlug = true;
    else
      kept.words.push_back(word.quoted ? quoted(word.text) : word.text);
  }
  return kept;
}

// Data of the attribute's own type is stored as that; any other is kept as written.
AttributeValue takeData(const Plug& plug, const Arguments& arguments, Values& values) {
  AttributeValue value;
  const bool held = values.type == plug.attribute()->typeWord() &&
                    (isNumberData(values.type) || isTextData(values.type)) &&
                    takeCounted(values, value);
  values.next = values.words.size();
  return held ? value
              : AttributeValue(keptWords(arguments, arguments.objects().front(), values.type));
}

bool setOne(const Plug& plug, const Arguments& arguments, Values& values,
            const CommandContext& context, std::string& error) {
  AttributeValue value;
  double number = 0;
  switch (plug.attribute()->kind()) {
    case Attribute::Kind::kNumber:
      if (!takeNumber(plug, values, context, number, error)) return false;
      value = number;
      break;
    case Attribute::Kind::kText:
      if (values.left() == 0 || values.type != "string") {
        error = "'" + plug.name() + "' needs -type \"string\" and a text";
        return false;
      }
      value = values.words[values.next++];
      break;
    case Attribute::Kind::kCompound:
      for (const Plug& child : plug.children())
        if (!setOne(child, arguments, values, context, error)) return false;
      return true;
    default:
      value = takeData(plug, arguments, values);
  }
  if (!writeValue(plug, std::move(value))) {
    error = "'" + plug.name() + "' cannot hold this value";
    return false;
  }
  return true;
}

AttributeState flagsOf(const Arguments& arguments) {
  using Flag = AttributeState::Flag;
  const auto of = [&arguments](std::string_view name) {
    return !arguments.has(name) ? Flag::kUnset : arguments.truth(name) ? Flag::kOn : Flag::kOff;
  };
  AttributeState flags;
  flags.locked = of("l");
  flags.keyable = of("k");
  flags.channelBox = of("cb");
  flags.caching = of("ca");
  flags.altered = arguments.has("av") ? Flag::kOn : Flag::kUnset;
  return flags;
}

// A range such as ".tk[3:9]" means its elements in order. Only as many elements as values are
// touched.
bool setRange(const NodePtr& node, const PathRange& range, const Arguments& arguments,
              Values& values, const CommandContext& context, std::string& error) {
  for (int i = range.first; i <= range.last && values.left() > 0; ++i) {
    const std::string path = std::string(range.stem) + "[" + std::to_string(i) + "]";
    const auto plug = Plug::find(node, path);
    if (!plug) {
      error = "no attribute '" + path + "' on '" + node->name() + "'";
      return false;
    }
    if (!setOne(*plug, arguments, values, context, error)) return false;
    setFlags(*plug, flagsOf(arguments));
  }
  return true;
}

CommandResult refused(const Plug& plug) {
  return CommandResult::failure("The attribute '" + plug.name() +
                                "' is locked or connected and cannot be modified.");
}

bool isInputConnected(const Plug& plug) {
  return sourceOf(plug).has_value() || !plug.node()->connections.intoAtOrBelow(plug.path()).empty();
}

// Unlocking comes before the value is set, locking after it.
void setFlags(const Plug& plug, const Arguments& arguments, bool locks) {
  if (arguments.has("l") && arguments.truth("l") == locks) setLocked(plug, locks);
  if (locks) {
    AttributeState flags = flagsOf(arguments);
    flags.locked = AttributeState::Flag::kUnset;
    flags.altered = AttributeState::Flag::kUnset;
    setFlags(plug, flags);
  }
}

// How many numbers a value of the attribute has; 0 where that depends on the value.
std::size_t widthOf(const Attribute& attribute) {
  if (attribute.kind() == Attribute::Kind::kNumber) return 1;
  return attribute.isNumericCompound() ? attribute.children().size() : 0;
}

// Whether a scene file's statement fits another kind of attribute, as another version may have.
// Such a statement is kept as written; one that contradicts itself is not.
bool isForeign(const Plug& plug, std::size_t elements, const Values& values) {
  const Attribute& attribute = *plug.attribute();
  const std::size_t width = widthOf(attribute);
  const auto typeWidth = static_cast<std::size_t>(numericCompoundSize(values.type));
  if (attribute.kind() == Attribute::Kind::kText)
    return values.type != "string" || values.words.size() != elements;
  if (!values.type.empty())
    return attribute.kind() != Attribute::Kind::kData && (typeWidth == 0 || typeWidth != width);
  return attribute.kind() == Attribute::Kind::kMessage ||
         (width > 0 && values.words.size() != elements * width);
}

// The plug of a path, or of the first element of a range; how many elements the path names.
std::optional<Plug> firstPlug(const NodePtr& node, const std::string& path, std::size_t& elements) {
  const auto range = splitRange(path);
  elements = 1;
  if (!range || range->last == range->first) return Plug::find(node, path);
  elements = static_cast<std::size_t>(range->last - range->first) + 1;
  return Plug::find(node, std::string(range->stem) + "[" + std::to_string(range->first) + "]");
}

CommandResult setValues(const NodePtr& node, const std::string& path, const Arguments& arguments,
                        Values& values, const CommandContext& context) {
  std::string error;
  if (node->mesh != nullptr && isMeshData(path)) {
    error = setMeshData(*node->mesh, path, joined(values.words),
                        context.inSceneFile ? context.host().units.length : 1.0);
    return error.empty() ? CommandResult::success() : CommandResult::malformed(error);
  }
  const auto range = splitRange(path);
  if (range && range->last > range->first && !Plug::find(node, path)) {
    return setRange(node, *range, arguments, values, context, error)
               ? CommandResult::success()
               : CommandResult::malformed(error);
  }
  const auto plug = Plug::find(node, path);
  if (!plug) return CommandResult::failure("no attribute '" + path + "' on '" + node->name() + "'");
  setFlags(*plug, arguments, false);
  if (values.left() > 0) {
    if (!context.inSceneFile && (isLocked(*plug) || isInputConnected(*plug))) return refused(*plug);
    if (!setOne(*plug, arguments, values, context, error)) return CommandResult::malformed(error);
    if (values.left() > 0)
      return CommandResult::malformed("too many values for '" + plug->name() + "'");
  }
  setFlags(*plug, arguments, true);
  return CommandResult::success();
}

// A scene file's statement about an attribute that the host does not know is kept for saved scenes.
bool isToBeKept(const NodePtr& node, const std::string& path, const Values& values) {
  if (node->mesh != nullptr && isMeshData(path)) return false;
  std::size_t elements = 1;
  const auto plug = firstPlug(node, path, elements);
  return !plug || plug->attribute()->kind() == Attribute::Kind::kLoose ||
         (!values.words.empty() && isForeign(*plug, elements, values));
}

// A statement about a missing node, such as one of a file that was not found.
CommandResult keepForAnother(const Arguments& arguments, const CommandContext& context,
                             const std::string& text, const std::string& error) {
  CommandResult result = notFound(text, "setAttr: " + error);
  if (context.keepsInfo && !result.isMalformed && text.front() != '.')
    context.host().info.strayStatements.push_back(asStatement("setAttr", arguments.words()));
  return result;
}

void noteAltered(const NodePtr& node, const std::string& path) {
  const auto plug = Plug::find(node, path);
  if (plug && (node->mesh == nullptr || !isMeshData(path)))
    node->values.at(plug->path()).altered = AttributeState::Flag::kOn;
}

CommandResult setAttr(const Arguments& arguments, CommandContext& context) {
  if (arguments.objects().empty()) return CommandResult::malformed("setAttr: names no attribute");
  PlugName name;
  std::string error;
  const std::string& text = arguments.objects().front();
  if (!splitPlugName(text, context, name, error))
    return keepForAnother(arguments, context, text, error);
  Values values{arguments.text("typ"),
                arguments.has("c"),
                {arguments.objects().begin() + 1, arguments.objects().end()}};
  const AttributeState flags = flagsOf(arguments);
  const bool onlyShape = values.words.empty() && !saysAnything(flags);
  if (context.inSceneFile && isToBeKept(name.node, name.path, values)) {
    if (!onlyShape) {
      KeptWords kept = keptWords(arguments, text, values.type);
      if (isKeptLength(*name.node, name.path))
        turnIntoCentimetres(kept, context.host().units.length);
      keepAsWritten(name.node, name.path, std::move(kept), flags);
    }
    return CommandResult::success();
  }
  if (onlyShape) return CommandResult::success();
  CommandResult result = setValues(name.node, name.path, arguments, values, context);
  if (context.inSceneFile && result.ok && flags.altered == AttributeState::Flag::kOn)
    noteAltered(name.node, name.path);
  if (!result.ok) result.error = "setAttr: " + result.error;
  return result;
}

// --- getAttr

bool isWhole(const Attribute& attribute) {
  const std::string& type = attribute.typeWord();
  return type == "bool" || type == "byte" || type == "short" || type == "long" || type == "enum" ||
         type == "char";
}

Value numbersAsValue(const Attribute& attribute, const std::vector<double>& numbers) {
  const auto& children = attribute.children();
  const bool whole =
      !children.empty() && std::all_of(children.begin(), children.end(),
                                       [](const AttributePtr& child) { return isWhole(*child); });
  if (whole || attribute.typeWord() == "Int32Array") {
    Value::Ints ints;
    for (const double number : numbers) ints.push_back(toInteger(number));
    return Value(std::move(ints));
  }
  return Value(numbers);
}

CommandResult valueOf(const Plug& plug) {
  const Attribute& attribute = *plug.attribute();
  if (attribute.kind() == Attribute::Kind::kNumber && !plug.isArray()) {
    const double number = readNumber(plug).value_or(0.0);
    return CommandResult::success(isWhole(attribute) ? Value(toInteger(number)) : Value(number));
  }
  if (attribute.kind() == Attribute::Kind::kText && !plug.isArray())
    return CommandResult::success(readText(plug).value_or(""));
  const AttributeValue value = readValue(plug);
  if (const auto* numbers = std::get_if<std::vector<double>>(&value))
    return CommandResult::success(numbersAsValue(attribute, *numbers));
  if (const auto* texts = std::get_if<Texts>(&value)) return CommandResult::success(*texts);
  if (const auto* text = std::get_if<std::string>(&value)) return CommandResult::success(*text);
  return CommandResult::failure("getAttr: '" + plug.name() +
                                "' holds nothing that a command can give");
}

// A world matrix without an index is that of the path by which the node was named.
Plug ofNamedInstance(const CommandContext& context, const Plug& plug, const std::string& text) {
  if (!plug.isArray() || plug.attribute()->typeWord() != "matrix" || !plug.node()->isDag())
    return plug;
  const DagPath path = context.host().scene.findPath(text.substr(0, text.find('.')));
  return plug.element(path.isEmpty() ? 0 : static_cast<int>(path.instanceNumber()));
}

// The indices of the set or connected elements of an array, or their number.
CommandResult elementsOf(const Plug& plug, bool countsOnly) {
  const std::set<int> indices = elementIndices(plug);
  if (countsOnly)
    return CommandResult::success(plug.isArray() ? static_cast<int>(indices.size()) : 1);
  return CommandResult::success(Value::Ints(indices.begin(), indices.end()));
}

// Of "green=5:blue:red", blue is 6.
std::string enumName(const Attribute& attribute, double number) {
  int value = -1;
  for (const std::string& entry : attribute.enumNames) {
    const std::size_t sign = entry.find('=');
    const auto given =
        sign == std::string::npos ? std::nullopt : parseInteger(entry.substr(sign + 1));
    value = given.value_or(value + 1);
    if (value == toInteger(number)) return entry.substr(0, sign);
  }
  return formatNumber(number);
}

// Unless a statement said otherwise.
bool isCached(const Plug& plug) {
  const AttributeState* const state = plug.node()->values.find(plug.path());
  return state == nullptr || state->caching != AttributeState::Flag::kOff;
}

CommandResult getAttr(const Arguments& arguments, CommandContext& context) {
  if (arguments.objects().size() != 1)
    return CommandResult::failure("getAttr: needs one attribute");
  std::string error;
  const Plug plug = findPlug(arguments.objects().front(), context, error);
  if (plug.isNull() && arguments.has("sl")) return CommandResult::success();
  if (plug.isNull()) return CommandResult::failure("getAttr: " + error);
  if (arguments.has("l")) return CommandResult::success(Value::ofTruth(isLocked(plug)));
  if (arguments.has("k")) return CommandResult::success(Value::ofTruth(isKeyable(plug)));
  if (arguments.has("cb")) return CommandResult::success(Value::ofTruth(isInChannelBox(plug)));
  if (arguments.has("se"))
    return CommandResult::success(Value::ofTruth(!isLocked(plug) && !isInputConnected(plug)));
  if (arguments.has("ca")) return CommandResult::success(Value::ofTruth(isCached(plug)));
  if (arguments.has("typ")) return CommandResult::success(shownType(*plug.attribute()));
  if (arguments.has("s") || arguments.has("mi")) return elementsOf(plug, arguments.has("s"));
  if (arguments.has("as") && plug.attribute()->typeWord() == "enum")
    return CommandResult::success(enumName(*plug.attribute(), readNumber(plug).value_or(0.0)));
  std::optional<AtTime> otherTime;
  if (arguments.has("t")) otherTime.emplace(context.host().scene, arguments.number("t"));
  CommandResult result = valueOf(ofNamedInstance(context, plug, arguments.objects().front()));
  if (result.ok && arguments.has("x") && result.value.type() == Value::Type::kString)
    result.value = withVariables(result.value.toString());
  return result;
}

}  // namespace

void addAttributeCommands(CommandTable& table) {
  table.add("setAttr",
            {{"k", "keyable", "b"},
             {"l", "lock", "b"},
             {"cb", "channelBox", "b"},
             {"ca", "caching", "b"},
             {"s", "size", "i"},
             {"ch", "capacityHint", "i"},
             {"av", "alteredValue", ""},
             {"c", "clamp", ""},
             {"typ", "type", "s"}},
            setAttr);
  table.add("getAttr",
            {{"l", "lock", ""},
             {"k", "keyable", ""},
             {"cb", "channelBox", ""},
             {"se", "settable", ""},
             {"typ", "type", ""},
             {"s", "size", ""},
             {"mi", "multiIndices", ""},
             {"as", "asString", ""},
             {"t", "time", "n"},
             {"ca", "caching", ""},
             {"x", "expandEnvironmentVariables", ""},
             {"sl", "silent", ""}},
            getAttr);
  addDynamicAttributeCommands(table);
}

}  // namespace host::mel
