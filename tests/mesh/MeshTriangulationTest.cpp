#include "host/mesh/MeshTriangulation.h"

#include <cmath>
#include <random>

#include "tests/mesh/MeshFixtures.h"

namespace host {
namespace {

constexpr double kPi = 3.14159265358979323846;

using Loop = std::vector<Vec3>;

double areaOf(const Loop& loop) {
  double twice = 0.0;
  for (std::size_t i = 0; i < loop.size(); ++i) {
    const Vec3& a = loop[i];
    const Vec3& b = loop[(i + 1) % loop.size()];
    twice += a.x * b.y - b.x * a.y;
  }
  return 0.5 * twice;
}

Loop reversed(Loop loop) {
  return Loop(loop.rbegin(), loop.rend());
}

Loop square(double x, double y, double size) {
  return {{x, y, 0}, {x + size, y, 0}, {x + size, y + size, 0}, {x, y + size, 0}};
}

// A comb with teeth of uneven length, pointing up.
Loop comb(int teeth) {
  Loop loop = {{0, 0, 0}, {2.0 * teeth, 0, 0}};
  for (int i = teeth - 1; i >= 0; --i) {
    loop.push_back({2.0 * i + 1.5, 3.0 + i % 3, 0});
    loop.push_back({2.0 * i + 0.5, 1, 0});
  }
  return loop;
}

// Two turns of a band of width 0.4.
Loop spiral(int steps) {
  Loop loop;
  for (int side = 0; side < 2; ++side) {
    for (int k = 0; k <= steps; ++k) {
      const int i = side == 0 ? k : steps - k;
      const double angle = 4.0 * kPi * i / steps;
      const double radius = 1.0 + angle / (2.0 * kPi) + (side == 0 ? 0.4 : 0.0);
      loop.push_back({radius * std::cos(angle), radius * std::sin(angle), 0});
    }
  }
  return loop;
}

Loop star(int corners, std::mt19937& random) {
  std::uniform_real_distribution<double> radius(0.2, 3.0);
  Loop loop;
  for (int i = 0; i < corners; ++i) {
    const double r = radius(random);
    const double angle = 2.0 * kPi * i / corners;
    loop.push_back({r * std::cos(angle), r * std::sin(angle), 0});
  }
  return loop;
}

Loop subdividedSquare() {
  const Loop corners = square(0, 0, 1);
  Loop loop;
  for (std::size_t i = 0; i < 32; ++i) {
    const double part = static_cast<double>(i % 8) / 8.0;
    loop.push_back(corners[i / 8] * (1.0 - part) + corners[(i / 8 + 1) % 4] * part);
  }
  return loop;
}

std::vector<std::vector<Loop>> polygons() {
  std::mt19937 random(7);
  std::vector<std::vector<Loop>> all = {
      {square(0, 0, 1)},
      {{{0, 0, 0}, {4, 1, 0}, {0, 4, 0}, {1, 1, 0}}},  // an arrow: only one diagonal is inside
      {comb(40)},
      {spiral(60)},
      {subdividedSquare()},
      {square(0, 0, 10), reversed(square(4, 4, 2))},
      {square(0, 0, 10), square(4, 4, 2)},  // a hole that turns like the face
      {square(0, 0, 10), reversed(square(5, 5, 4)), {{5, 1, 0}, {1, 5, 0}, {1, 1, 0}}},
  };
  std::vector<Loop> grille = {square(0, 0, 21)};
  for (int y = 0; y < 10; ++y)
    for (int x = 0; x < 10; ++x) grille.push_back(reversed(square(2 * x + 1, 2 * y + 1, 1)));
  all.push_back(grille);
  for (int corners = 5; corners < 60; ++corners) all.push_back({star(corners, random)});
  return all;
}

// Triangles that all turn like the face and add up to its area, as many as its corners and holes
// ask for, cover it without overlap.
void expectCovers(const MeshData& mesh, const std::vector<Loop>& loops, const Vec3& normal) {
  double area = std::fabs(areaOf(loops[0]));
  std::size_t corners = loops[0].size();
  for (std::size_t i = 1; i < loops.size(); ++i) {
    area -= std::fabs(areaOf(loops[i]));
    corners += loops[i].size();
  }
  const MeshTriangles& triangles = mesh.triangles();
  EXPECT_EQ(triangles.list.size(), corners - 2 + 2 * (loops.size() - 1));
  double covered = 0.0;
  for (const MeshTriangle& t : triangles.list) {
    const Vec3 a = cornerPoint(mesh, t.corners[0]);
    const Vec3 twice =
        cross(cornerPoint(mesh, t.corners[1]) - a, cornerPoint(mesh, t.corners[2]) - a);
    EXPECT_GT(dot(twice, normal), -1e-7 * area);
    covered += 0.5 * dot(twice, normal);
  }
  EXPECT_NEAR(covered, area, 1e-6 * area);
}

// In the plane of x and y, and in a tilted one far from the origin, each seen from either side.
TEST(MeshTriangulation, CoversConcavePolygonsAndHolesInAnyPlane) {
  const Vec3 right = normalized({1, 2, -3});
  const Vec3 normal = normalized(cross(right, {5, 1, 1}));
  const struct {
    Vec3 right, up, normal, origin;
  } planes[] = {{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}, {0, 0, 0}},
                {right, cross(normal, right), normal, {1e5, -2e5, 3e5}}};
  int number = 0;
  for (const std::vector<Loop>& loops : polygons()) {
    SCOPED_TRACE(number++);
    for (const auto& plane : planes) {
      for (const bool turned : {false, true}) {
        std::vector<Loop> placed;
        for (const Loop& loop : loops) {
          Loop points;
          for (const Vec3& p : loop)
            points.push_back(plane.origin + plane.right * p.x + plane.up * p.y);
          placed.push_back(turned ? reversed(points) : points);
        }
        expectCovers(faceWithHoles(placed), loops, plane.normal * (turned ? -1.0 : 1.0));
      }
    }
  }
}

TEST(MeshTriangulation, ConvexFacesAreFans) {
  const MeshData mesh =
      meshOf({{0, 0, 0}, {2, 0, 0}, {3, 1, 0}, {2, 2, 0}, {0, 2, 0}}, {{0, 1, 2, 3, 4}});
  const MeshTriangles& t = mesh.triangles();
  ASSERT_EQ(t.list.size(), 3u);
  for (int i = 0; i < 3; ++i) {
    const auto& corners = t.list[i].corners;
    EXPECT_TRUE(corners[0] == 0 && corners[1] == i + 1 && corners[2] == i + 2) << i;
  }
}

// Faces that make no sense give as many triangles as any other, soon.
TEST(MeshTriangulation, HostileFacesEndSoon) {
  std::mt19937 random(3);
  std::uniform_real_distribution<double> anywhere(-1.0, 1.0);
  const double nan = std::nan("");
  Loop tangle;
  for (int i = 0; i < 100'000; ++i) tangle.push_back({anywhere(random), anywhere(random), 0});
  std::vector<Loop> sieve = {square(0, 0, 1)};
  for (int i = 0; i < 30'000; ++i) sieve.push_back(square(anywhere(random), anywhere(random), 0.1));
  Loop line;
  for (int i = 0; i < 300'000; ++i) line.push_back({static_cast<double>(i), i == 7 ? 1.0 : 0.0, 0});
  line.push_back({9, -5, 0});
  line.push_back({5, -1, 0});
  const std::vector<Loop> faces[] = {
      {tangle},
      {comb(50'000)},
      sieve,
      {line},
      {{{0, 0, 0}, {nan, 1, 0}, {1, 1, 0}, {0, 1, nan}, {2, 2, 2}}},
      {Loop(6, Vec3{1, 1, 1}), Loop(3, Vec3{1, 1, 1})},
  };
  for (const std::vector<Loop>& face : faces) {
    std::size_t corners = 0;
    for (const Loop& loop : face) corners += loop.size();
    EXPECT_EQ(faceWithHoles(face).triangles().list.size(), corners - 2 + 2 * (face.size() - 1));
  }
}

}  // namespace
}  // namespace host
