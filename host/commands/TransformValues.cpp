#include "host/commands/TransformValues.h"

#include <maya/MBoundingBox.h>
#include <maya/MPoint.h>

#include <algorithm>
#include <cmath>

#include "host/mesh/MeshData.h"
#include "host/scene/Dag.h"
#include "host/scene/Node.h"
#include "host/scene/Values.h"

namespace host::mel {
namespace {

constexpr double kDegrees = 57.295779513082320876798;

Vec3 row(const MMatrix& matrix, unsigned index) {
  return {matrix[index][0], matrix[index][1], matrix[index][2]};
}

void setRow(MMatrix& matrix, unsigned index, const Vec3& v) {
  matrix[index][0] = v.x;
  matrix[index][1] = v.y;
  matrix[index][2] = v.z;
}

// The axes in the order in which the rotation is applied.
constexpr int kAxes[6][3] = {{0, 1, 2}, {1, 2, 0}, {2, 0, 1}, {0, 2, 1}, {1, 0, 2}, {2, 1, 0}};

void anglesOf(const MMatrix& rotation, int order, double* angles) {
  const auto [i, j, k] = std::tuple(kAxes[order][0], kAxes[order][1], kAxes[order][2]);
  const double sign = order < 3 ? 1.0 : -1.0;
  const double middle = std::clamp(-sign * rotation[i][k], -1.0, 1.0);
  angles[j] = std::asin(middle) * kDegrees;
  if (std::fabs(middle) < 1.0 - 1e-12) {
    angles[i] = std::atan2(sign * rotation[j][k], rotation[k][k]) * kDegrees;
    angles[k] = std::atan2(sign * rotation[i][j], rotation[i][i]) * kDegrees;
  } else {
    // Both outer axes turn about the same line; the last one stays at rest.
    angles[i] = std::atan2(-sign * rotation[k][j], rotation[j][j]) * kDegrees;
    angles[k] = 0;
  }
}

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

void write(const NodePtr& node, const char* name, const double* xyz) {
  if (const auto plug = Plug::find(node, name))
    writeValue(*plug, std::vector<double>(xyz, xyz + 3));
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

TransformParts decompose(const MMatrix& matrix, int rotateOrder) {
  TransformParts parts;
  for (unsigned i = 0; i < 3; ++i) parts.translate[i] = matrix[3][i];
  // Gram-Schmidt over the rows. The matrix is scale × shear × rotation: row 1 holds shear xy of row
  // 0, and row 2 holds xz and yz.
  Vec3 x = row(matrix, 0);
  Vec3 y = row(matrix, 1);
  Vec3 z = row(matrix, 2);
  parts.scale[0] = length(x);
  x = normalized(x);
  const double xy = dot(x, y);
  y = y - x * xy;
  parts.scale[1] = length(y);
  y = normalized(y);
  const double xz = dot(x, z);
  z = z - x * xz;
  const double yz = dot(y, z);
  z = z - y * yz;
  parts.scale[2] = length(z);
  z = normalized(z);
  if (dot(cross(x, y), z) < 0) {
    parts.scale[2] = -parts.scale[2];
    z = z * -1.0;
  }
  parts.shear[0] = parts.scale[1] == 0 ? 0 : xy / parts.scale[1];
  parts.shear[1] = parts.scale[2] == 0 ? 0 : xz / parts.scale[2];
  parts.shear[2] = parts.scale[2] == 0 ? 0 : yz / parts.scale[2];
  MMatrix rotation;
  setRow(rotation, 0, x);
  setRow(rotation, 1, y);
  setRow(rotation, 2, z);
  anglesOf(rotation, rotateOrder, parts.rotate);
  return parts;
}

int rotateOrderOf(const NodePtr& transform) {
  const double order = numberOf(transform, "rotateOrder");
  return order >= 0 && order <= 5 ? static_cast<int>(order) : 0;
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
  // Pivots shift what the other values do: the rest of the way goes into the translation.
  const MMatrix got = localMatrix(transform);
  for (unsigned i = 0; i < 3; ++i) parts.translate[i] += matrix[3][i] - got[3][i];
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
