#include <cmath>

#include "host/math/Trigonometry.h"
#include "host/mesh/MeshPrimitiveShape.h"

namespace host {

namespace {

constexpr double kPi = 3.14159265358979323846;
constexpr double kCapUvRadius = 0.15625;

int addRing(int steps, double radius, double y, PrimitiveShape& shape) {
  const int first = static_cast<int>(shape.polygons.points.size());
  for (int i = 0; i < steps; ++i) shape.polygons.points.push_back(pointOnRing(i, steps, radius, y));
  return first;
}

// Quads between a ring and the next one above it; each ring has a row of UVs with one more in it.
void addBand(int lower, int upper, int steps, int lowerUv, int upperUv, PrimitiveShape& shape) {
  for (int i = 0; i < steps; ++i) {
    const int next = (i + 1) % steps;
    shape.addFace({{lower + i, lowerUv + i},
                   {lower + next, lowerUv + i + 1},
                   {upper + next, upperUv + i + 1},
                   {upper + i, upperUv + i}});
  }
}

// One cap of a cylinder, from its rim inwards: rings of quads, then triangles around the centre; a
// single face without cap subdivisions.
void addCap(int rim, double radius, double y, int around, int rings, bool top,
            PrimitiveShape& shape) {
  const double centreV = top ? 1.0 - kCapUvRadius : kCapUvRadius;
  const auto addUvRing = [&](double share) {
    const int first = static_cast<int>(shape.uvs.size());
    for (int i = 0; i < around; ++i) {
      const Vec3 p = pointOnRing(i, around, kCapUvRadius * share, 0.0);
      shape.addUv(0.5 + p.x, centreV + p.z);
    }
    return first;
  };
  int outer = rim;
  int outerUv = addUvRing(1.0);
  if (rings == 0) {
    shape.polygons.counts.push_back(around);
    for (int i = 0; i < around; ++i) {
      const int k = top ? i : around - 1 - i;
      shape.polygons.connects.push_back(rim + k);
      shape.uvIds.push_back(outerUv + k);
    }
    return;
  }
  for (int ring = 1; ring < rings; ++ring) {
    const double share = 1.0 - static_cast<double>(ring) / rings;
    const int inner = addRing(around, radius * share, y, shape);
    const int innerUv = addUvRing(share);
    for (int i = 0; i < around; ++i) {
      const int a = top ? i : (i + 1) % around;
      const int b = top ? (i + 1) % around : i;
      shape.addFace({{outer + a, outerUv + a},
                     {outer + b, outerUv + b},
                     {inner + b, innerUv + b},
                     {inner + a, innerUv + a}});
    }
    outer = inner;
    outerUv = innerUv;
  }
  const int centre = shape.addPoint(0.0, y, 0.0);
  const int centreUv = shape.addUv(0.5, centreV);
  for (int i = 0; i < around; ++i) {
    const int a = top ? i : (i + 1) % around;
    const int b = top ? (i + 1) % around : i;
    shape.addFace({{outer + a, outerUv + a}, {outer + b, outerUv + b}, {centre, centreUv}});
  }
}

}  // namespace

Vec3 pointOnRing(int step, int steps, double radius, double y) {
  const double angle = (step + 1) * 2.0 * kPi / steps;
  return {radius * cosine(angle), y, -radius * sine(angle)};
}

std::string makeSphere(const PrimitiveParameters& get, PrimitiveShape& shape) {
  const double radius = get.size("r", "radius", 1.0);
  const int around = get.subdivisions("sa", "subdivisionsAxis", 20, 3);
  const int up = get.subdivisions("sh", "subdivisionsHeight", 20, 2);
  std::string problem = checkPointCount(static_cast<double>(around) * up);
  if (!problem.empty()) return problem;
  for (int ring = 1; ring < up; ++ring) {
    const double angle = kPi * ring / up;
    addRing(around, radius * sine(angle), -radius * cosine(angle), shape);
    for (int i = 0; i <= around; ++i)
      shape.addUv(static_cast<double>(i) / around, static_cast<double>(ring) / up);
  }
  for (int ring = 0; ring + 2 < up; ++ring) {
    addBand(ring * around, (ring + 1) * around, around, ring * (around + 1),
            (ring + 1) * (around + 1), shape);
  }
  const int bottom = shape.addPoint(0.0, -radius, 0.0);
  const int top = shape.addPoint(0.0, radius, 0.0);
  const int lastRing = (up - 2) * around;
  const int lastRow = (up - 2) * (around + 1);
  for (int i = 0; i < around; ++i) {
    const int uv = shape.addUv((i + 0.5) / around, 0.0);
    shape.addFace({{(i + 1) % around, i + 1}, {i, i}, {bottom, uv}});
  }
  for (int i = 0; i < around; ++i) {
    const int uv = shape.addUv((i + 0.5) / around, 1.0);
    shape.addFace(
        {{lastRing + i, lastRow + i}, {lastRing + (i + 1) % around, lastRow + i + 1}, {top, uv}});
  }
  return {};
}

std::string makeCylinder(const PrimitiveParameters& get, PrimitiveShape& shape) {
  const double radius = get.size("r", "radius", 1.0);
  const double height = get.size("h", "height", 2.0);
  const int around = get.subdivisions("sa", "subdivisionsAxis", 20, 3);
  const int up = get.subdivisions("sh", "subdivisionsHeight", 1, 1);
  const int rings = get.subdivisions("sc", "subdivisionsCaps", 0, 0);
  std::string problem = checkPointCount(around * (up + 1.0 + 2.0 * rings));
  if (!problem.empty()) return problem;
  for (int ring = 0; ring <= up; ++ring) {
    const double share = static_cast<double>(ring) / up;
    addRing(around, radius, (share - 0.5) * height, shape);
    for (int i = 0; i <= around; ++i)
      shape.addUv(0.375 + 0.25 * i / around, 0.3125 + 0.375 * share);
  }
  for (int ring = 0; ring < up; ++ring) {
    addBand(ring * around, (ring + 1) * around, around, ring * (around + 1),
            (ring + 1) * (around + 1), shape);
  }
  shape.height = height;
  const int topRim = up * around;
  addCap(0, radius, -0.5 * height, around, rings, false, shape);
  addCap(topRim, radius, 0.5 * height, around, rings, true, shape);
  shape.isHard = [=](int a, int b) {
    const auto onRim = [=](int p, int rim) { return p >= rim && p < rim + around; };
    return (onRim(a, 0) && onRim(b, 0)) || (onRim(a, topRim) && onRim(b, topRim));
  };
  return {};
}

}  // namespace host
