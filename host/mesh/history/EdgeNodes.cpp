#include <algorithm>
#include <cmath>

#include "host/math/Trigonometry.h"
#include "host/mesh/history/HistoryNodes.h"

namespace host {
namespace {

constexpr double kDegrees = 57.295779513082320876798;
constexpr double kUsualAngle = 30.0;
constexpr double kAlwaysSoft = 180.0;

// Newell's: half the length is the face's area.
Vec3 faceNormal(const MeshData& mesh, int face) {
  Vec3 sum;
  const auto [begin, end] = mesh.loops(face).front();
  const auto pointAt = [&mesh](int corner) {
    const int vertex = mesh.cornerVertices()[static_cast<std::size_t>(corner)];
    return mesh.points()[static_cast<std::size_t>(vertex)];
  };
  for (int corner = begin; corner < end; ++corner)
    sum = sum + cross(pointAt(corner), pointAt(corner + 1 < end ? corner + 1 : begin));
  return normalized(sum);
}

// The two faces of every edge, -1 where there is none; more than two count as none.
struct EdgeFaces {
  int faces[2] = {-1, -1};
  int count = 0;
};

std::vector<EdgeFaces> facesOfEdges(const MeshData& mesh) {
  std::vector<EdgeFaces> result(mesh.edges().size());
  for (int face = 0; face < mesh.faceCount(); ++face) {
    for (int corner = mesh.faceStart(face); corner < mesh.faceStart(face) + mesh.cornerCount(face);
         ++corner) {
      const int edge = mesh.storedLoopEdges()[static_cast<std::size_t>(corner)];
      EdgeFaces& entry = result[static_cast<std::size_t>(edge >= 0 ? edge : -(edge + 1))];
      if (entry.count < 2) entry.faces[entry.count] = face;
      ++entry.count;
    }
  }
  return result;
}

}  // namespace

std::string polySoftEdge(HistoryParameters& node, MeshData& mesh) {
  const double limit = node.number({"a", "angle"}, kUsualAngle);
  const int count = static_cast<int>(mesh.edges().size());
  const auto chosen = node.components({"ics", "inputComponents"}, ElementKind::kEdge, count);
  std::vector<Vec3> normals;
  for (int face = 0; face < mesh.faceCount(); ++face) normals.push_back(faceNormal(mesh, face));
  const std::vector<EdgeFaces> around = facesOfEdges(mesh);
  std::vector<MeshEdge>& edges = mesh.changeEdgeFlags();
  const auto soften = [&](int edge) {
    const EdgeFaces& entry = around[static_cast<std::size_t>(edge)];
    double angle = 0.0;
    if (entry.count == 2) {
      const double cosine = dot(normals[static_cast<std::size_t>(entry.faces[0])],
                                normals[static_cast<std::size_t>(entry.faces[1])]);
      angle = arcCosine(std::clamp(cosine, -1.0, 1.0)) * kDegrees;
    }
    edges[static_cast<std::size_t>(edge)].flag = limit >= kAlwaysSoft || angle < limit ? 1 : 0;
  };
  for (int edge = 0; !chosen && edge < count; ++edge) soften(edge);
  for (const int edge : chosen.value_or(std::vector<int>())) soften(edge);
  return {};
}

}  // namespace host
