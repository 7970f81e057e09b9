#include "host/mesh/MeshBuild.h"

#include <algorithm>
#include <cstdint>

#include "host/mesh/MeshFirstSeen.h"

namespace host {

namespace {

std::string check(const MeshPolygons& polygons) {
  if (polygons.counts.empty()) return "no polygon";
  std::size_t corners = 0;
  for (const int count : polygons.counts) {
    if (count < 3) return "a polygon of " + std::to_string(count) + " corners";
    corners += static_cast<std::size_t>(count);
  }
  if (corners != polygons.connects.size()) {
    return std::to_string(polygons.connects.size()) + " vertices for " + std::to_string(corners) +
           " corners";
  }
  const int points = static_cast<int>(polygons.points.size());
  for (const int vertex : polygons.connects) {
    if (vertex < 0 || vertex >= points) {
      return "vertex " + std::to_string(vertex) + " of " + std::to_string(points);
    }
  }
  return {};
}

// Numbers edges by their vertices, in whichever direction they are met.
class EdgeNumbers {
 public:
  explicit EdgeNumbers(std::size_t corners) : seen_(corners) {}

  // The signed edge from one vertex to another.
  int signedEdge(int from, int to) {
    const std::uint64_t low = static_cast<std::uint64_t>(std::min(from, to));
    const std::uint64_t high = static_cast<std::uint64_t>(std::max(from, to));
    const int next = static_cast<int>(edges.size() / 3);
    const int known = seen_.findOrAdd((high << 32) | low, next, [&](int edge) {
      const int start = edges[3 * static_cast<std::size_t>(edge)];
      const int end = edges[3 * static_cast<std::size_t>(edge) + 1];
      return (start == from && end == to) || (start == to && end == from);
    });
    if (known != -1) return edges[3 * static_cast<std::size_t>(known)] == from ? known : -known - 1;
    edges.insert(edges.end(), {from, to, 1});
    return next;
  }

  std::vector<int> edges;  // start, end, flag

 private:
  FirstSeen seen_;
};

}  // namespace

std::string buildMesh(const MeshPolygons& polygons, MeshData& mesh,
                      const std::function<bool(int, int)>& isHard) {
  std::string problem = check(polygons);
  if (!problem.empty()) return problem;
  EdgeNumbers numbers(polygons.connects.size());
  std::vector<int> loops(polygons.connects.size());
  std::size_t begin = 0;
  for (const int count : polygons.counts) {
    const std::size_t end = begin + static_cast<std::size_t>(count);
    for (std::size_t i = begin; i < end; ++i) {
      loops[i] =
          numbers.signedEdge(polygons.connects[i], polygons.connects[i + 1 < end ? i + 1 : begin]);
    }
    begin = end;
  }
  std::vector<int>& edges = numbers.edges;
  for (std::size_t i = 0; isHard && i < edges.size(); i += 3) {
    if (isHard(edges[i], edges[i + 1])) edges[i + 2] = 0;
  }
  MeshData built;
  static_assert(sizeof(Vec3) == 3 * sizeof(double), "points are triples of doubles");
  if (!polygons.points.empty())
    built.setPoints(0, &polygons.points.front().x, polygons.points.size());
  built.setEdges(0, edges.data(), edges.size() / 3);
  const int* loop = loops.data();
  for (const int count : polygons.counts) {
    built.addFace(loop, static_cast<std::size_t>(count));
    loop += count;
  }
  mesh = std::move(built);
  return {};
}

}  // namespace host
