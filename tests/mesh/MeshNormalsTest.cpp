#include <cmath>

#include "tests/mesh/MeshFixtures.h"

namespace host {
namespace {

void expectNormal(const MeshNormal& n, const Vec3& expected, const std::string& where) {
  EXPECT_NEAR(n.x, expected.x, 1e-6) << where;
  EXPECT_NEAR(n.y, expected.y, 1e-6) << where;
  EXPECT_NEAR(n.z, expected.z, 1e-6) << where;
}

const MeshNormal& normalAt(const MeshData& mesh, int corner) {
  return mesh.normals()
      .list[static_cast<std::size_t>(mesh.normals().ids[static_cast<std::size_t>(corner)])];
}

const std::vector<Vec3> kCubePoints = {{-1, -1, 1}, {1, -1, 1}, {-1, 1, 1},   {1, 1, 1},
                                       {-1, 1, -1}, {1, 1, -1}, {-1, -1, -1}, {1, -1, -1}};
const Polygons kCubeFaces = {{0, 1, 3, 2}, {2, 3, 5, 4}, {4, 5, 7, 6},
                             {6, 7, 1, 0}, {1, 7, 5, 3}, {6, 0, 2, 4}};
const Vec3 kCubeNormals[] = {{0, 0, 1}, {0, 1, 0}, {0, 0, -1}, {0, -1, 0}, {1, 0, 0}, {-1, 0, 0}};

TEST(MeshNormals, HardCubeHasThreeAtEachVertexAndSmoothCubeOne) {
  const MeshData hard = meshOf(kCubePoints, kCubeFaces, [](int, int) { return true; });
  EXPECT_EQ(hard.normals().list.size(), 24u);
  for (int corner = 0; corner < 24; ++corner) {
    expectNormal(normalAt(hard, corner), kCubeNormals[corner / 4],
                 "corner " + std::to_string(corner));
  }
  const MeshData smooth = meshOf(kCubePoints, kCubeFaces);
  ASSERT_EQ(smooth.normals().list.size(), 8u);
  for (std::size_t v = 0; v < 8; ++v) {
    expectNormal(smooth.normals().list[v], normalized(kCubePoints[v]),
                 "vertex " + std::to_string(v));
  }
}

// Neither how a face is divided nor how large it is weighs: only its angle does.
TEST(MeshNormals, FacesWeighByTheirAngle) {
  // The faces x = 0, y = 0 and z = 0 at the origin, of uneven sizes; one in three slices, so that
  // counting faces would weigh it three times.
  const MeshData mesh = meshOf({{0, 0, 0}, {9, 0, 0}, {0, 2, 0}, {0, 0, 1}, {4, 1, 0}, {1, 3, 0}},
                               {{0, 1, 4}, {0, 4, 5}, {0, 5, 2}, {0, 2, 3}, {0, 3, 1}});
  const double third = 1.0 / std::sqrt(3.0);
  expectNormal(normalAt(mesh, 0), {third, third, third}, "corner");

  // 90° of the floor and 45° of a wall.
  const MeshData uneven =
      meshOf({{0, 0, 0}, {1, 0, 0}, {0, 0, -1}, {1, 1, 0}}, {{0, 1, 2}, {0, 3, 1}});
  expectNormal(normalAt(uneven, 0), normalized({0, 90, -45}), "uneven");
}

TEST(MeshNormals, OnlySmoothEdgesJoinFaces) {
  // A strip of four roof sides around the z axis; the ridge between 1 and 2 is hard. All share
  // vertex 0.
  const MeshData mesh = meshOf({{0, 0, 0}, {1, 0, -1}, {0, 1, -1}, {-1, 0, -1}, {0, -1, -1}},
                               {{0, 1, 2}, {0, 2, 3}, {0, 3, 4}, {0, 4, 1}},
                               [](int a, int b) { return (a == 0 || b == 0) && (a + b) % 2 == 1; });
  // Hard at 0-1 and 0-3: the faces 0, 1 and the faces 2, 3 are joined.
  expectNormal(normalAt(mesh, 0), normalized({0, 1, 1}), "upper");
  expectNormal(normalAt(mesh, 3), normalized({0, 1, 1}), "upper");
  expectNormal(normalAt(mesh, 6), normalized({0, -1, 1}), "lower");
  EXPECT_EQ(mesh.normals().ids[0], mesh.normals().ids[3]);
  EXPECT_EQ(mesh.normals().ids[6], mesh.normals().ids[9]);
  EXPECT_NE(mesh.normals().ids[0], mesh.normals().ids[6]);
}

TEST(MeshNormals, NormalsOfOneVertexThatAreEqualAreListedOnce) {
  // Coplanar faces, hard between them; and an isolated vertex, which has none.
  const MeshData mesh = meshOf({{9, 9, 9}, {0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}},
                               {{1, 2, 3}, {1, 3, 4}}, [](int, int) { return true; });
  EXPECT_EQ(mesh.normals().list.size(), 4u);
  EXPECT_EQ(mesh.normals().ids, (std::vector<int>{0, 1, 2, 0, 2, 3}));
}

TEST(MeshNormals, LockedCornersKeepTheirBitsAndOthersAreComputed) {
  MeshData mesh = meshOf(kCubePoints, kCubeFaces);
  std::vector<float> given(3 * 24, kUnlockedNormal);
  const float locked[3] = {-0.0f, 0.5f, 3.0f};
  std::copy(locked, locked + 3, given.begin() + 3);
  ASSERT_EQ(mesh.setNormals(0, given.data(), 20), "");  // the last corners have no entry at all
  EXPECT_TRUE(std::signbit(normalAt(mesh, 1).x));
  EXPECT_EQ(normalAt(mesh, 1).y, 0.5f);
  EXPECT_EQ(normalAt(mesh, 1).z, 3.0f);
  expectNormal(normalAt(mesh, 14), normalized(kCubePoints[1]), "another corner of the vertex");
  expectNormal(normalAt(mesh, 23), normalized(kCubePoints[4]), "without entry");
  EXPECT_EQ(mesh.normals().list.size(), 9u);

  mesh.setCornerNormal(23, {1, 0, 0});
  EXPECT_EQ(normalAt(mesh, 23).x, 1.0f);
  EXPECT_EQ(normalAt(mesh, 1).z, 3.0f);
  EXPECT_EQ(mesh.storedNormals().size(), 24u);
}

// One entry a smooth group, as the faces come to them: 0 1 3 2, then 5 4, then 7 6.
TEST(MeshNormals, ShorterListsGoByGroup) {
  MeshData mesh = meshOf(kCubePoints, kCubeFaces);
  std::vector<float> numbered;
  for (int i = 0; i < 8; ++i) numbered.insert(numbered.end(), {static_cast<float>(i), 0.0f, 0.0f});
  ASSERT_EQ(mesh.setNormals(0, numbered.data(), 8), "");
  const float expected[] = {0, 1, 3, 2, 5, 4, 7, 6};  // by vertex
  for (int corner = 0; corner < 24; ++corner)
    EXPECT_EQ(normalAt(mesh, corner).x, expected[mesh.cornerVertices()[corner]]) << corner;
  mesh.setCornerNormal(18, {9, 0, 0});  // the others keep theirs
  EXPECT_EQ(normalAt(mesh, 18).x, 9.0f);
  EXPECT_EQ(normalAt(mesh, 6).x, 4.0f);
}

TEST(MeshNormals, ConcaveAndFlattenedFaces) {
  // At the reflex corner 3 the inside of the L takes 270°, and its wall 90°.
  const MeshData mesh = meshOf(
      {{0, 0, 0}, {2, 0, 0}, {2, 1, 0}, {1, 1, 0}, {1, 2, 0}, {0, 2, 0}, {1, 1, 1}, {1, 2, 1}},
      {{0, 1, 2, 3, 4, 5}, {4, 3, 6, 7}});
  expectNormal(normalAt(mesh, 3), normalized({-90, 0, 270}), "reflex");
  const MeshData flat = meshOf({{0, 0, 0}, {1, 0, 0}, {2, 0, 0}}, {{0, 1, 2}, {0, 0, 0}});
  for (const MeshNormal& n : flat.normals().list) expectNormal(n, {0, 0, 0}, "no area");
}

// A hub with as many spokes as there are faces must not cost their square.
TEST(MeshNormals, ManyFacesAroundOneVertex) {
  constexpr int kSpokes = 300'000;
  std::vector<Vec3> points = {{0, 0, 1}};
  Polygons faces;
  for (int i = 0; i < kSpokes; ++i) {
    const double angle = i * 2.0 * 3.14159265358979323846 / kSpokes;
    points.push_back({std::cos(angle), std::sin(angle), 0});
    faces.push_back({0, 1 + i, 1 + (i + 1) % kSpokes});
  }
  const MeshData smooth = meshOf(points, faces);
  expectNormal(smooth.normals().list[0], {0, 0, 1}, "hub");
  const MeshData hard = meshOf(points, faces, [](int, int) { return true; });
  EXPECT_GT(hard.normals().list.size(), static_cast<std::size_t>(kSpokes));
}

}  // namespace
}  // namespace host
