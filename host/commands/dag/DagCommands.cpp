#include "host/commands/Builtin.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "host/commands/Lookup.h"
#include "host/commands/dag/Pivots.h"
#include "host/commands/dag/TransformValues.h"
#include "host/commands/dag/VertexMoves.h"
#include "host/mel/Command.h"
#include "host/scene/Dag.h"
#include "host/scene/Node.h"
#include "host/scene/Scene.h"
#include "host/scene/Values.h"
#include "host/state/HostState.h"

namespace host::mel {
namespace {

using Items = std::vector<SelectionItem>;

std::string shownPath(const CommandContext& context, const NodePtr& node) {
  return shownName(context, SelectionItem::of(node));
}

NodePtr parentOf(const SelectionItem& item) {
  const auto& nodes = item.path.nodes();
  return nodes.size() > 1 ? nodes[nodes.size() - 2] : nullptr;
}

// --- parent

// Moves a node to another parent. It keeps its position in the world, or with `relative` its own
// values.
bool moveBelow(const CommandContext& context, const SelectionItem& item,
               const SelectionItem* parent, bool relative, std::string& error) {
  const MMatrix before = item.path.inclusiveMatrix();
  if (!context.host().scene.reparent(item.node, parentOf(item),
                                     parent == nullptr ? nullptr : parent->node, &error)) {
    return false;
  }
  if (relative || !item.node->isTransform()) return true;
  const MMatrix above = parent == nullptr ? MMatrix() : parent->path.inclusiveMatrix();
  const MMatrix wanted = before * above.inverse();
  return wanted.isEquivalent(localMatrix(item.node), 0.0) ||
         setLocalMatrix(item.node, wanted, error);
}

CommandResult removeInstances(const CommandContext& context, const Items& items) {
  for (const SelectionItem& item : items) {
    std::string error;
    if (!context.host().scene.removeInstance(item.node, parentOf(item), &error))
      return CommandResult::failure("parent: " + error);
  }
  return CommandResult::success();
}

CommandResult parent(const Arguments& arguments, CommandContext& context) {
  Items items;
  std::string error;
  if (!findItems(arguments.objects(), context, items, error))
    return CommandResult::failure("parent: " + error);
  items.erase(std::remove_if(items.begin(), items.end(),
                             [](const SelectionItem& item) { return item.path.isEmpty(); }),
              items.end());
  if (arguments.has("rm")) return removeInstances(context, items);
  const bool toWorld = arguments.has("w");
  if (items.size() < (toWorld ? 1u : 2u))
    return CommandResult::failure("parent: needs objects and a parent");
  SelectionItem target;
  if (!toWorld) {
    target = items.back();
    items.pop_back();
  }
  Value::Strings names;
  for (const SelectionItem& item : items) {
    if (item.node->isShape() && !arguments.has("s")) {
      return CommandResult::failure("parent: '" + shownName(context, item) +
                                    "' is a shape; give -shape to move it");
    }
    const bool ok =
        arguments.has("add")
            ? context.host().scene.addInstance(item.node, target.node, &error)
            : moveBelow(context, item, toWorld ? nullptr : &target, arguments.has("r"), error);
    if (!ok) return CommandResult::failure("parent: " + error);
    names.push_back(shownPath(context, item.node));
  }
  return CommandResult::success(std::move(names));
}

// --- instance, group

// Copies what is set on the transform itself; its children are shared.
NodePtr makeInstance(const CommandContext& context, const SelectionItem& item,
                     const std::string& name, bool leaf, std::string& error) {
  Scene& scene = context.host().scene;
  const NodePtr above = parentOf(item);
  const NodePtr source = item.node->isShape() ? above : item.node;
  if (source == nullptr) {
    error = "a shape at the top cannot be instanced";
    return nullptr;
  }
  const NodePtr copy = scene.createNode(source->type(), name.empty() ? source->name() : name,
                                        item.node->isShape() ? nullptr : above, &error);
  if (copy == nullptr) return nullptr;
  for (const AttributeState& state : source->values.inWrittenOrder()) {
    if (state.path.find('[') == std::string::npos &&
        copy->findAttribute(state.path.substr(0, state.path.find('.'))) != nullptr) {
      copy->values.at(state.path) = state;
    }
  }
  const std::vector<NodePtr> children =
      item.node->isShape() ? std::vector<NodePtr>{item.node} : source->children();
  for (const NodePtr& child : children)
    if ((!leaf || child->isShape()) && !scene.addInstance(child, copy, &error)) return nullptr;
  return copy;
}

CommandResult instance(const Arguments& arguments, CommandContext& context) {
  Items items;
  std::string error;
  if (!findItems(arguments.objects(), context, items, error))
    return CommandResult::failure("instance: " + error);
  Value::Strings names;
  for (const SelectionItem& item : items) {
    if (item.path.isEmpty())
      return CommandResult::failure("instance: '" + shownName(context, item) +
                                    "' is not in the DAG");
    const NodePtr copy =
        makeInstance(context, item, arguments.text("n"), arguments.has("lf"), error);
    if (copy == nullptr) return CommandResult::failure("instance: " + error);
    names.push_back(shownPath(context, copy));
  }
  return CommandResult::success(std::move(names));
}

CommandResult group(const Arguments& arguments, CommandContext& context) {
  Items items;
  std::string error;
  if (!arguments.has("em") && !findItems(arguments.objects(), context, items, error))
    return CommandResult::failure("group: " + error);
  if (!arguments.has("em") && items.empty())
    return CommandResult::failure("group: nothing is named or selected");
  NodePtr above;
  if (arguments.has("p")) {
    above = findNode(arguments.text("p"), context, error);
    if (above == nullptr) return CommandResult::failure("group: " + error);
  } else if (!items.empty() && !arguments.has("w")) {
    above = parentOf(items.front());
  }
  const std::string name = arguments.has("n")    ? arguments.text("n")
                           : arguments.has("em") ? "null1"
                                                 : "group1";
  const NodePtr node =
      context.host().scene.createNode(*NodeType::find("transform"), name, above, &error);
  if (node == nullptr) return CommandResult::failure("group: " + error);
  const SelectionItem target = SelectionItem::of(node);
  for (const SelectionItem& item : items) {
    if (!item.node->isTransform() ||
        !moveBelow(context, item, &target, arguments.has("r"), error)) {
      return CommandResult::failure(
          "group: " +
          (error.empty() ? "'" + shownName(context, item) + "' is not a transform" : error));
    }
  }
  context.host().scene.selection.clear();
  context.host().scene.selection.add(target);
  return CommandResult::success(shownName(context, target));
}

// --- xform

struct TransformFlag {
  std::string_view flag;
  const char* attribute;
};
constexpr TransformFlag kObjectSpaceFlags[] = {{"t", "translate"},
                                               {"ro", "rotate"},
                                               {"s", "scale"},
                                               {"sh", "shear"},
                                               {"ra", "rotateAxis"},
                                               {"rt", "rotatePivotTranslate"},
                                               {"st", "scalePivotTranslate"}};

Value::Floats flat(const MMatrix& matrix) {
  return Value::Floats(&matrix.matrix[0][0], &matrix.matrix[0][0] + 16);
}

constexpr const char* kRotateOrders[] = {"xyz", "yzx", "zxy", "xzy", "yxz", "zyx"};

// -rp, -sp, or with -pivots both.
Value::Floats queryPivots(const Arguments& arguments, const SelectionItem& item) {
  Value::Floats numbers;
  for (const auto& [flag, pivot] :
       {std::pair("rp", Pivot::kRotate), std::pair("sp", Pivot::kScale)}) {
    if (arguments.has(flag) || arguments.has("piv")) {
      const MPoint point = pivotOf(item, pivot, arguments.has("ws"));
      numbers.insert(numbers.end(), {point.x, point.y, point.z});
    }
  }
  return numbers;
}

CommandResult queryXform(const Arguments& arguments, const SelectionItem& item) {
  const bool world = arguments.has("ws");
  if (item.component != nullptr) return CommandResult::success(componentPositions(item, world));
  if (arguments.has("m")) {
    return CommandResult::success(
        flat(world ? item.path.inclusiveMatrix() : localMatrix(item.node)));
  }
  if (arguments.has("bb")) return CommandResult::success(boxNumbers(item, world));
  if (arguments.has("rp") || arguments.has("sp") || arguments.has("piv"))
    return CommandResult::success(queryPivots(arguments, item));
  if (arguments.has("roo")) return CommandResult::success(kRotateOrders[rotateOrderOf(item.node)]);
  if (world && arguments.has("t")) {
    const MMatrix matrix = item.path.inclusiveMatrix();
    return CommandResult::success(Value::Floats{matrix[3][0], matrix[3][1], matrix[3][2]});
  }
  if (world && (arguments.has("ro") || arguments.has("s"))) {
    const TransformParts parts = decompose(item.path.inclusiveMatrix(), rotateOrderOf(item.node));
    const Vec3& numbers = arguments.has("ro") ? parts.rotate : parts.scale;
    return CommandResult::success(Value::Floats{numbers.x, numbers.y, numbers.z});
  }
  for (const TransformFlag& flag : kObjectSpaceFlags) {
    const auto plug =
        arguments.has(flag.flag) ? Plug::find(item.node, flag.attribute) : std::nullopt;
    if (plug) return CommandResult::success(readNumbers(*plug).value_or(Value::Floats(3, 0.0)));
  }
  return CommandResult::failure("xform: nothing to query");
}

bool applyFlag(const CommandContext& context, const Arguments& arguments, const TransformFlag& flag,
               const SelectionItem& item, std::string& error) {
  const auto plug = Plug::find(item.node, flag.attribute);
  Value::Floats numbers = arguments.allNumbers(flag.flag).back();
  if (!plug || isLocked(*plug)) {
    error = "'" + shownName(context, item) + "." + flag.attribute + "' is locked or missing";
    return false;
  }
  if (arguments.has("ws") && flag.flag == "t")
    return setWorldTranslation(item, numbers, arguments.has("r"), error);
  if (arguments.has("r")) {
    const Value::Floats old = readNumbers(*plug).value_or(Value::Floats(3, 0.0));
    for (std::size_t i = 0; i < 3; ++i)
      numbers[i] = flag.flag == "s" ? numbers[i] * old[i] : numbers[i] + old[i];
  }
  return writeValue(*plug, numbers);
}

bool applyPivots(const Arguments& arguments, const SelectionItem& item, std::string& error) {
  const PivotChange change{arguments.has("ws"), arguments.truth("p", true)};
  for (const auto& [flag, pivot] :
       {std::pair("rp", Pivot::kRotate), std::pair("sp", Pivot::kScale)}) {
    const char* given = arguments.has("piv") ? "piv" : flag;
    if (!arguments.has(given)) continue;
    const Value::Floats numbers = arguments.allNumbers(given).back();
    MPoint point(numbers[0], numbers[1], numbers[2]);
    if (arguments.has("r")) {
      const MPoint old = pivotOf(item, pivot, change.inWorld);
      point = MPoint(point.x + old.x, point.y + old.y, point.z + old.z);
    }
    if (!setPivot(item, pivot, point, change, error)) return false;
  }
  return true;
}

// Moves both pivots to the middle of the box of all below, in the transform's own space.
bool centerPivots(const SelectionItem& item, std::string& error) {
  const std::vector<double> box = boxNumbers(item, true);
  const MPoint middle((box[0] + box[3]) / 2, (box[1] + box[4]) / 2, (box[2] + box[5]) / 2);
  const PivotChange change{true, true};
  return setPivot(item, Pivot::kRotate, middle, change, error) &&
         setPivot(item, Pivot::kScale, middle, change, error);
}

// Sets the rotate order. The angles change so that the transform stays as it is, unless told
// otherwise.
bool applyRotateOrder(const CommandContext& context, const Arguments& arguments,
                      const SelectionItem& item, std::string& error) {
  const auto* const end = std::end(kRotateOrders);
  const auto* const order = std::find(std::begin(kRotateOrders), end, arguments.text("roo"));
  const auto plug = Plug::find(item.node, "rotateOrder");
  if (order == end || !plug || isLocked(*plug)) {
    error = order == end ? "'" + arguments.text("roo") + "' is not a rotate order"
                         : "'" + shownName(context, item) + ".rotateOrder' is locked or missing";
    return false;
  }
  const MMatrix before = localMatrix(item.node);
  writeValue(*plug, static_cast<double>(order - std::begin(kRotateOrders)));
  return !arguments.truth("p", true) || setLocalMatrix(item.node, before, error);
}

bool applyMatrix(const Arguments& arguments, const SelectionItem& item, std::string& error) {
  const Value::Floats numbers = arguments.allNumbers("m").back();
  MMatrix matrix;
  std::copy(numbers.begin(), numbers.end(), &matrix.matrix[0][0]);
  if (arguments.has("ws")) matrix = matrix * item.path.exclusiveMatrix().inverse();
  return setLocalMatrix(item.node, matrix, error);
}

// Vertices have nothing but a place.
std::string moveByXform(const CommandContext& context, const Arguments& arguments,
                        const SelectionItem& item) {
  if (item.component == nullptr || !arguments.has("t"))
    return "'" + shownName(context, item) + "' is not a transform";
  return moveVertices(
      item, {{0, 1, 2}, arguments.allNumbers("t").back(), arguments.has("ws"), arguments.has("r")});
}

CommandResult xform(const Arguments& arguments, CommandContext& context) {
  Items items;
  std::string error;
  if (!findItems(arguments.objects(), context, items, error))
    return CommandResult::failure("xform: " + error);
  if (items.empty()) return CommandResult::failure("xform: nothing is named or selected");
  if (arguments.query()) return queryXform(arguments, items.front());
  for (const SelectionItem& item : items) {
    if (!item.node->isTransform() || item.component != nullptr) {
      error = moveByXform(context, arguments, item);
      if (!error.empty()) return CommandResult::failure("xform: " + error);
      continue;
    }
    bool ok = !arguments.has("m") || applyMatrix(arguments, item, error);
    ok = ok && (!arguments.has("roo") || applyRotateOrder(context, arguments, item, error)) &&
         (!arguments.has("cp") || centerPivots(item, error)) && applyPivots(arguments, item, error);
    for (const TransformFlag& flag : kObjectSpaceFlags)
      ok = ok && (!arguments.has(flag.flag) || applyFlag(context, arguments, flag, item, error));
    if (!ok) return CommandResult::failure("xform: " + error);
  }
  return CommandResult::success();
}

}  // namespace

void addDagCommands(CommandTable& table) {
  table.add("parent",
            {{"s", "shape", ""},
             {"nc", "noConnections", ""},
             {"r", "relative", ""},
             {"a", "absolute", ""},
             {"add", "addObject", ""},
             {"w", "world", ""},
             {"rm", "removeObject", ""},
             {"nis", "noInvScale", ""}},
            parent);
  table.add("instance", {{"n", "name", "s"}, {"lf", "leaf", ""}, {"st", "smartTransform", ""}},
            instance);
  table.add("group",
            {{"n", "name", "s"},
             {"em", "empty", ""},
             {"w", "world", ""},
             {"p", "parent", "s"},
             {"r", "relative", ""},
             {"a", "absolute", ""}},
            group);
  table.add("xform",
            {{"q", "query", ""},
             {"t", "translation", "nnn"},
             {"ro", "rotation", "nnn"},
             {"s", "scale", "nnn"},
             {"rp", "rotatePivot", "nnn"},
             {"sp", "scalePivot", "nnn"},
             {"piv", "pivots", "nnn"},
             {"cp", "centerPivots", ""},
             {"p", "preserve", "b"},
             {"roo", "rotateOrder", "s"},
             {"rt", "rotateTranslation", "nnn"},
             {"st", "scaleTranslation", "nnn"},
             {"sh", "shear", "nnn"},
             {"ra", "rotateAxis", "nnn"},
             {"m", "matrix", "nnnnnnnnnnnnnnnn"},
             {"bb", "boundingBox", ""},
             {"ws", "worldSpace", ""},
             {"os", "objectSpace", ""},
             {"r", "relative", ""},
             {"a", "absolute", ""}},
            xform);
}

}  // namespace host::mel
