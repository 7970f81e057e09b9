#include <cmath>

#include "host/math/Trigonometry.h"
#include "host/mesh/MeshPrimitiveShape.h"

namespace host {

namespace {

constexpr double kPi = 3.14159265358979323846;
constexpr double kBaseUvRadius = 0.25;

struct Cone {
  double radius = 1.0;
  double height = 2.0;
  int around = 20;
  int up = 1;

  int pointOf(int ring, int step) const { return ring * around + step % around; }
  int tip() const { return up * around; }
};

void addPoints(const Cone& cone, PrimitiveShape& shape) {
  for (int ring = 0; ring < cone.up; ++ring) {
    const double share = static_cast<double>(ring) / cone.up;
    for (int i = 0; i < cone.around; ++i) {
      shape.polygons.points.push_back(
          pointOnRing(i, cone.around, cone.radius * (1.0 - share), (share - 0.5) * cone.height));
    }
  }
  shape.addPoint(0.0, 0.5 * cone.height, 0.0);
}

void addBase(const Cone& cone, PrimitiveShape& shape) {
  for (int i = 0; i < cone.around; ++i) {
    const Vec3 p = pointOnRing(i, cone.around, kBaseUvRadius, 0.0);
    shape.addUv(0.5 + p.x, kBaseUvRadius + p.z);
  }
  shape.polygons.counts.push_back(cone.around);
  for (int i = 0; i < cone.around; ++i) {
    const int step = (cone.around - i) % cone.around;
    shape.polygons.connects.push_back(step);
    shape.uvIds.push_back(step);
  }
}

void addSides(const Cone& cone, PrimitiveShape& shape) {
  const int firstUv = static_cast<int>(shape.uvs.size());
  const int stride = cone.around + 1;
  for (int ring = 0; ring < cone.up; ++ring) {
    const double v = 0.5 + 0.5 * ring / cone.up;
    const double half = 0.25 * (1.0 - static_cast<double>(ring) / cone.up);
    for (int i = 0; i <= cone.around; ++i)
      shape.addUv(0.5 - half + 2.0 * half * i / cone.around, v);
  }
  const int tipUv = shape.addUv(0.5, 1.0);
  for (int ring = 0; ring < cone.up; ++ring) {
    for (int i = 0; i < cone.around; ++i) {
      const int uv = firstUv + ring * stride + i;
      const std::pair<int, int> left = {cone.pointOf(ring, i), uv};
      const std::pair<int, int> right = {cone.pointOf(ring, i + 1), uv + 1};
      if (ring + 1 == cone.up) {
        shape.addFace({left, right, {cone.tip(), tipUv}});
      } else {
        shape.addFace({left,
                       right,
                       {cone.pointOf(ring + 1, i + 1), uv + stride + 1},
                       {cone.pointOf(ring + 1, i), uv + stride}});
      }
    }
  }
}

void addEdges(const Cone& cone, bool sidesAreHard, PrimitiveShape& shape) {
  for (int ring = 0; ring < cone.up; ++ring)
    for (int i = 0; i < cone.around; ++i)
      shape.edges.push_back({cone.pointOf(ring, i), cone.pointOf(ring, i + 1), ring == 0 ? 0 : 1});
  for (int ring = 0; ring < cone.up; ++ring) {
    for (int i = 0; i < cone.around; ++i) {
      shape.edges.push_back({cone.pointOf(ring, i),
                             ring + 1 == cone.up ? cone.tip() : cone.pointOf(ring + 1, i),
                             sidesAreHard ? 0 : 1});
    }
  }
}

std::string make(const PrimitiveParameters& get, const Cone& cone, bool sidesAreHard,
                 PrimitiveShape& shape) {
  if (get.size("sc", "subdivisionsCaps", 0.0) != 0.0 || get.size("rcp", "roundCap", 0.0) != 0.0)
    return "subdivisions of its cap are not evaluated";
  std::string problem = checkPointCount(static_cast<double>(cone.around) * cone.up);
  if (!problem.empty()) return problem;
  shape.height = cone.height;
  addPoints(cone, shape);
  addBase(cone, shape);
  addSides(cone, shape);
  addEdges(cone, sidesAreHard, shape);
  return {};
}

}  // namespace

std::string makeCone(const PrimitiveParameters& get, PrimitiveShape& shape) {
  Cone cone;
  cone.radius = get.size("r", "radius", 1.0);
  cone.height = get.size("h", "height", 2.0);
  cone.around = get.subdivisions("sa", "subdivisionsAxis", 20, 3);
  cone.up = get.subdivisions("sh", "subdivisionsHeight", 1, 1);
  return make(get, cone, false, shape);
}

// Its edges are all as long as its sides.
std::string makePyramid(const PrimitiveParameters& get, PrimitiveShape& shape) {
  const double side = get.size("w", "sideLength", 1.0);
  Cone cone;
  cone.around = get.subdivisions("ns", "numberOfSides", 4, 3);
  cone.around = cone.around > 5 ? 5 : cone.around;
  cone.up = get.subdivisions("sh", "subdivisionsHeight", 1, 1);
  cone.radius = side / (2.0 * sine(kPi / cone.around));
  cone.height = std::sqrt(side * side - cone.radius * cone.radius);
  return make(get, cone, true, shape);
}

std::string makeTorus(const PrimitiveParameters& get, PrimitiveShape& shape) {
  const double radius = get.size("r", "radius", 1.0);
  const double section = get.size("sr", "sectionRadius", 0.5);
  const double twist = get.size("tw", "twist", 0.0) * kPi / 180.0;
  const int around = get.subdivisions("sa", "subdivisionsAxis", 20, 3);
  const int rings = get.subdivisions("sh", "subdivisionsHeight", 20, 3);
  std::string problem = checkPointCount(static_cast<double>(around) * rings);
  if (!problem.empty()) return problem;
  for (int ring = 0; ring <= rings; ++ring) {
    const double angle = twist + 2.0 * kPi * ring / rings;
    for (int i = 0; i <= around; ++i) {
      if (ring < rings && i < around) {
        shape.polygons.points.push_back(
            pointOnRing(i, around, radius - section * cosine(angle), section * sine(angle)));
      }
      shape.addUv(static_cast<double>(i) / around, 1.0 - static_cast<double>(ring) / rings);
    }
  }
  const auto point = [=](int ring, int i) { return ring % rings * around + i % around; };
  const auto corner = [=](int ring, int i) {
    return std::pair<int, int>(point(ring, i), ring * (around + 1) + i);
  };
  for (int ring = 0; ring < rings; ++ring) {
    for (int i = 0; i < around; ++i) {
      shape.edges.push_back({point(ring, i), point(ring, i + 1), 1});
      shape.addFace(
          {corner(ring, i + 1), corner(ring, i), corner(ring + 1, i), corner(ring + 1, i + 1)});
    }
  }
  for (int ring = 0; ring < rings; ++ring)
    for (int i = 0; i < around; ++i) shape.edges.push_back({point(ring, i), point(ring + 1, i), 1});
  return {};
}

}  // namespace host
