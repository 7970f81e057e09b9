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
  for (const int vertex : polygons.connects)
    if (vertex < 0 || vertex >= points)
      return "vertex " + std::to_string(vertex) + " of " + std::to_string(points);
  return {};
}

// Numbers edges by their vertices; both directions are the same edge.
class EdgeNumbers {
 public:
  explicit EdgeNumbers(std::size_t mostEdges) : seen_(mostEdges) {}

  // Adds an edge that no face may use, unless it is there already.
  void add(const MeshEdge& edge) {
    const std::size_t before = edges.size();
    signedEdge(edge.start, edge.end);
    if (edges.size() > before) edges.back() = edge.flag;
  }

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

// Closes the gaps that unused edges leave.
void dropUnused(std::vector<int>& edges, std::vector<int>& loops) {
  std::vector<int> numbers(edges.size() / 3, -1);
  const auto number = [](int loop) {
    return static_cast<std::size_t>(loop >= 0 ? loop : -loop - 1);
  };
  for (const int loop : loops) numbers[number(loop)] = 0;
  int next = 0;
  for (std::size_t i = 0; i < numbers.size(); ++i) {
    if (numbers[i] != 0) continue;
    std::copy_n(edges.begin() + static_cast<std::ptrdiff_t>(3 * i), 3, edges.begin() + 3 * next);
    numbers[i] = next++;
  }
  edges.resize(3 * static_cast<std::size_t>(next));
  for (int& loop : loops) loop = loop >= 0 ? numbers[number(loop)] : -numbers[number(loop)] - 1;
}

}  // namespace

std::string buildMesh(const MeshPolygons& polygons, MeshData& mesh,
                      const std::function<bool(int, int)>& isHard,
                      const std::vector<MeshEdge>& firstEdges) {
  std::string problem = check(polygons);
  if (!problem.empty()) return problem;
  EdgeNumbers numbers(polygons.connects.size() + firstEdges.size());
  for (const MeshEdge& edge : firstEdges) numbers.add(edge);
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
  if (!firstEdges.empty()) dropUnused(edges, loops);
  for (std::size_t i = 0; isHard && i < edges.size(); i += 3)
    if (isHard(edges[i], edges[i + 1])) edges[i + 2] = 0;
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
