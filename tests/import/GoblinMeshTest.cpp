#include "import/GoblinMesh.h"

#include <gtest/gtest.h>

#include <chrono>

namespace morvane {
namespace {

using Faces = std::vector<std::vector<std::int32_t>>;

GoblinRecord recordOf(const Faces& faces) {
  GoblinRecord record;
  record.faceCount = static_cast<std::int32_t>(faces.size());
  record.faces = std::make_unique<GoblinFace[]>(faces.size());
  for (std::size_t f = 0; f < faces.size(); ++f) {
    record.faces[f].cornerCount = static_cast<std::int32_t>(faces[f].size());
    record.faces[f].indices.reset(new std::int32_t[faces[f].size()]);
    std::copy(faces[f].begin(), faces[f].end(), record.faces[f].indices.get());
  }
  return record;
}

// Vertex i is at (i, 2i, 3i), with normal (0, 0, i), u = i / 1000 and v = i / 100.
std::vector<GoblinPoolVertex> poolOf(std::size_t size) {
  std::vector<GoblinPoolVertex> pool;
  for (std::size_t i = 0; i < size; ++i) {
    const auto n = static_cast<float>(i);
    pool.push_back({n, 2 * n, 3 * n, 0, 0, n, n / 1000, n / 100});
  }
  return pool;
}

TEST(BuildGoblinMesh, NumbersVerticesInOrderOfFirstUse) {
  const auto pool = poolOf(400);
  LocalIndexMap map(pool.size(), -1);
  const GoblinMesh mesh =
      buildGoblinMesh(recordOf({{300, 7, 25}, {25, 7, 0}, {}, {1, 300, 7, 0}}), pool, map);
  EXPECT_EQ(mesh.polygonCounts, (std::vector<std::int32_t>{3, 3, 0, 4}));
  EXPECT_EQ(mesh.polygonConnects, (std::vector<std::int32_t>{0, 1, 2, 2, 1, 3, 4, 0, 1, 3}));
  ASSERT_EQ(mesh.points.size(), 5U);
  EXPECT_EQ(mesh.points[0], (std::array<float, 4>{300, 600, 900, 1}));
  EXPECT_EQ(mesh.normals[2], (std::array<double, 3>{0, 0, 25}));
  EXPECT_EQ(mesh.us[2], 0.025F);
  EXPECT_EQ(mesh.vs[2], -0.25F);
  EXPECT_EQ(mesh.us.size(), 5U);
  EXPECT_EQ(mesh.vs.size(), 5U);
  EXPECT_EQ(map, LocalIndexMap(pool.size(), -1));
}

TEST(BuildGoblinMesh, GoblinsOfOnePoolShareNoVertices) {
  const auto pool = poolOf(4);
  LocalIndexMap map(pool.size(), -1);
  const GoblinMesh quad = buildGoblinMesh(recordOf({{2, 1, 0}, {3, 2, 0}}), pool, map);
  EXPECT_EQ(quad.points.size(), 4U);
  EXPECT_EQ(quad.polygonConnects, (std::vector<std::int32_t>{0, 1, 2, 3, 0, 2}));
  const GoblinMesh second = buildGoblinMesh(recordOf({{3, 2, 0}}), pool, map);
  EXPECT_EQ(second.polygonConnects, (std::vector<std::int32_t>{0, 1, 2}));
  EXPECT_EQ(buildGoblinMesh(recordOf({}), pool, map).points.size(), 0U);
}

// 100 000 goblins over a pool of 300 000 vertices: going through the pool for each would take
// minutes.
TEST(BuildGoblinMesh, CostsWhatTheGoblinUses) {
  const auto pool = poolOf(300000);
  LocalIndexMap map(pool.size(), -1);
  const auto start = std::chrono::steady_clock::now();
  for (std::int32_t base = 0; base + 2 < 300000; base += 3) {
    ASSERT_EQ(buildGoblinMesh(recordOf({{base, base + 1, base + 2}}), pool, map).points.size(), 3U);
  }
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(10));
}

}  // namespace
}  // namespace morvane
