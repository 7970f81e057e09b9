// The matrices and boxes of Dag.h. Vectors are rows: a point p goes to p × matrix.

#include <array>
#include <cmath>
#include <optional>
#include <unordered_map>

#include "host/mesh/MeshData.h"
#include "host/scene/Dag.h"
#include "host/scene/Values.h"

namespace host {
namespace {

using Triple = std::array<double, 3>;

constexpr double kPi = 3.14159265358979323846;

// A matrix reads some thirty numbers; most nodes have nothing connected into them, and then a
// number is what was set, or its default.
double quickNumberOf(const NodePtr& node, const AttributePtr& attribute) {
  if (node->connections.hasInputs())
    return readNumber(Plug::ofAttribute(node, attribute)).value_or(0.0);
  const AttributeState* state = node->values.find(attribute->longName());
  const double* set = state ? std::get_if<double>(&state->value) : nullptr;
  const double* number = set ? set : std::get_if<double>(&attribute->defaultValue);
  return number ? *number : 0.0;
}

Triple tripleOf(const NodePtr& node, const char* attribute) {
  Triple triple = {0.0, 0.0, 0.0};
  const AttributePtr compound = node->findAttribute(attribute);
  for (std::size_t i = 0; compound && i < 3 && i < compound->children().size(); ++i)
    triple[i] = quickNumberOf(node, compound->children()[i]);
  return triple;
}

Triple negated(const Triple& t) {
  return {-t[0], -t[1], -t[2]};
}

MMatrix translation(const Triple& t) {
  MMatrix m;
  for (unsigned i = 0; i < 3; ++i) m[3][i] = t[i];
  return m;
}

MMatrix scaling(const Triple& s) {
  MMatrix m;
  for (unsigned i = 0; i < 3; ++i) m[i][i] = s[i];
  return m;
}

MMatrix shearing(const Triple& xyXzYz) {
  MMatrix m;
  m[1][0] = xyXzYz[0];
  m[2][0] = xyXzYz[1];
  m[2][1] = xyXzYz[2];
  return m;
}

MMatrix rotationAbout(unsigned axis, double degrees) {
  const double radians = degrees * (kPi / 180.0);
  const double c = std::cos(radians);
  const double s = std::sin(radians);
  const unsigned u = (axis + 1) % 3;
  const unsigned v = (axis + 2) % 3;
  MMatrix m;
  m[u][u] = c;
  m[u][v] = s;
  m[v][u] = -s;
  m[v][v] = c;
  return m;
}

// The axes in the order in which a rotate order applies them: xyz, yzx, zxy, xzy, yxz, zyx.
constexpr unsigned kRotateOrders[6][3] = {{0, 1, 2}, {1, 2, 0}, {2, 0, 1},
                                          {0, 2, 1}, {1, 0, 2}, {2, 1, 0}};

MMatrix rotation(const Triple& degrees, int order = 0) {
  MMatrix m;
  for (const unsigned axis : kRotateOrders[order]) m *= rotationAbout(axis, degrees[axis]);
  return m;
}

int rotateOrderOf(const NodePtr& node) {
  const double order = numberOf(node, "rotateOrder");
  return order >= 0.0 && order < 6.0 ? static_cast<int>(order) : 0;
}

// What a joint adds after its rotation: its orientation, and its parent's scale taken back.
MMatrix jointPart(const NodePtr& node) {
  MMatrix m = rotation(tripleOf(node, "jointOrient"));
  if (!truthOf(node, "segmentScaleCompensate")) return m;
  Triple back = tripleOf(node, "inverseScale");
  for (double& component : back) component = component == 0.0 ? 1.0 : 1.0 / component;
  return m * scaling(back);
}

std::optional<MMatrix> matrixSetOn(const NodePtr& node, const char* attribute) {
  const AttributeState* state = node->values.find(attribute);
  const auto* numbers = state ? std::get_if<std::vector<double>>(&state->value) : nullptr;
  if (!numbers || numbers->size() != 16) return std::nullopt;
  MMatrix m;
  for (unsigned i = 0; i < 16; ++i) m[i / 4][i % 4] = (*numbers)[i];
  return m;
}

MBoundingBox boxOfMesh(const MeshData& mesh) {
  const MeshBox& box = mesh.box();
  if (box.empty) return MBoundingBox();
  return MBoundingBox(MPoint(box.min.x, box.min.y, box.min.z),
                      MPoint(box.max.x, box.max.y, box.max.z));
}

using Boxes = std::unordered_map<const Node*, MBoundingBox>;

// Instances are met once for each parent, so boxes are remembered.
const MBoundingBox& boxOf(const NodePtr& node, Boxes& known) {
  const auto found = known.find(node.get());
  if (found != known.end()) return found->second;
  MBoundingBox box;
  if (node->mesh) {
    box = boxOfMesh(*node->mesh);
  } else {
    for (const NodePtr& child : node->children())
      if (!child->isIntermediate()) box.expand(boxOf(child, known));
    box.transformUsing(localMatrix(node));
  }
  return known.emplace(node.get(), box).first->second;
}

}  // namespace

MMatrix rotationMatrix(const NodePtr& node) {
  MMatrix m = rotation(tripleOf(node, "rotateAxis"));
  m *= rotation(tripleOf(node, "rotate"), rotateOrderOf(node));
  if (node->apiType() == MFn::kJoint) m *= jointPart(node);
  return m;
}

MMatrix scaleShearMatrix(const NodePtr& node) {
  return scaling(tripleOf(node, "scale")) * shearing(tripleOf(node, "shear"));
}

MMatrix localMatrix(const NodePtr& node) {
  if (!node->isTransform()) return MMatrix();
  if (const auto whole = matrixSetOn(node, "xformMatrix")) return *whole;
  const Triple scalePivot = tripleOf(node, "scalePivot");
  const Triple rotatePivot = tripleOf(node, "rotatePivot");
  MMatrix m = translation(negated(scalePivot));
  m *= scaling(tripleOf(node, "scale"));
  m *= shearing(tripleOf(node, "shear"));
  m *= translation(scalePivot);
  m *= translation(tripleOf(node, "scalePivotTranslate"));
  m *= translation(negated(rotatePivot));
  m *= rotation(tripleOf(node, "rotateAxis"));
  m *= rotation(tripleOf(node, "rotate"), rotateOrderOf(node));
  if (node->apiType() == MFn::kJoint) m *= jointPart(node);
  m *= translation(rotatePivot);
  m *= translation(tripleOf(node, "rotatePivotTranslate"));
  m *= translation(tripleOf(node, "translate"));
  return m;
}

MMatrix DagPath::inclusiveMatrix() const {
  MMatrix m;
  for (auto node = nodes_.rbegin(); node != nodes_.rend(); ++node) {
    if (!(*node)->isTransform()) continue;
    m *= localMatrix(*node);
    if (const auto offset = matrixSetOn(*node, "offsetParentMatrix")) m *= *offset;
    if (!truthOf(*node, "inheritsTransform")) break;
  }
  return m;
}

MMatrix DagPath::exclusiveMatrix() const {
  return parent().inclusiveMatrix();
}

MBoundingBox boundingBox(const NodePtr& node) {
  Boxes known;
  return boxOf(node, known);
}

}  // namespace host
