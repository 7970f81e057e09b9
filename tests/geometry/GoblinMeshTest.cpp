#include "geometry/GoblinMesh.h"

#include <gtest/gtest.h>

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

}  // namespace
}  // namespace morvane
