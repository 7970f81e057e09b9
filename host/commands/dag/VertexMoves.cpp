#include "host/commands/dag/VertexMoves.h"

#include <maya/MMatrix.h>

#include <algorithm>
#include <map>

#include "host/math/TransformParts.h"
#include "host/mesh/MeshData.h"
#include "host/scene/Dag.h"
#include "host/scene/Node.h"

namespace host::mel {
namespace {

double& axisOf(Vec3& point, std::size_t axis) {
  return axis == 0 ? point.x : axis == 1 ? point.y : point.z;
}

Vec3 moved(Vec3 point, const VertexMove& move) {
  for (std::size_t i = 0; i < move.axes.size(); ++i) {
    double& place = axisOf(point, move.axes[i]);
    const double number = move.numbers[std::min(i, move.numbers.size() - 1)];
    place = number + (move.isRelative ? place : 0.0);
  }
  return point;
}

// Consecutive vertices at once.
void setRuns(const std::vector<int>& vertices, const std::map<int, Vec3>& offsets, MeshData& mesh) {
  std::vector<Vec3> run;
  for (std::size_t i = 0; i < vertices.size(); ++i) {
    run.push_back(offsets.at(vertices[i]));
    const bool goesOn = i + 1 < vertices.size() && vertices[i + 1] == vertices[i] + 1;
    if (goesOn) continue;
    const std::size_t first = static_cast<std::size_t>(vertices[i]) + 1 - run.size();
    mesh.setTweaks(first, &run.front().x, run.size());
    run.clear();
  }
}

}  // namespace

std::string moveVertices(const SelectionItem& item, const VertexMove& move) {
  const bool namesVertices =
      item.component != nullptr && item.component->kind() == Component::Kind::kVertex;
  if (!namesVertices || item.node->mesh == nullptr)
    return "'" + item.names().front() + "' is not a transform or vertices";
  MeshData& mesh = *item.node->mesh;
  const MMatrix there = move.inWorld ? item.path.inclusiveMatrix() : MMatrix();
  const MMatrix back = there.inverse();
  std::map<int, Vec3> offsets;
  for (const MeshTweak& tweak : mesh.tweaks()) offsets[tweak.vertex] = tweak.offset;
  const std::vector<int> vertices = item.component->elements().toIndices(mesh.pointCount());
  for (const int vertex : vertices) {
    const Vec3& old = mesh.points()[static_cast<std::size_t>(vertex)];
    const Vec3 place = pointThrough(moved(pointThrough(old, there), move), back);
    if (!isFinite(place)) return "'" + item.node->name() + "' stands where nothing can be moved";
    offsets[vertex] = offsets[vertex] + (place - old);
  }
  setRuns(vertices, offsets, mesh);
  item.node->noteChange();
  return {};
}

}  // namespace host::mel
