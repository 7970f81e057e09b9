#include "host/mesh/MeshNormals.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>

#include "host/mesh/DisjointSets.h"
#include "host/mesh/MeshFirstSeen.h"

namespace host {

namespace {

constexpr MeshNormal kUnlocked = {kUnlockedNormal, kUnlockedNormal, kUnlockedNormal};
constexpr double kPi = 3.14159265358979323846;

bool isLocked(const MeshNormal& n) {
  return n.x != kUnlockedNormal || n.y != kUnlockedNormal || n.z != kUnlockedNormal;
}

// Calls visit(begin, end) for the loops of a face.
template <typename Visit>
void forEachLoop(const MeshData& mesh, int face, Visit visit) {
  if (mesh.holes().empty()) {
    visit(mesh.faceStart(face), mesh.faceStart(face) + mesh.cornerCount(face));
    return;
  }
  for (const auto& [begin, end] : mesh.loops(face)) visit(begin, end);
}

// Joins corners at one vertex whose faces share a smooth edge that ends there.
class SmoothGroups {
 public:
  explicit SmoothGroups(const MeshData& mesh)
      : sets(mesh.cornerVertices().size()), mesh_(mesh), firstAtEnd_(2 * mesh.edges().size(), -1) {
    for (int face = 0; face < mesh.faceCount(); ++face)
      forEachLoop(mesh, face, [this](int begin, int end) { joinLoop(begin, end); });
  }

  DisjointSets sets;  // of corners

 private:
  void joinLoop(int begin, int end) {
    const std::vector<int>& loop = mesh_.storedLoopEdges();
    for (int corner = begin; corner < end; ++corner) {
      const int next = corner + 1 < end ? corner + 1 : begin;
      const bool reversed = loop[corner] < 0;
      const int edge = reversed ? -(loop[corner] + 1) : loop[corner];
      if (!mesh_.edges()[edge].smooth()) continue;
      joinAt(2 * static_cast<std::size_t>(edge) + (reversed ? 1 : 0), corner);
      joinAt(2 * static_cast<std::size_t>(edge) + (reversed ? 0 : 1), next);
    }
  }
  void joinAt(std::size_t edgeEnd, int corner) {
    if (firstAtEnd_[edgeEnd] == -1)
      firstAtEnd_[edgeEnd] = corner;
    else
      sets.join(firstAtEnd_[edgeEnd], corner);
  }

