#include "host/scene/ComputedValues.h"

#include <algorithm>

#include "host/mesh/MeshData.h"
#include "host/scene/Dag.h"

namespace host {
namespace {

std::vector<double> toNumbers(const MMatrix& m) {
  return std::vector<double>(&m.matrix[0][0], &m.matrix[0][0] + 16);
}

MMatrix localOf(const DagPath& path) {
  return localMatrix(path.node());
}
MMatrix inclusiveOf(const DagPath& path) {
  return path.inclusiveMatrix();
}
MMatrix exclusiveOf(const DagPath& path) {
  return path.exclusiveMatrix();
}

struct MatrixRow {
  const char* attribute;
  MMatrix (*matrix)(const DagPath& path);
  bool inverse;
};

constexpr MatrixRow kMatrices[] = {
    {"matrix", localOf, false},           {"inverseMatrix", localOf, true},
    {"worldMatrix", inclusiveOf, false},  {"worldInverseMatrix", inclusiveOf, true},
    {"parentMatrix", exclusiveOf, false}, {"parentInverseMatrix", exclusiveOf, true},
};

AttributeValue matrixValue(const Plug& plug) {
  for (const MatrixRow& row : kMatrices) {
    if (plug.attribute()->longName() != row.attribute) continue;
    const DagPath path =
        pathOfInstance(plug.node(), static_cast<std::size_t>(std::max(plug.index(), 0)));
    if (path.isEmpty()) return toNumbers(MMatrix());
    const MMatrix matrix = row.matrix(path);
    return toNumbers(row.inverse ? matrix.inverse() : matrix);
  }
  return {};
}

AttributeValue boxValue(const Plug& plug, const std::string& compound) {
  const auto& siblings = plug.attribute()->parent()->children();
  std::size_t axis = 0;
  while (axis < 2 && siblings[axis] != plug.attribute()) ++axis;
  const MBoundingBox box = boundingBox(plug.node());
  const MPoint low = box.min();
  const MPoint high = box.max();
  const double lows[] = {low.x, low.y, low.z};
  const double highs[] = {high.x, high.y, high.z};
  if (compound == "boundingBoxMin") return lows[axis];
  if (compound == "boundingBoxMax") return highs[axis];
  if (compound == "boundingBoxSize") return highs[axis] - lows[axis];
  return (lows[axis] + highs[axis]) * 0.5;
}

// A number of a mesh's point or tweak: "pnts[3].pntx". Nothing for other plugs.
AttributeValue pointValue(const Plug& plug) {
  const AttributePtr parent = plug.attribute()->parent();
  const std::size_t dot = plug.path().rfind('.');
  if (!parent || dot == std::string::npos) return {};
  const auto range = splitRange(std::string_view(plug.path()).substr(0, dot));
  const bool isTweak = parent->longName() == "pnts";
  if (!range || (!isTweak && parent->longName() != "vrts")) return {};
  Vec3 point;
  const MeshData& mesh = *plug.node()->mesh;
  if (isTweak) {
    const auto& tweaks = mesh.tweaks();
    const auto tweak =
        std::lower_bound(tweaks.begin(), tweaks.end(), range->first,
                         [](const MeshTweak& each, int vertex) { return each.vertex < vertex; });
    if (tweak != tweaks.end() && tweak->vertex == range->first) point = tweak->offset;
  } else if (range->first < mesh.pointCount()) {
    point = mesh.storedPoints()[static_cast<std::size_t>(range->first)];
  }
  const auto& axes = parent->children();
  return plug.attribute() == axes[0] ? point.x : plug.attribute() == axes[1] ? point.y : point.z;
}

}  // namespace

AttributeValue computedValue(const Plug& plug) {
  if (plug.node()->mesh != nullptr) {
    AttributeValue point = pointValue(plug);
    if (!std::holds_alternative<std::monostate>(point)) return point;
  }
  if (!plug.node()->isDag() || plug.attribute()->isDynamic) return {};
  if (plug.attribute()->typeWord() == "matrix") return matrixValue(plug);
  const AttributePtr parent = plug.attribute()->parent();
  if (!parent) return {};
  const bool isBox = parent->longName().rfind("boundingBox", 0) == 0;
  const bool isCentre = parent->longName() == "center" && parent->typeWord() == "double3";
  return isBox || isCentre ? boxValue(plug, parent->longName()) : AttributeValue();
}

}  // namespace host
