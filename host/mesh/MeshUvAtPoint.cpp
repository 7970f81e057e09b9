#include "host/mesh/MeshUvAtPoint.h"

#include "host/mesh/MeshClosest.h"
#include "host/mesh/MeshTransform.h"

namespace host {

namespace {

std::optional<MeshUv> mixUvs(const MeshUvSet& set, const MeshTriangle& triangle,
                             const double (&weights)[3]) {
  double u = 0.0;
  double v = 0.0;
  for (int i = 0; i < 3; ++i) {
    const int id = MeshData::uvAt(set, triangle.corners[i]);
    if (id == -1) return std::nullopt;
    u += weights[i] * set.uvs[id].u;
    v += weights[i] * set.uvs[id].v;
  }
  return MeshUv{static_cast<float>(u), static_cast<float>(v)};
}

}  // namespace

std::optional<MeshUv> uvAtPoint(const MeshData& mesh, int face, const MeshUvSet& set,
                                const MMatrix& matrix, const Vec3& point) {
  const std::vector<Vec3>& points = mesh.points();
  const std::vector<int>& vertices = mesh.cornerVertices();
  const MeshTriangles& triangles = mesh.triangles();
  const auto corner = [&](const MeshTriangle& t, int i) {
    return transformed(points[vertices[t.corners[i]]], matrix);
  };
  const MeshTriangle* best = nullptr;
  TrianglePoint nearest = {{0.0, 0.0, 0.0}, {}, HUGE_VAL};
  for (int i = triangles.firstOfFace[face]; i < triangles.firstOfFace[face + 1]; ++i) {
    const MeshTriangle& t = triangles.list[i];
    const TrianglePoint found = closestOnTriangle(point, corner(t, 0), corner(t, 1), corner(t, 2));
    if (!(found.distance < nearest.distance)) continue;
    nearest = found;
    best = &t;
  }
  return best == nullptr ? std::nullopt : mixUvs(set, *best, nearest.weights);
}

}  // namespace host
