#include <algorithm>

#include "host/commands/Builtin.h"
#include "host/commands/Lookup.h"
#include "host/math/TransformParts.h"
#include "host/mel/Command.h"
#include "host/mesh/MeshData.h"
#include "host/mesh/history/HistoryTools.h"
#include "host/scene/Connections.h"
#include "host/scene/Dag.h"
#include "host/scene/MeshHistory.h"
#include "host/scene/Node.h"
#include "host/scene/Scene.h"
#include "host/scene/Values.h"
#include "host/text/Numbers.h"

// makeIdentity: moves the effect of a transform into the shapes and transforms below it.
namespace host::mel {
namespace {

struct Freeze {
  bool translate = true;
  bool rotate = true;
  bool scale = true;

  bool all() const { return translate && rotate && scale; }
};

constexpr const char* kAttributes[] = {"translate", "rotate", "scale", "shear"};

bool isBound(const Plug& plug) {
  const std::vector<Plug> children = plug.children();
  return isLocked(plug) || sourceOf(plug) || std::any_of(children.begin(), children.end(), isBound);
}

// Why a node cannot be frozen, or nothing.
std::string whyNot(const NodePtr& node) {
  const std::string name = "'" + node->name() + "'";
  if (node->parents().size() > 1) return name + " is an instance";
  const bool isUnmade = node->history != nullptr && !node->history->isMade();
  if (isUnmade) return name + " has construction history that is not evaluated";
  if (node->isShape() && node->mesh == nullptr) return name + " is not a mesh";
  if (!node->isTransform()) return {};
  for (const char* const attribute : kAttributes) {
    const auto plug = Plug::find(node, attribute);
    if (!plug) return name + " has no " + attribute;
    if (isBound(*plug)) return "'" + plug->name() + "' is locked or connected";
  }
  return {};
}

std::string whyNoneBelow(const NodePtr& node) {
  std::string problem = whyNot(node);
  for (const NodePtr& child : node->children())
    if (problem.empty()) problem = whyNoneBelow(child);
  return problem;
}

void set(const NodePtr& node, const char* attribute, const std::vector<double>& numbers) {
  if (const auto plug = Plug::find(node, attribute)) writeValue(*plug, numbers);
}

std::vector<double> pointThrough(const NodePtr& node, const char* attribute,
                                 const MMatrix& matrix) {
  const auto plug = Plug::find(node, attribute);
  const auto numbers = plug ? readNumbers(*plug) : std::nullopt;
  const MPoint point = numbers && numbers->size() == 3
                           ? MPoint((*numbers)[0], (*numbers)[1], (*numbers)[2]) * matrix
                           : MPoint(0, 0, 0) * matrix;
  return {point.x, point.y, point.z};
}

// Leaves in the transform what is not to be frozen.
void reset(const NodePtr& node, const Freeze& freeze) {
  const std::vector<double> none(3, 0.0);
  if (freeze.translate) set(node, "translate", none);
  if (freeze.rotate) set(node, "rotate", none);
  if (freeze.scale) {
    set(node, "scale", {1.0, 1.0, 1.0});
    set(node, "shear", none);
  }
}

void moveTweaks(MeshData& mesh, const MMatrix& matrix) {
  const std::vector<MeshTweak> tweaks = mesh.tweaks();
  for (const MeshTweak& tweak : tweaks) {
    const Vec3 offset = directionThrough(tweak.offset, matrix);
    mesh.setTweaks(static_cast<std::size_t>(tweak.vertex), &offset.x, 1);
  }
}

// Puts a node that moves points between a shape and what is connected into it.
void addMover(const Plug& source, const Plug& input, const MMatrix& matrix) {
  const NodePtr mover =
      input.node()->scene()->createNode(NodeType::findOrInvent("transformGeometry", false));
  KeptWords words{"matrix", {}};
  for (int i = 0; i < 16; ++i) words.words.push_back(formatNumber(matrix(i / 4, i % 4)));
  keepAsWritten(mover, "txf", std::move(words));
  connect(source, Plug::ofAttribute(mover, mover->findOrKeepLoose("ig")), true);
  connect(Plug::ofAttribute(mover, mover->findOrKeepLoose("og")), input, true);
}

// A shape that its history makes is moved by one more node of that.
void moveMesh(const NodePtr& node, const MMatrix& matrix) {
  const auto input = Plug::find(node, "inMesh");
  const auto source = input ? sourceOf(*input) : std::nullopt;
  if (source) addMover(*source, *input, matrix);
  if (node->history != nullptr)
    moveTweaks(*node->mesh, matrix);
  else
    transformMesh(*node->mesh, matrix);
}

// `above` is what came down from the transform above: points p there are p * above now.
void freezeBelow(const NodePtr& node, const MMatrix& above, const Freeze& freeze) {
  if (node->mesh != nullptr) moveMesh(node, above);
  if (!node->isTransform()) return;
  const MMatrix whole = localMatrix(node) * above;
  if (freeze.all()) {
    for (const char* const pivot : {"rotatePivot", "scalePivot"})
      set(node, pivot, pointThrough(node, "rotatePivot", whole));
    for (const char* const shift : {"rotatePivotTranslate", "scalePivotTranslate"})
      set(node, shift, std::vector<double>(3, 0.0));
  }
  reset(node, freeze);
  const MMatrix down = whole * localMatrix(node).inverse();
  for (const NodePtr& child : node->children()) freezeBelow(child, down, freeze);
}

void resetBelow(const NodePtr& node, const Freeze& freeze) {
  if (node->isTransform()) reset(node, freeze);
  for (const NodePtr& child : node->children()) resetBelow(child, freeze);
}

CommandResult makeIdentity(const Arguments& arguments, CommandContext& context) {
  std::vector<SelectionItem> items;
  std::string error = "needs transforms";
  if (!findItems(arguments.objects(), context, items, error) || items.empty())
    return CommandResult::failure("makeIdentity: " + error);
  Freeze freeze;
  if (arguments.has("t") || arguments.has("r") || arguments.has("s"))
    freeze = {arguments.truth("t"), arguments.truth("r"), arguments.truth("s")};
  for (const SelectionItem& item : items) {
    const std::string problem = item.node->isTransform()
                                    ? whyNoneBelow(item.node)
                                    : "'" + shownName(context, item) + "' is not a transform";
    if (!problem.empty()) return CommandResult::failure("makeIdentity: " + problem);
  }
  for (const SelectionItem& item : items)
    arguments.truth("a") ? freezeBelow(item.node, MMatrix(), freeze)
                         : resetBelow(item.node, freeze);
  return CommandResult::success();
}

}  // namespace

void addFreezeCommand(CommandTable& table) {
  table.add("makeIdentity",
            {{"a", "apply", "b"},
             {"t", "translate", "b"},
             {"r", "rotate", "b"},
             {"s", "scale", "b"},
             {"n", "normal", "i"},
             {"pn", "preserveNormals", "b"},
             {"jo", "jointOrient", "b"}},
            makeIdentity);
}

}  // namespace host::mel
