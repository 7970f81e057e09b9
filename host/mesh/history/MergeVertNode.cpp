#include <maya/MMatrix.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <map>

#include "host/mesh/DisjointSets.h"
#include "host/mesh/MeshTransform.h"
#include "host/mesh/history/FaceRebuild.h"
#include "host/mesh/history/HistoryNodes.h"
#include "host/mesh/history/HistoryTools.h"

namespace host {
namespace {

// Pairs of points that are looked at, before they count as too crowded.
constexpr std::int64_t kMostPairs = 100000000;

// The points that may be merged, in the space in which the distance counts.
struct Candidates {
  std::vector<int> vertices;  // ascending
  std::vector<Vec3> points;   // of each of them
  double distance = 0.0;

  bool areClose(std::size_t a, std::size_t b) const {
    return length(points[a] - points[b]) <= distance;
  }
};

std::string readCandidates(const HistoryParameters& node, const MeshData& mesh,
                           Candidates& candidates) {
  const auto distance = node.number({"d", "distance"});
  if (!distance || !std::isfinite(*distance)) return "its distance is not known";
  if (node.number({"mtc", "mergeToComponents"}, 0.0) != 0.0)
    return "its merging to chosen components is not evaluated";
  candidates.distance = std::max(*distance, 0.0);
  candidates.vertices =
      node.components({"ics", "inputComponents"}, ElementKind::kVertex, mesh.pointCount())
          .value_or(std::vector<int>());
  MMatrix world;
  const std::vector<double> matrix = node.numbers({"ix", "inputMatrix"});
  const bool inWorld = node.number({"ws", "worldSpace"}, 0.0) != 0.0;
  const std::string problem = inWorld && !matrix.empty() ? readMatrix(matrix, world) : "";
  for (const int vertex : candidates.vertices) {
    const Vec3& point = mesh.points()[static_cast<std::size_t>(vertex)];
    candidates.points.push_back(transformed(point, world));
  }
  const bool two = candidates.vertices.size() == 2;
  if (two && node.number({"am", "alwaysMergeTwoVertices"}, 0.0) != 0.0)
    candidates.distance = length(candidates.points[0] - candidates.points[1]);
  return problem;
}

// Candidates by cells of the width of the distance: those that are close lie in cells side by side.
class Cells {
 public:
  explicit Cells(const Candidates& candidates) : candidates_(candidates) {
    for (std::size_t i = 0; i < candidates.points.size(); ++i)
      cells_[cellOf(candidates.points[i], 0, 0, 0)].push_back(i);
  }

  // Joins those that are close. False when there are too many pairs to look at.
  bool joinClose(DisjointSets& sets) {
    for (std::size_t i = 0; i < candidates_.points.size(); ++i) {
      for (int n = 0; n < 27; ++n)
        joinWith(i, cellOf(candidates_.points[i], n % 3 - 1, n / 3 % 3 - 1, n / 9 - 1), sets);
      if (pairs_ > kMostPairs) return false;
    }
    return true;
  }

 private:
  using Cell = std::array<double, 3>;

  Cell cellOf(const Vec3& p, int x, int y, int z) const {
    if (candidates_.distance == 0.0) return {p.x + 0.0, p.y + 0.0, p.z + 0.0};
    const double width = candidates_.distance;
    return {std::floor(p.x / width) + x, std::floor(p.y / width) + y, std::floor(p.z / width) + z};
  }
  void joinWith(std::size_t i, const Cell& cell, DisjointSets& sets) {
    const auto found = cells_.find(cell);
    if (found == cells_.end()) return;
    pairs_ += static_cast<std::int64_t>(found->second.size());
    if (pairs_ > kMostPairs) return;
    for (const std::size_t other : found->second)
      if (other < i && candidates_.areClose(i, other))
        sets.join(static_cast<int>(i), static_cast<int>(other));
  }

