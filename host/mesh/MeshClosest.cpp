#include "host/mesh/MeshClosest.h"

#include <algorithm>

namespace host {

namespace {

// The position of the nearest point along a → b, from 0 to 1.
double nearestAlong(const Vec3& from, const Vec3& a, const Vec3& b) {
  const Vec3 edge = b - a;
  const double size = dot(edge, edge);
  return size > 0.0 ? std::clamp(dot(from - a, edge) / size, 0.0, 1.0) : 0.0;
}

TrianglePoint closestOnEdges(const Vec3& from, const Vec3 (&corners)[3]) {
  TrianglePoint best = {{0.0, 0.0, 0.0}, {}, HUGE_VAL};
  for (int i = 0; i < 3; ++i) {
    const int k = (i + 1) % 3;
    const double t = nearestAlong(from, corners[i], corners[k]);
    const Vec3 point = t == 1.0 ? corners[k] : corners[i] + (corners[k] - corners[i]) * t;
    const Vec3 way = from - point;
    const double squared = dot(way, way);
    if (squared >= best.distance) continue;
    best = {{0.0, 0.0, 0.0}, point, squared};
    best.weights[i] = 1.0 - t;
    best.weights[k] = t;
  }
  best.distance = std::sqrt(best.distance);
  return best;
}

}  // namespace

TrianglePoint closestOnTriangle(const Vec3& from, const Vec3& a, const Vec3& b, const Vec3& c) {
  const Vec3 ab = b - a;
  const Vec3 ac = c - a;
  const Vec3 normal = cross(ab, ac);
  const double size = dot(normal, normal);
  if (size > 0.0) {
    const Vec3 way = from - a;
    const double atB = dot(cross(way, ac), normal) / size;
    const double atC = dot(cross(ab, way), normal) / size;
    if (atB >= 0.0 && atC >= 0.0 && atB + atC <= 1.0) {
      const Vec3 point = a + ab * atB + ac * atC;
      const Vec3 rest = from - point;
      return {{1.0 - atB - atC, atB, atC}, point, std::sqrt(dot(rest, rest))};
    }
  }
  return closestOnEdges(from, {a, b, c});
}

}  // namespace host
