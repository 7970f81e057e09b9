#include "host/commands/dag/TransformValues.h"

#include <maya/MBoundingBox.h>
#include <maya/MPoint.h>

#include "host/mesh/MeshData.h"
#include "host/scene/Dag.h"
#include "host/scene/Node.h"
#include "host/scene/Values.h"

namespace host::mel {
namespace {

bool anyLocked(const NodePtr& node, std::string& error) {
  for (const char* name : {"translate", "rotate", "scale", "shear"}) {
    const auto plug = Plug::find(node, name);
    if (!plug || isLocked(*plug)) {
      error = "'" + node->name() + "." + name + "' is locked or missing";
      return true;
    }
  }
  return false;
}

void write(const NodePtr& node, const char* name, const Vec3& v) {
  if (const auto plug = Plug::find(node, name))
    writeValue(*plug, std::vector<double>{v.x, v.y, v.z});
}

std::vector<int> verticesOf(const SelectionItem& item) {
  const MeshData& mesh = *item.node->mesh;
  const IndexSet& elements = item.component->elements();
  switch (item.component->kind()) {
    case Component::Kind::kVertex:
      return elements.toIndices(mesh.pointCount());
    case Component::Kind::kFace: {
      std::vector<int> vertices;
      for (const int face : elements.toIndices(mesh.faceCount())) {
        const auto first = mesh.cornerVertices().begin() + mesh.faceStart(face);
        vertices.insert(vertices.end(), first, first + mesh.cornerCount(face));
      }
      return vertices;
    }
    case Component::Kind::kEdge: {
      std::vector<int> vertices;
      for (const int edge : elements.toIndices(static_cast<int>(mesh.edges().size()))) {
        vertices.push_back(mesh.edges()[static_cast<std::size_t>(edge)].start);
        vertices.push_back(mesh.edges()[static_cast<std::size_t>(edge)].end);
      }
      return vertices;
    }
    default:
      return {};
  }
}

}  // namespace

int rotateOrderOf(const NodePtr& transform) {
  return rotateOrder(numberOf(transform, "rotateOrder"));
}

bool setLocalMatrix(const NodePtr& transform, const MMatrix& matrix, std::string& error) {
  if (anyLocked(transform, error)) return false;
  const auto axis = Plug::find(transform, "rotateAxis");
  const auto turned = axis ? readNumbers(*axis) : std::nullopt;
  if (turned && *turned != std::vector<double>(3, 0.0)) {
    error = "'" + transform->name() + "' has a rotate axis; use -relative";
    return false;
  }
  TransformParts parts = decompose(matrix, rotateOrderOf(transform));
  write(transform, "scale", parts.scale);
  write(transform, "shear", parts.shear);
  write(transform, "rotate", parts.rotate);
  write(transform, "translate", parts.translate);
  // Pivots shift the result of the other values, so the translation makes up for that.
  const MMatrix got = localMatrix(transform);
  parts.translate = parts.translate + translationOf(matrix) - translationOf(got);
  write(transform, "translate", parts.translate);
  return true;
}

bool setWorldTranslation(const SelectionItem& item, const std::vector<double>& xyz, bool relative,
                         std::string& error) {
  MMatrix world = item.path.inclusiveMatrix();
  for (unsigned i = 0; i < 3; ++i) world[3][i] = xyz[i] + (relative ? world[3][i] : 0.0);
  const MMatrix wanted = world * item.path.exclusiveMatrix().inverse();
  const MMatrix local = localMatrix(item.node);
  const auto plug = Plug::find(item.node, "translate");
  std::vector<double> translate =
      plug ? readNumbers(*plug).value_or(std::vector<double>(3, 0.0)) : std::vector<double>();
  if (translate.size() != 3) {
    error = "'" + item.node->name() + "' has no translation";
    return false;
  }
  for (unsigned i = 0; i < 3; ++i) translate[i] += wanted[3][i] - local[3][i];
  return writeValue(*plug, translate);
}

std::vector<double> componentPositions(const SelectionItem& item, bool inWorld) {
  std::vector<double> numbers;
  if (item.node->mesh == nullptr) return numbers;
  const MMatrix matrix = inWorld ? item.path.inclusiveMatrix() : MMatrix();
  const std::vector<Vec3>& points = item.node->mesh->points();
  for (const int vertex : verticesOf(item)) {
    const Vec3& point = points[static_cast<std::size_t>(vertex)];
    const MPoint placed = MPoint(point.x, point.y, point.z) * matrix;
    numbers.insert(numbers.end(), {placed.x, placed.y, placed.z});
  }
  return numbers;
}

std::vector<double> boxNumbers(const SelectionItem& item, bool inWorld) {
  MBoundingBox box = boundingBox(item.node);
  if (inWorld) {
    // A transform's box is in its parent's space already.
    box.transformUsing(item.node->isTransform() ? item.path.exclusiveMatrix()
                                                : item.path.inclusiveMatrix());
  }
  const MPoint low = box.min();
  const MPoint high = box.max();
  return {low.x, low.y, low.z, high.x, high.y, high.z};
}

}  // namespace host::mel