  const Candidates& candidates_;
  std::map<Cell, std::vector<std::size_t>> cells_;
  std::int64_t pairs_ = 0;
};

// The members of every set of more than one, by its least.
using Groups = std::map<int, std::vector<std::size_t>>;

std::string findGroups(const Candidates& candidates, Groups& groups) {
  DisjointSets sets(candidates.points.size());
  if (!Cells(candidates).joinClose(sets)) return "too many of its points are close together";
  for (std::size_t i = 0; i < candidates.points.size(); ++i)
    groups[sets.leastOf(static_cast<int>(i))].push_back(i);
  std::int64_t pairs = 0;
  for (auto group = groups.begin(); group != groups.end();) {
    const std::vector<std::size_t>& members = group->second;
    for (std::size_t i = 0; i < members.size() && pairs <= kMostPairs; ++i) {
      for (std::size_t j = 0; j < i; ++j, ++pairs)
        if (!candidates.areClose(members[i], members[j]))
          return "its points hang together in chains longer than its distance, of which it is not "
                 "known which are merged";
    }
    group = members.size() < 2 ? groups.erase(group) : std::next(group);
  }
  return pairs > kMostPairs ? "too many of its points are close together" : std::string();
}

// Adds the face without the corners that became one with the corner before them. False when a
// vertex still occurs twice.
bool addMerged(const MeshData& mesh, int face, FaceRebuild& faces) {
  std::vector<FaceRebuild::Corner> corners;
  for (int i = mesh.faceStart(face); i < mesh.faceStart(face) + mesh.cornerCount(face); ++i) {
    const auto old = static_cast<std::size_t>(mesh.cornerVertices()[static_cast<std::size_t>(i)]);
    const int vertex = faces.newVertexOf[old];
    if (corners.empty() || corners.back().vertex != vertex) corners.push_back({vertex, i});
  }
  while (corners.size() > 1 && corners.back().vertex == corners.front().vertex) corners.pop_back();
  if (corners.size() < 3) return true;
  std::vector<int> vertices;
  for (const FaceRebuild::Corner& corner : corners) vertices.push_back(corner.vertex);
  std::sort(vertices.begin(), vertices.end());
  faces.counts.push_back(static_cast<int>(corners.size()));
  faces.corners.insert(faces.corners.end(), corners.begin(), corners.end());
  return std::adjacent_find(vertices.begin(), vertices.end()) == vertices.end();
}

}  // namespace

std::string polyMergeVert(HistoryParameters& node, MeshData& mesh) {
  Candidates candidates;
  Groups groups;
  std::string problem = readCandidates(node, mesh, candidates);
  if (problem.empty()) problem = findGroups(candidates, groups);
  if (!problem.empty() || groups.empty()) return problem;
  FaceRebuild faces = FaceRebuild::withPointsOf(mesh);
  int firstChanged = mesh.pointCount();
  for (const auto& [least, members] : groups) {
    const int kept = candidates.vertices[static_cast<std::size_t>(least)];
    firstChanged = std::min(firstChanged, kept);
    Vec3 sum;
    for (const std::size_t member : members) {
      const auto vertex = static_cast<std::size_t>(candidates.vertices[member]);
      sum = sum + mesh.points()[vertex];
      faces.newVertexOf[vertex] = kept;
    }
    faces.points[static_cast<std::size_t>(kept)] =
        sum * (1.0 / static_cast<double>(members.size()));
  }
  int firstGone = mesh.faceCount();
  for (int face = 0; face < mesh.faceCount(); ++face) {
    const std::size_t before = faces.counts.size();
    if (!addMerged(mesh, face, faces)) return "it makes a face meet itself, which is not evaluated";
    if (faces.counts.size() == before) firstGone = std::min(firstGone, face);
  }
  dropUnusedPoints(faces);
  problem = rebuild(faces, mesh);
  dropUnusedUvs(mesh);
  node.dropUvNumbers();
  node.keepNumbersOf(firstGone, firstChanged, 0);
  return problem;
}

}  // namespace host
