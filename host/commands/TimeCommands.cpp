#include <algorithm>
#include <cmath>
#include <iterator>
#include <optional>
#include <utility>

#include "host/commands/Builtin.h"
#include "host/commands/Lookup.h"
#include "host/evaluation/ArrayElements.h"
#include "host/evaluation/CurrentTime.h"
#include "host/evaluation/Quantity.h"
#include "host/mel/Command.h"
#include "host/scene/Connections.h"
#include "host/scene/Node.h"
#include "host/scene/Scene.h"
#include "host/scene/Values.h"
#include "host/state/HostState.h"
#include "host/state/SceneUnits.h"
#include "host/text/Numbers.h"

// The frame that the scene stands at, the range that is played, and keys.
namespace host::mel {
namespace {

CommandResult moveInTime(const Arguments& arguments, CommandContext& context) {
  Scene& scene = context.host().scene;
  if (arguments.has("q")) return CommandResult::success(currentTime(scene));
  const auto frame =
      arguments.objects().size() == 1 ? parseNumber(arguments.objects().front()) : std::nullopt;
  if (!frame || !std::isfinite(*frame))
    return CommandResult::failure("currentTime: needs one time");
  setCurrentTime(scene, *frame);
  return CommandResult::success(*frame);
}

// --- playbackOptions: a scene file holds its range as a statement in a script node

constexpr char kRangeNode[] = "sceneConfigurationScriptNode";

struct RangeEnd {
  const char* flag;
  double otherwise;
};
constexpr RangeEnd kRange[] = {{"min", 1}, {"max", 120}, {"ast", 1}, {"aet", 200}};

std::vector<std::string> wordsOf(const std::string& text) {
  std::vector<std::string> words;
  std::size_t at = 0;
  while ((at = text.find_first_not_of(" \t\r\n", at)) != text.npos) {
    const std::size_t end = std::min(text.find_first_of(" \t\r\n", at), text.size());
    words.push_back(text.substr(at, end - at));
    at = end;
  }
  return words;
}

std::optional<Plug> rangeText(Scene& scene, bool makes) {
  NodePtr node = scene.findNode(kRangeNode);
  if (node == nullptr && makes) {
    node = scene.createNode(*NodeType::find("script"), kRangeNode);
    if (const auto kind = Plug::find(node, "scriptType")) writeValue(*kind, 6.0);
  }
  return node == nullptr ? std::nullopt : Plug::find(node, "before");
}

double rangeEnd(Scene& scene, const RangeEnd& end) {
  const auto plug = rangeText(scene, false);
  const auto words = wordsOf(plug ? readText(*plug).value_or("") : "");
  const auto flag = std::find(words.begin(), words.end(), std::string("-") + end.flag);
  const bool hasNumber = flag != words.end() && flag + 1 != words.end();
  return (hasNumber ? parseNumber(*(flag + 1)) : std::nullopt).value_or(end.otherwise);
}

CommandResult playbackOptions(const Arguments& arguments, CommandContext& context) {
  if (context.inSceneFile) return CommandResult::success();
  Scene& scene = context.host().scene;
  if (arguments.query()) {
    for (const RangeEnd& end : kRange)
      if (arguments.has(end.flag)) return CommandResult::success(rangeEnd(scene, end));
    return CommandResult::failure(
        "playbackOptions: -query gives -minTime, -maxTime, -animationStartTime or "
        "-animationEndTime");
  }
  std::string text = "playbackOptions";
  for (const RangeEnd& end : kRange) {
    const double number =
        arguments.has(end.flag) ? arguments.number(end.flag) : rangeEnd(scene, end);
    if (!std::isfinite(number)) return CommandResult::failure("playbackOptions: needs a time");
    text += std::string(" -") + end.flag + " " + formatNumber(number);
  }
  const auto plug = rangeText(scene, true);
  if (!plug) return CommandResult::failure("playbackOptions: the range cannot be kept");
  writeValue(*plug, text + " ");
  return CommandResult::success();
}

// --- setKeyframe

// The lists of a curve that have an entry for each key, and how many numbers an entry has.
constexpr std::pair<const char*, int> kKeyLists[] = {{"ktv", 2}, {"kit", 1}, {"kot", 1}, {"kix", 1},
                                                     {"kiy", 1}, {"kox", 1}, {"koy", 1}, {"ktl", 1},
                                                     {"kwl", 1}, {"kbd", 1}};

constexpr std::pair<std::string_view, int> kTangentTypes[] = {
    {"fixed", 1},    {"linear", 2},   {"flat", 3},      {"step", 5}, {"spline", 9},
    {"clamped", 10}, {"plateau", 16}, {"stepnext", 17}, {"auto", 18}};

struct Key {
  double time = 0.0;
  double value = 0.0;  // as the curve keeps it
  std::optional<double> inType;
  std::optional<double> outType;
};

using List = std::map<int, std::vector<double>>;

// The index that the key gets: that of one at its time, or one for which others make room.
int placeOf(const List& keys, double time, bool& isNew) {
  for (const auto& [index, key] : keys) {
    isNew = key[0] != time;
    if (key[0] >= time) return index;
  }
  isNew = true;
  return keys.empty() ? 0 : keys.rbegin()->first + 1;
}

void setKey(const NodePtr& curve, const Key& key) {
  bool isNew = false;
  const int place = placeOf(keptElements(*curve, "ktv", 2), key.time, isNew);
  for (const auto& [name, width] : kKeyLists) {
    List list;
    for (auto& [index, numbers] : keptElements(*curve, name, width))
      list[isNew && index >= place ? index + 1 : index] = std::move(numbers);
    const std::string_view which = name;
    if (which == "ktv") list[place] = {key.time, key.value};
    if (which == "kit" && key.inType) list[place] = {*key.inType};
    if (which == "kot" && key.outType) list[place] = {*key.outType};
    if (!list.empty()) writeKeptElements(curve, name, list);
  }
}

// The factor that turns a curve's kept numbers into the host's units: a curve keeps them in the
// units in which its scene is saved.
double keptFactor(const HostState& host, const Attribute& attribute) {
  const SceneRates rates = ratesOf(host.info);
  return unitFactor(SceneUnits{rates.length, rates.angle}, attribute);
}

// The curve that drives the plug, made when nothing does. Null with the reason in `error`.
NodePtr curveOf(Scene& scene, const Plug& plug, std::string& error) {
  if (const auto source = sourceOf(plug)) {
    error = "'" + plug.name() + "' is driven by '" + source->node()->name() + "'";
    return source->node()->type().isA("animCurve") ? source->node() : nullptr;
  }
  error = "'" + plug.name() + "' is locked";
  if (isLocked(plug)) return nullptr;
  const Quantity quantity = quantityOf(*plug.attribute());
  const char* const type = quantity == Quantity::kLength  ? "animCurveTL"
                           : quantity == Quantity::kAngle ? "animCurveTA"
                                                          : "animCurveTU";
  const std::string name = plug.node()->name() + "_" + plug.attribute()->longName();
  const NodePtr curve = scene.createNode(*NodeType::find(type), name, nullptr, &error);
  const auto output = curve ? Plug::find(curve, "output") : std::nullopt;
  return output && connect(*output, plug, false, &error) ? curve : nullptr;
}

std::string setKeys(HostState& host, const Plug& plug, const Arguments& arguments, Key key,
                    int& count) {
  std::vector<double> times;
  for (const std::vector<double>& time : arguments.allNumbers("t")) times.push_back(time[0]);
  if (times.empty()) times.push_back(currentTime(host.scene));
  std::vector<double> values;
  for (const double time : times) {
    const AtTime other(host.scene, time);
    values.push_back(arguments.has("v") ? arguments.number("v") : readNumber(plug).value_or(0.0));
    if (!std::isfinite(time) || !std::isfinite(values.back())) return "needs finite numbers";
  }
  std::string error;
  const NodePtr curve = curveOf(host.scene, plug, error);
  if (curve == nullptr) return error;
  for (std::size_t i = 0; i < times.size(); ++i, ++count) {
    key.time = times[i];
    key.value = dividedBy(values[i], keptFactor(host, *plug.attribute()));
    setKey(curve, key);
  }
  curve->noteChange();
  return {};
}

void addNumbers(const Plug& plug, bool onlyKeyable, std::vector<Plug>& plugs) {
  if (plug.attribute()->kind() == Attribute::Kind::kNumber && !plug.isArray()) {
    if (!onlyKeyable || isKeyable(plug)) plugs.push_back(plug);
  } else if (plug.attribute()->isNumericCompound()) {
    for (const Plug& child : plug.children()) addNumbers(child, onlyKeyable, plugs);
  }
}

void addKeyable(const NodePtr& node, std::vector<Plug>& plugs) {
  for (const NodeType* type = &node->type(); type != nullptr; type = type->base())
    for (const AttributePtr& attribute : type->ownAttributes())
      addNumbers(Plug::ofAttribute(node, attribute), true, plugs);
  for (const AttributePtr& attribute : node->dynamicAttributes())
    if (attribute->parent() == nullptr) addNumbers(Plug::ofAttribute(node, attribute), true, plugs);
}

std::string findPlugs(const Arguments& arguments, const CommandContext& context,
                      std::vector<Plug>& plugs) {
  std::vector<std::string> names;
  std::string error;
  for (const std::string& object : arguments.objects()) {
    const Plug plug = object.find('.') == object.npos ? Plug() : findPlug(object, context, error);
    if (!error.empty() && plug.isNull()) return error;
    plug.isNull() ? names.push_back(object) : addNumbers(plug, false, plugs);
  }
  std::vector<SelectionItem> items;
  if (names.empty() && !arguments.objects().empty()) return {};
  if (!findItems(names, context, items, error)) return error;
  for (const SelectionItem& item : items) {
    if (!arguments.has("at")) addKeyable(item.node, plugs);
    for (const std::string& attribute : arguments.texts("at")) {
      const auto plug = Plug::find(item.node, attribute);
      if (plug) addNumbers(*plug, false, plugs);
    }
  }
  return plugs.empty() ? "there is nothing to set keys on" : "";
}

std::string readTangent(const Arguments& arguments, std::string_view flag,
                        std::optional<double>& type) {
  if (!arguments.has(flag)) return {};
  const std::string name = arguments.text(flag);
  for (const auto& [known, number] : kTangentTypes)
    if (known == name) type = number;
  return type ? "" : "there is no tangent type '" + name + "'";
}

CommandResult setKeyframe(const Arguments& arguments, CommandContext& context) {
  if (context.inSceneFile) return CommandResult::failure("setKeyframe: is for scripts");
  std::vector<Plug> plugs;
  Key key;
  int count = 0;
  std::string problem = readTangent(arguments, "itt", key.inType);
  if (problem.empty()) problem = readTangent(arguments, "ott", key.outType);
  if (problem.empty()) problem = findPlugs(arguments, context, plugs);
  for (const Plug& plug : plugs)
    if (problem.empty()) problem = setKeys(context.host(), plug, arguments, key, count);
  return problem.empty() ? CommandResult::success(count)
                         : CommandResult::failure("setKeyframe: " + problem);
}

}  // namespace

void addTimeCommands(CommandTable& table) {
  table.add("currentTime", {{"q", "query", ""}, {"e", "edit", ""}, {"u", "update", "b"}},
            moveInTime);
  table.add("playbackOptions",
            {{"q", "query", ""},
             {"e", "edit", ""},
             {"min", "minTime", "n"},
             {"max", "maxTime", "n"},
             {"ast", "animationStartTime", "n"},
             {"aet", "animationEndTime", "n"}},
            playbackOptions);
  table.add("setKeyframe",
            {{"at", "attribute", "s"},
             {"t", "time", "n"},
             {"v", "value", "n"},
             {"itt", "inTangentType", "s"},
             {"ott", "outTangentType", "s"}},
            setKeyframe);
}

}  // namespace host::mel
