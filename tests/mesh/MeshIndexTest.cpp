#include "host/mesh/MeshIndex.h"

#include <cmath>
#include <ostream>
#include <random>

#include "host/mesh/MeshUvAtPoint.h"
#include "tests/mesh/MeshFixtures.h"

namespace host {
namespace {

Vec3 mapped(const Vec3& p, const MMatrix& m) {
  const double in[4] = {p.x, p.y, p.z, 1.0};
  double out[3] = {};
  for (unsigned c = 0; c < 3; ++c)
    for (unsigned r = 0; r < 4; ++r) out[c] += in[r] * m(r, c);
  return {out[0], out[1], out[2]};
}

double distanceToSegment(const Vec3& p, const Vec3& a, const Vec3& b) {
  const double size = dot(b - a, b - a);
  const double t = size > 0.0 ? std::fmin(1.0, std::fmax(0.0, dot(p - a, b - a) / size)) : 0.0;
  return length(a + (b - a) * t - p);
}

// By the sides of the triangle that the foot of the perpendicular is on.
double distanceToTriangle(const Vec3& p, const Vec3 (&t)[3]) {
  const Vec3 normal = normalized(cross(t[1] - t[0], t[2] - t[0]));
  bool inside = !(normal == Vec3());
  double nearest = HUGE_VAL;
  for (int i = 0; i < 3; ++i) {
    const Vec3& a = t[i];
    const Vec3& b = t[(i + 1) % 3];
    inside = inside && dot(cross(b - a, p - a), normal) >= 0.0;
    nearest = std::fmin(nearest, distanceToSegment(p, a, b));
  }
  return inside ? std::fabs(dot(p - t[0], normal)) : nearest;
}

double bruteForce(const MeshData& mesh, const MMatrix& matrix, const Vec3& p) {
  double nearest = HUGE_VAL;
  for (const MeshTriangle& triangle : mesh.triangles().list) {
    Vec3 t[3];
    for (int i = 0; i < 3; ++i) t[i] = mapped(cornerPoint(mesh, triangle.corners[i]), matrix);
    nearest = std::fmin(nearest, distanceToTriangle(p, t));
  }
  return nearest;
}

MeshData soup(std::mt19937& random, int triangles, double size) {
  std::uniform_real_distribution<double> place(-1.0, 1.0);
  std::vector<Vec3> points;
  Polygons polygons;
  for (int i = 0; i < triangles; ++i) {
    const Vec3 at = {place(random), place(random), place(random)};
    for (int k = 0; k < 3; ++k)
      points.push_back(at + Vec3{place(random), place(random), place(random)} * size);
    if (i % 17 == 0) points.back() = points[points.size() - 2];  // some are flat
    polygons.push_back({3 * i, 3 * i + 1, 3 * i + 2});
  }
  return meshOf(points, polygons);
}

std::vector<MMatrix> matrices() {
  const double skewed[4][4] = {{30, 1, 0, 0}, {0, 0.02, 3, 0}, {5, 0, -1, 0}, {1e6, -2e6, 5e5, 1}};
  const double flattened[4][4] = {{1, 0, 0, 0}, {0, 0, 0, 0}, {0, 0, 2, 0}, {0, 7, 0, 1}};
  const double tiny[4][4] = {{1e-9, 0, 0, 0}, {0, 1e-9, 0, 0}, {0, 0, 1e-9, 0}, {0, 0, 0, 1}};
  return {MMatrix(), MMatrix(skewed), MMatrix(flattened), MMatrix(tiny)};
}

// Each tree that this build has gives the same answers.
struct NamedTree {
  const char* name;
  SurfaceIndex::MakeTree make;
};

std::ostream& operator<<(std::ostream& out, const NamedTree& tree) {
  return out << tree.name;
}

class MeshIndex : public testing::TestWithParam<NamedTree> {
 protected:
  static SurfaceIndex indexOf(const MeshData& mesh, const MMatrix& matrix = MMatrix()) {
    return SurfaceIndex(mesh, matrix, GetParam().make);
  }
};

constexpr NamedTree kTrees[] = {
    {"boxes", makeBoxTree},
#ifdef MORVANE_HOST_EMBREE
    {"Embree", makeEmbreeTree},
#endif
};
INSTANTIATE_TEST_SUITE_P(With, MeshIndex, testing::ValuesIn(kTrees));

TEST_P(MeshIndex, FindsTheNearestPointThatBruteForceFinds) {
  std::mt19937 random(11);
  std::uniform_real_distribution<double> place(-1.0, 1.0);
  for (const double size : {0.02, 0.5}) {
    const MeshData mesh = soup(random, 3000, size);
    for (const MMatrix& matrix : matrices()) {
      const SurfaceIndex index = indexOf(mesh, matrix);
      for (const double reach : {0.5, 3.0, 1e3, 1e7}) {
        for (int i = 0; i < 25; ++i) {
          const Vec3 from =
              mapped(Vec3{place(random), place(random), place(random)} * reach, matrix);
          const auto found = index.closest(from);
          ASSERT_TRUE(found.has_value());
          const double nearest = bruteForce(mesh, matrix, from);
          // What double precision leaves at these coordinates.
          const double coordinates =
              1e-14 * (length(from) + std::fabs(matrix(3, 0)) + std::fabs(matrix(3, 1)));
          EXPECT_NEAR(found->distance, nearest, 1e-9 * nearest + coordinates);
          EXPECT_NEAR(length(found->point - from), found->distance, 1e-9 * nearest + coordinates);
          Vec3 corners[3];
          for (int k = 0; k < 3; ++k)
            corners[k] = mapped(cornerPoint(mesh, 3 * found->face + k), matrix);
          EXPECT_NEAR(distanceToTriangle(found->point, corners), 0.0, 1e-9 * nearest + coordinates);
        }
      }
    }
  }
}

Vec3 pointOn(const MeshData& mesh, const MeshTriangle& t, std::mt19937& random) {
  std::uniform_real_distribution<double> part(0.0, 1.0);
  const double b = part(random);
  const double c = part(random) * (1.0 - b);
  return cornerPoint(mesh, t.corners[0]) * (1.0 - b - c) + cornerPoint(mesh, t.corners[1]) * b +
         cornerPoint(mesh, t.corners[2]) * c;
}

// Next to the surface, single precision cannot tell the distances apart.
TEST_P(MeshIndex, PointsNextToTheSurfaceAreNotTakenElsewhere) {
  std::mt19937 random(23);
  const MeshData mesh = soup(random, 20'000, 0.3);
  const SurfaceIndex index = indexOf(mesh);
  for (const MeshTriangle& t : mesh.triangles().list) {
    const Vec3 on = pointOn(mesh, t, random);
    const auto found = index.closest(on);
    ASSERT_TRUE(found.has_value());
    EXPECT_LT(found->distance, 1e-13);
  }
}

TEST_P(MeshIndex, TiesGoToTheEarlierFace) {
  // Faces at z = 1, z = -1 and z = 1 again, further along x; the middle between them is equally far
  // from the first two.
  const std::vector<Vec3> points = {{0, 0, 1},  {1, 0, 1},  {1, 1, 1},  {0, 1, 1},
                                    {0, 0, -1}, {1, 0, -1}, {1, 1, -1}, {0, 1, -1}};
  const Polygons up = {{0, 1, 2, 3}, {4, 5, 6, 7}};
  const Polygons down = {{4, 5, 6, 7}, {0, 1, 2, 3}};
  const MeshData upFirst = meshOf(points, up);
  const MeshData downFirst = meshOf(points, down);
  EXPECT_EQ(indexOf(upFirst).closest({0.3, 0.4, 0})->point.z, 1.0);
  EXPECT_EQ(indexOf(downFirst).closest({0.3, 0.4, 0})->point.z, -1.0);

  // Vertices and edges of a grid, from above: the lowest of the faces that meet there.
  const MeshData plane = primitive("polyPlane", {{"w", 0.7}, {"h", 0.7}});
  const SurfaceIndex index = indexOf(plane);
  for (int row = 0; row <= 10; ++row) {
    for (int column = 0; column <= 10; ++column) {
      const Vec3 vertex = plane.points()[static_cast<std::size_t>(row * 11 + column)];
      const int expected = std::max(row - 1, 0) * 10 + std::max(column - 1, 0);
      EXPECT_EQ(index.closest(vertex + Vec3{0, 0.01, 0})->face, expected);
      if (column == 10) continue;
      const Vec3 middle =
          vertex * 0.5 + plane.points()[static_cast<std::size_t>(row * 11 + column + 1)] * 0.5;
      EXPECT_EQ(index.closest(middle)->face, std::max(row - 1, 0) * 10 + column);
    }
  }
}

TEST_P(MeshIndex, LeavesOutWhatIsNoNumber) {
  const double nan = std::nan("");
  const MeshData mesh =
      meshOf({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {nan, 0, 0}, {HUGE_VAL, 0, 0}, {9, 9, 9}},
             {{3, 1, 2}, {4, 1, 2}, {0, 1, 2}});
  const SurfaceIndex index = indexOf(mesh);
  const auto found = index.closest({0.25, 0.25, 2});
  ASSERT_TRUE(found.has_value());
  EXPECT_EQ(found->face, 2);
  EXPECT_EQ(found->distance, 2.0);
  EXPECT_FALSE(index.closest({nan, 0, 0}).has_value());
  const MeshData empty;
  EXPECT_FALSE(indexOf(empty).closest({0, 0, 0}).has_value());
}

// --- UVs at a point

// Each expectation is the nearest point of the face, whose UVs are its x and y before the matrix.
TEST(MeshUvAtPoint, IsThatOfTheNearestPoint) {
  const std::vector<Vec3> square = {{0, 0, 0}, {10, 0, 0}, {10, 10, 0}, {0, 10, 0}};
  MeshData holed = faceWithHoles({square, {{4, 4, 0}, {4, 6, 0}, {6, 6, 0}, {6, 4, 0}}});
  MeshData angle =
      faceWithHoles({{{0, 0, 0}, {9, 0, 0}, {9, 3, 0}, {3, 3, 0}, {3, 9, 0}, {0, 9, 0}}});
  for (MeshData* mesh : {&holed, &angle}) {
    for (const Vec3& p : mesh->points())
      mesh->uvSet(0)->uvs.push_back({static_cast<float>(p.x), static_cast<float>(p.y)});
    mesh->uvSet(0)->ids = mesh->cornerVertices();
  }
  const double twice[4][4] = {{2, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {100, 0, 0, 1}};
  const double tilted[4][4] = {{0, 1, 0, 0}, {0, 0, 1, 0}, {1, 0, 0, 0}, {0, 0, 0, 1}};
  struct Case {
    MeshData& mesh;
    Vec3 from;
    float u, v;
    MMatrix matrix;
  };
  const Case cases[] = {
      {holed, {12, 5, 3}, 10, 5, MMatrix()},
      {holed, {-1, -1, 0}, 0, 0, MMatrix()},
      {holed, {1.5, 8.25, -2}, 1.5f, 8.25f, MMatrix()},
      {holed, {7, 2.5, 8.75}, 2.5f, 8.75f, MMatrix(tilted)},
      {holed, {5.5, 5.25, 1}, 6, 5.25f, MMatrix()},   // over the hole
      {holed, {110, 5.25, 1}, 5, 6, MMatrix(twice)},  // there the hole is wider than deep
      {angle, {2, 8, 1}, 2, 8, MMatrix()},
      {angle, {8, 2, 1}, 8, 2, MMatrix()},
      {angle, {4, 7, 1}, 3, 7, MMatrix()},  // beside both arms
  };
  for (const Case& c : cases) {
    const auto uv = uvAtPoint(c.mesh, 0, *c.mesh.uvSet(0), c.matrix, c.from);
    ASSERT_TRUE(uv.has_value());
    EXPECT_NEAR(uv->u, c.u, 1e-5);
    EXPECT_NEAR(uv->v, c.v, 1e-5);
  }
  holed.uvSet(0)->ids.resize(3);
  EXPECT_FALSE(uvAtPoint(holed, 0, *holed.uvSet(0), MMatrix(), {0.1, 9.9, 0}).has_value());
}

}  // namespace
}  // namespace host