  const MeshData& mesh_;
  // For each edge the corner first seen at its start, then the one first seen at its end.
  std::vector<int> firstAtEnd_;
};

// A vector along the face's normal, as long as twice its area (Newell's method). A hole's loop runs
// the other way and subtracts its area.
Vec3 areaVector(const MeshData& mesh, int face) {
  const std::vector<Vec3>& points = mesh.points();
  const std::vector<int>& vertices = mesh.cornerVertices();
  const Vec3 origin = points[vertices[mesh.faceStart(face)]];
  Vec3 area;
  forEachLoop(mesh, face, [&](int begin, int end) {
    Vec3 previous = points[vertices[end - 1]] - origin;
    for (int corner = begin; corner < end; ++corner) {
      const Vec3 point = points[vertices[corner]] - origin;
      area = area + cross(previous, point);
      previous = point;
    }
  });
  return area;
}

// The angle inside the face, from 0 to 2π, seen against its normal.
double cornerAngle(const Vec3& before, const Vec3& at, const Vec3& after, const Vec3& normal) {
  const Vec3 out = after - at;
  const Vec3 back = before - at;
  const double angle = std::atan2(dot(cross(out, back), normal), dot(out, back));
  return angle < 0.0 ? angle + 2.0 * kPi : angle;
}

// The sums of weighted face normals, at the corner that names each group.
std::vector<Vec3> sumGroups(const MeshData& mesh, DisjointSets& groups) {
  const std::vector<Vec3>& points = mesh.points();
  const std::vector<int>& vertices = mesh.cornerVertices();
  std::vector<Vec3> sums(vertices.size());
  for (int face = 0; face < mesh.faceCount(); ++face) {
    const Vec3 normal = normalized(areaVector(mesh, face));
    if (normal == Vec3()) continue;
    forEachLoop(mesh, face, [&](int begin, int end) {
      for (int corner = begin; corner < end; ++corner) {
        const int previous = corner > begin ? corner - 1 : end - 1;
        const int next = corner + 1 < end ? corner + 1 : begin;
        const double weight = cornerAngle(points[vertices[previous]], points[vertices[corner]],
                                          points[vertices[next]], normal);
        Vec3& sum = sums[groups.leastOf(corner)];
        sum = sum + normal * weight;
      }
    });
  }
  return sums;
}

// Without negative zeros, so that equal normals have equal bits.
MeshNormal toNormal(const Vec3& sum) {
  const Vec3 n = normalized(sum);
  return {static_cast<float>(n.x) + 0.0f, static_cast<float>(n.y) + 0.0f,
          static_cast<float>(n.z) + 0.0f};
}

// One stored normal a group, numbered by their first corners; false when the numbers differ.
bool takeByGroup(const MeshData& mesh, std::vector<MeshNormal>& byCorner) {
  const std::vector<MeshNormal>& stored = mesh.storedNormals();
  SmoothGroups groups(mesh);
  std::size_t count = 0;
  std::vector<MeshNormal> result(byCorner.size());
  for (std::size_t i = 0; i < result.size(); ++i) {
    const std::size_t first = static_cast<std::size_t>(groups.sets.leastOf(static_cast<int>(i)));
    if (first == i && count == stored.size()) return false;
    result[i] = first == i ? stored[count++] : result[first];
  }
  if (count != stored.size()) return false;
  byCorner = std::move(result);
  return true;
}

std::vector<MeshNormal> cornerNormals(const MeshData& mesh) {
  std::vector<MeshNormal> result = storedNormalsByCorner(mesh);
  const std::size_t corners = result.size();
  bool allLocked = true;
  for (const MeshNormal& normal : result) allLocked = allLocked && isLocked(normal);
  if (allLocked) return result;
  SmoothGroups groups(mesh);
  const std::vector<Vec3> sums = sumGroups(mesh, groups.sets);
  for (std::size_t i = 0; i < corners; ++i) {
    if (isLocked(result[i])) continue;
    result[i] = toNormal(sums[static_cast<std::size_t>(groups.sets.leastOf(static_cast<int>(i)))]);
  }
  return result;
}

// Corners by vertex, those of one vertex in face order.
std::vector<int> cornersByVertex(const MeshData& mesh) {
  const std::vector<int>& vertices = mesh.cornerVertices();
  std::vector<int> positions(static_cast<std::size_t>(mesh.pointCount()) + 1, 0);
  for (const int vertex : vertices) ++positions[static_cast<std::size_t>(vertex) + 1];
  std::partial_sum(positions.begin(), positions.end(), positions.begin());
  std::vector<int> corners(vertices.size());
  for (std::size_t i = 0; i < vertices.size(); ++i)
    corners[static_cast<std::size_t>(positions[vertices[i]]++)] = static_cast<int>(i);
  return corners;
}

std::uint64_t hashOf(int vertex, const MeshNormal& normal) {
  std::uint32_t words[3];
  std::memcpy(words, &normal, sizeof words);
  const std::uint64_t low = mixBits((static_cast<std::uint64_t>(words[0]) << 32) | words[1]);
  return low ^ ((static_cast<std::uint64_t>(words[2]) << 32) | static_cast<std::uint32_t>(vertex));
}

}  // namespace

std::vector<MeshNormal> storedNormalsByCorner(const MeshData& mesh) {
  const std::vector<MeshNormal>& stored = mesh.storedNormals();
  std::vector<MeshNormal> result(mesh.cornerVertices().size(), kUnlocked);
  if (stored.empty()) return result;
  if (stored.size() < result.size() && takeByGroup(mesh, result)) return result;
  std::copy_n(stored.begin(), std::min(stored.size(), result.size()), result.begin());
  return result;
}

MeshNormals computeNormals(const MeshData& mesh) {
  const std::vector<MeshNormal> byCorner = cornerNormals(mesh);
  const std::vector<int>& vertices = mesh.cornerVertices();
  MeshNormals result;
  result.ids.resize(byCorner.size());
  std::vector<int> owners;  // the vertex of each listed normal
  FirstSeen seen(byCorner.size());
  for (const int corner : cornersByVertex(mesh)) {
    const MeshNormal& normal = byCorner[corner];
    const int vertex = vertices[corner];
    const int next = static_cast<int>(result.list.size());
    const int known = seen.findOrAdd(hashOf(vertex, normal), next, [&](int i) {
      return owners[i] == vertex && std::memcmp(&result.list[i], &normal, sizeof normal) == 0;
    });
    result.ids[corner] = known == -1 ? next : known;
    if (known != -1) continue;
    result.list.push_back(normal);
    owners.push_back(vertex);
  }
  return result;
}

}  // namespace host
