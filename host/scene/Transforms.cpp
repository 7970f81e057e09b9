// The matrices and boxes of Dag.h. Vectors are rows: a point p goes to p × matrix.

#include <optional>
#include <unordered_map>

#include "host/math/TransformParts.h"
#include "host/mesh/MeshData.h"
#include "host/scene/Dag.h"
#include "host/scene/Values.h"

namespace host {
namespace {

// A fast path: a matrix reads some thirty numbers, and most nodes have no inputs. A number is then
// what was set, or its default.
double quickNumberOf(const NodePtr& node, const AttributePtr& attribute) {
  if (node->connections.hasInputs())
    return readNumber(Plug::ofAttribute(node, attribute)).value_or(0.0);
  const AttributeState* state = node->values.find(attribute->longName());
  const double* set = state ? std::get_if<double>(&state->value) : nullptr;
  const double* number = set ? set : std::get_if<double>(&attribute->defaultValue);
  return number ? *number : 0.0;
}

Vec3 tripleOf(const NodePtr& node, const char* attribute) {
  const AttributePtr compound = node->findAttribute(attribute);
  if (!compound || compound->children().size() < 3) return Vec3();
  const auto& children = compound->children();
  return {quickNumberOf(node, children[0]), quickNumberOf(node, children[1]),
          quickNumberOf(node, children[2])};
}

int rotateOrderOf(const NodePtr& node) {
  return rotateOrder(numberOf(node, "rotateOrder"));
}

// A joint's additions after its rotation: its orientation, and the inverse of its parent's scale.
MMatrix jointPart(const NodePtr& node) {
  const MMatrix m = rotationMatrix(tripleOf(node, "jointOrient"), 0);
  if (!truthOf(node, "segmentScaleCompensate")) return m;
  const Vec3 scale = tripleOf(node, "inverseScale");
  const auto back = [](double component) { return component == 0.0 ? 1.0 : 1.0 / component; };
  return m * scaleMatrix({back(scale.x), back(scale.y), back(scale.z)});
}

// A matrix that is set or arrives; nothing for none.
std::optional<MMatrix> matrixOf(const NodePtr& node, const char* name) {
  const AttributePtr attribute = node->findAttribute(name);
  const AttributeState* state = node->values.find(name);
  if (!attribute || (!state && !node->connections.hasInputs())) return std::nullopt;
  const auto numbers = readNumbers(Plug::ofAttribute(node, attribute));
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
  MMatrix m = rotationMatrix(tripleOf(node, "rotateAxis"), 0);
  m *= rotationMatrix(tripleOf(node, "rotate"), rotateOrderOf(node));
  if (node->apiType() == MFn::kJoint) m *= jointPart(node);
  return m;
}

MMatrix scaleShearMatrix(const NodePtr& node) {
  return scaleMatrix(tripleOf(node, "scale")) * shearMatrix(tripleOf(node, "shear"));
}

MMatrix localMatrix(const NodePtr& node) {
  if (!node->isTransform()) return MMatrix();
  if (const auto whole = matrixOf(node, "xformMatrix")) return *whole;
  const Vec3 scalePivot = tripleOf(node, "scalePivot");
  const Vec3 rotatePivot = tripleOf(node, "rotatePivot");
  MMatrix m = translationMatrix(scalePivot * -1.0);
  m *= scaleMatrix(tripleOf(node, "scale"));
  m *= shearMatrix(tripleOf(node, "shear"));
  m *= translationMatrix(scalePivot);
  m *= translationMatrix(tripleOf(node, "scalePivotTranslate"));
  m *= translationMatrix(rotatePivot * -1.0);
  m *= rotationMatrix(tripleOf(node, "rotateAxis"), 0);
  m *= rotationMatrix(tripleOf(node, "rotate"), rotateOrderOf(node));
  if (node->apiType() == MFn::kJoint) m *= jointPart(node);
  m *= translationMatrix(rotatePivot);
  m *= translationMatrix(tripleOf(node, "rotatePivotTranslate"));
  m *= translationMatrix(tripleOf(node, "translate"));
  return m;
}

MMatrix DagPath::inclusiveMatrix() const {
  MMatrix m;
  for (auto node = nodes_.rbegin(); node != nodes_.rend(); ++node) {
    if (!(*node)->isTransform()) continue;
    m *= localMatrix(*node);
    if (const auto offset = matrixOf(*node, "offsetParentMatrix")) m *= *offset;
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
