#include "host/mesh/MeshTriangulation.h"

#include <cmath>

namespace host {

namespace {

// The number of tests that cutting ears may take in one mesh, besides some for each corner. It is
// enough for sound results with polygons of ten thousand corners, and takes about a second.
constexpr long long kBaseBudget = 100'000'000;
constexpr long long kBudgetPerCorner = 200;

// Projects along the axis nearest to the face's normal, and keeps the turn. Coordinates are
// relative to the face's first corner, so that its position in the world costs no digits.
class Projection {
 public:
  Projection(const Vec3& origin, const Vec3& area) : origin_(origin) {
    const double x = std::fabs(area.x);
    const double y = std::fabs(area.y);
    const double z = std::fabs(area.z);
    axis_ = x > y && x > z ? 0 : y > z ? 1 : 2;
    flip_ = (axis_ == 0 ? area.x : axis_ == 1 ? area.y : area.z) < 0.0;
  }
  PlanePoint operator()(const Vec3& point) const {
    const Vec3 p = point - origin_;
    const PlanePoint q = axis_ == 0   ? PlanePoint{p.y, p.z}
                         : axis_ == 1 ? PlanePoint{p.z, p.x}
                                      : PlanePoint{p.x, p.y};
    return flip_ ? PlanePoint{q.y, q.x} : q;
  }

 private:
  Vec3 origin_;
  int axis_;
  bool flip_;
};

// Twice the area vector of the outer loop.
Vec3 outerArea(const MeshData& mesh, int begin, int end) {
  const std::vector<Vec3>& points = mesh.points();
  const std::vector<int>& vertices = mesh.cornerVertices();
  const Vec3 origin = points[vertices[begin]];
  Vec3 area;
  for (int corner = begin + 1; corner + 1 < end; ++corner)
    area = area + cross(points[vertices[corner]] - origin, points[vertices[corner + 1]] - origin);
  return area;
}

// Whether every triangle of the fan from the first corner faces as the whole does.
bool fanFits(const MeshData& mesh, int begin, int end, const Vec3& area) {
  const std::vector<Vec3>& points = mesh.points();
  const std::vector<int>& vertices = mesh.cornerVertices();
  const Vec3 origin = points[vertices[begin]];
  for (int corner = begin + 1; corner + 1 < end; ++corner) {
    const Vec3 triangle =
        cross(points[vertices[corner]] - origin, points[vertices[corner + 1]] - origin);
    if (!(dot(triangle, area) > 0.0)) return false;
  }
  return true;
}

void appendFan(int begin, int end, std::vector<MeshTriangle>& triangles) {
  for (int corner = begin + 1; corner + 1 < end; ++corner)
    triangles.push_back({{begin, corner, corner + 1}});
}

void appendFace(const MeshData& mesh, int face, long long& budget,
                std::vector<MeshTriangle>& triangles) {
  const int begin = mesh.faceStart(face);
  const int end = begin + mesh.cornerCount(face);
  if (end - begin == 3) return appendFan(begin, end, triangles);
  std::vector<std::pair<int, int>> loops = {{begin, end}};
  if (!mesh.holes().empty()) loops = mesh.loops(face);
  const Vec3 area = outerArea(mesh, begin, loops.front().second);
  if (loops.size() == 1 && (fanFits(mesh, begin, end, area) || length(area) == 0.0))
    return appendFan(begin, end, triangles);
  const Projection project(mesh.points()[mesh.cornerVertices()[begin]], area);
  std::vector<PlanePoint> points;
  points.reserve(static_cast<std::size_t>(end - begin));
  for (int corner = begin; corner < end; ++corner)
    points.push_back(project(mesh.points()[mesh.cornerVertices()[corner]]));
  for (auto& loop : loops) loop = {loop.first - begin, loop.second - begin};
  cutEars(points, loops, begin, budget, triangles);
}

}  // namespace

MeshTriangles triangulate(const MeshData& mesh) {
  const std::size_t corners = mesh.cornerVertices().size();
  const std::size_t faces = static_cast<std::size_t>(mesh.faceCount());
  MeshTriangles result;
  result.list.reserve(corners - 2 * faces + 2 * mesh.holes().size());
  result.firstOfFace.reserve(faces + 1);
  result.firstOfFace.push_back(0);
  long long budget = kBaseBudget + kBudgetPerCorner * static_cast<long long>(corners);
  for (int face = 0; face < mesh.faceCount(); ++face) {
    appendFace(mesh, face, budget, result.list);
    result.firstOfFace.push_back(static_cast<int>(result.list.size()));
  }
  return result;
}

}  // namespace host
