#include <algorithm>

#include "host/commands/Builtin.h"
#include "host/commands/Lookup.h"
#include "host/commands/dag/TransformValues.h"
#include "host/commands/dag/VertexMoves.h"
#include "host/mel/Command.h"
#include "host/scene/Dag.h"
#include "host/scene/Node.h"
#include "host/scene/Values.h"
#include "host/text/Numbers.h"

// Commands that place and show what is in the DAG.
namespace host::mel {
namespace {

using Items = std::vector<SelectionItem>;

// The words of move, rotate and scale: numbers, then objects.
bool splitWords(const std::string& command, const Arguments& arguments, CommandContext& context,
                std::vector<double>& numbers, Items& items, std::string& error) {
  std::vector<std::string> names;
  for (const std::string& word : arguments.objects()) {
    const auto number = names.empty() && numbers.size() < 3 ? parseNumber(word) : std::nullopt;
    if (number)
      numbers.push_back(*number);
    else
      names.push_back(word);
  }
  if (!findItems(names, context, items, error)) return false;
  for (const SelectionItem& item : items) {
    const bool isVertices = command == "move" && item.component != nullptr;
    if (!isVertices && (!item.node->isTransform() || item.component != nullptr)) {
      error = "'" + shownName(context, item) + "' is not a transform";
      return false;
    }
  }
  error = command + " needs objects";
  return !items.empty();
}

// -x, -y and -z name the axes of the numbers; without them there are three numbers.
bool axesOf(const Arguments& arguments, const std::vector<double>& numbers,
            std::vector<std::size_t>& axes, std::string& error) {
  constexpr std::string_view kAxes[] = {"x", "y", "z"};
  for (std::size_t i = 0; i < 3; ++i)
    if (arguments.has(kAxes[i])) axes.push_back(i);
  if (axes.empty()) axes = {0, 1, 2};
  const bool fits = numbers.size() == axes.size() || (numbers.size() == 1 && axes.size() < 3);
  error = "needs a number for each axis";
  return fits;
}

bool moveInWorld(const SelectionItem& item, const std::vector<std::size_t>& axes,
                 const std::vector<double>& numbers, bool relative, std::string& error) {
  const MMatrix matrix = item.path.inclusiveMatrix();
  std::vector<double> wanted = {matrix[3][0], matrix[3][1], matrix[3][2]};
  for (std::size_t i = 0; i < axes.size(); ++i) {
    double& place = wanted[axes[i]];
    place = numbers[std::min(i, numbers.size() - 1)] + (relative ? place : 0.0);
  }
  return setWorldTranslation(item, wanted, false, error);
}

// How a command changes an attribute: what it is set to, or what is added or multiplied.
struct Change {
  const char* attribute;
  bool multiplies;
};

bool changeAttribute(const CommandContext& context, const SelectionItem& item, const Change& change,
                     const std::vector<std::size_t>& axes, const std::vector<double>& numbers,
                     bool relative, std::string& error) {
  const auto plug = Plug::find(item.node, change.attribute);
  if (!plug || isLocked(*plug)) {
    error = "'" + shownName(context, item) + "." + change.attribute + "' is locked or missing";
    return false;
  }
  std::vector<double> values = readNumbers(*plug).value_or(std::vector<double>(3, 0.0));
  for (std::size_t i = 0; i < axes.size() && axes[i] < values.size(); ++i) {
    const double number = numbers[std::min(i, numbers.size() - 1)];
    double& value = values[axes[i]];
    value = !relative ? number : change.multiplies ? value * number : value + number;
  }
  return writeValue(*plug, std::move(values));
}

CommandResult place(const std::string& command, const Change& change, bool inWorld,
                    const Arguments& arguments, CommandContext& context) {
  std::vector<double> numbers;
  std::vector<std::size_t> axes;
  Items items;
  std::string error;
  if (!splitWords(command, arguments, context, numbers, items, error) ||
      !axesOf(arguments, numbers, axes, error)) {
    return CommandResult::failure(command + ": " + error);
  }
  const bool relative = arguments.has("r");
  for (const SelectionItem& item : items) {
    if (item.component != nullptr) {
      error = moveVertices(item, {axes, numbers, inWorld, relative});
      if (!error.empty()) return CommandResult::failure(command + ": " + error);
      continue;
    }
    const bool ok = inWorld
                        ? moveInWorld(item, axes, numbers, relative, error)
                        : changeAttribute(context, item, change, axes, numbers, relative, error);
    if (!ok) return CommandResult::failure(command + ": " + error);
  }
  return CommandResult::success();
}

// Whose own space is known; that of a transform has its rotation in it.
bool movesVerticesOnly(const Arguments& arguments, CommandContext& context) {
  std::vector<double> numbers;
  Items items;
  std::string error;
  return splitWords("move", arguments, context, numbers, items, error) &&
         std::all_of(items.begin(), items.end(),
                     [](const SelectionItem& item) { return item.component != nullptr; });
}

// In the world's space, or with -localSpace in the parent's.
CommandResult move(const Arguments& arguments, CommandContext& context) {
  if (arguments.has("os") && !movesVerticesOnly(arguments, context))
    return CommandResult::failure("move: -objectSpace is not supported; use -localSpace");
  return place("move", {"translate", false}, !arguments.has("os") && !arguments.has("ls"),
               arguments, context);
}
CommandResult rotate(const Arguments& arguments, CommandContext& context) {
  if (arguments.has("ws"))
    return CommandResult::failure("rotate: -worldSpace is not supported; use xform");
  return place("rotate", {"rotate", false}, false, arguments, context);
}
CommandResult scale(const Arguments& arguments, CommandContext& context) {
  return place("scale", {"scale", true}, false, arguments, context);
}

CommandResult show(const std::string& command, bool visible, const Arguments& arguments,
                   CommandContext& context) {
  Items items;
  std::string error;
  if (!findItems(arguments.objects(), context, items, error))
    return CommandResult::failure(command + ": " + error);
  for (const SelectionItem& item : items) {
    const auto plug = Plug::find(item.node, "visibility");
    if (plug && !isLocked(*plug)) writeValue(*plug, visible ? 1.0 : 0.0);
  }
  return CommandResult::success();
}
CommandResult hide(const Arguments& arguments, CommandContext& context) {
  return show("hide", false, arguments, context);
}
CommandResult showHidden(const Arguments& arguments, CommandContext& context) {
  return show("showHidden", true, arguments, context);
}

// The box around all that is named: smallest x, y, z, then largest.
CommandResult worldBox(const Arguments& arguments, CommandContext& context) {
  Items items;
  std::string error = "nothing is named or selected";
  if (!findItems(arguments.objects(), context, items, error) || items.empty())
    return CommandResult::failure("exactWorldBoundingBox: " + error);
  std::vector<double> all;
  for (const SelectionItem& item : items) {
    const std::vector<double> box = boxNumbers(item, true);
    for (std::size_t i = 0; i < box.size(); ++i)
      if (all.size() <= i)
        all.push_back(box[i]);
      else
        all[i] = i < 3 ? std::min(all[i], box[i]) : std::max(all[i], box[i]);
  }
  return CommandResult::success(std::move(all));
}

// `axes` are the long names of -x, -y and -z.
std::vector<FlagSpec> placementFlags(const std::string_view (&axes)[3]) {
  return {{"r", "relative", ""},     {"a", "absolute", ""},   {"x", axes[0], ""},
          {"y", axes[1], ""},        {"z", axes[2], ""},      {"ls", "localSpace", ""},
          {"os", "objectSpace", ""}, {"ws", "worldSpace", ""}};
}

}  // namespace

void addPlacementCommands(CommandTable& table) {
  table.add("move", placementFlags({"moveX", "moveY", "moveZ"}), move);
  table.add("rotate", placementFlags({"rotateX", "rotateY", "rotateZ"}), rotate);
  table.add("scale", placementFlags({"scaleX", "scaleY", "scaleZ"}), scale);
  table.add("hide", {}, hide);
  table.add("showHidden", {{"a", "above", ""}, {"b", "below", ""}}, showHidden);
  table.add("exactWorldBoundingBox",
            {{"ii", "ignoreInvisible", ""}, {"ce", "calculateExactly", ""}}, worldBox);
}

}  // namespace host::mel
