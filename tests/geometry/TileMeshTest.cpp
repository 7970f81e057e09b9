#include "geometry/TileMesh.h"

#include <gtest/gtest.h>

#include <cstring>
#include <limits>
#include <string>

#include "geometry/ExtractionErrors.h"

namespace morvane {
namespace {

PolygonRecord polygon(const std::vector<std::int32_t>& corners) {
  PolygonRecord record;
  record.positions = record.normals = record.uvs = record.colours = corners;
  return record;
}

TEST(PackColour, TruncatesAndCarries) {
  const float nan = std::numeric_limits<float>::quiet_NaN();
  const float infinity = std::numeric_limits<float>::infinity();
  EXPECT_EQ(packColour(1.0F, 0.5F, 0.25F, 1.0F), 0xFF7F3FFFU);
  EXPECT_EQ(packColour(0.0F, 0.0F, 0.0F, 1.004F), 0x00000100U);
  EXPECT_EQ(packColour(1.004F, 0.0F, 0.0F, 0.0F), 0x00000000U);
  EXPECT_EQ(packColour(0.0F, 0.0F, 0.0F, -1.0F), 0xFFFFFF01U);
  EXPECT_EQ(packColour(nan, infinity, -infinity, 1.0F), 0x000000FFU);
  // n / 255 comes back as n for every byte.
  for (std::uint32_t n = 0; n < 256; ++n)
    EXPECT_EQ(packColour(0, 0, 0, static_cast<float>(n) / 255.0F), n);
}

TEST(BuildTileMesh, CutsPolygonsIntoFansOfCornersWithEveryAttribute) {
  MeshTables tables;
  PolygonRecord record;
  record.positions = {0, 1, 2, 3, 4};
  record.uvs = {10, 11, 12, 13, 14};
  record.normals = {20, 21, 22, 23, 24};
  record.colours = {30, 31, 32, 33, 34};
  record.materialId = 7;
  tables.polygons = {polygon({}), polygon({8, 9}), polygon({0, 1, 2}), record};
  const auto mesh = buildTileMesh(tables);
  ASSERT_EQ(mesh->triangles.size(), 4);
  for (std::int32_t k = 0; k < 3; ++k) {
    const std::int32_t b = k + 1, c = k + 2;
    const std::int32_t expected[14] = {0,      b,      c,  10,     10 + b, 10 + c, 20,
                                       20 + b, 20 + c, 30, 30 + b, 30 + c, 7,      0};
    EXPECT_EQ(std::memcmp(&mesh->triangles[1 + k], expected, sizeof expected), 0) << k;
  }
}

TEST(BuildTileMesh, RefusesIndexListsOfDifferentLength) {
  clearExtractionErrors();
  MeshTables tables;
  tables.polygons = {polygon({0, 1, 2}), polygon({0, 1, 2, 3})};
  tables.polygons[1].uvs.pop_back();
  tables.polygons[1].colours.clear();
  EXPECT_FALSE(hasExtractionError());
  EXPECT_EQ(buildTileMesh(tables), nullptr);
  EXPECT_TRUE(hasExtractionError());
  const std::string message = "face 1 index mismatch.  v 4, n 4, uv 3, c 0\n";
  EXPECT_EQ(extractionErrorText(), message);
  EXPECT_EQ(buildTileMesh(tables), nullptr);
  EXPECT_EQ(extractionErrorText(), message + message);
  clearExtractionErrors();
  EXPECT_FALSE(hasExtractionError());
  EXPECT_EQ(extractionErrorText(), "");
}

TEST(ExtractionErrors, CutsAMessageTo1023Characters) {
  clearExtractionErrors();
  addExtractionError("%s", std::string(2000, 'x').c_str());
  EXPECT_EQ(extractionErrorText(), std::string(1023, 'x'));
  clearExtractionErrors();
}

// Every array has the capacity that appending one by one with a slack of max(10, positions / 100)
// gives.
TEST(BuildTileMesh, CapacitiesAreThoseOfAppending) {
  for (const std::size_t positions : {0, 1, 11, 12, 999, 1000, 1100, 25000}) {
    const auto slack = static_cast<std::uint32_t>(positions / 100 > 10 ? positions / 100 : 10);
    MeshTables tables;
    tables.positions.resize(positions);
    tables.polygons.assign(2 * positions, polygon({0, 1, 2}));
    const auto mesh = buildTileMesh(tables);
    GrowArray<Float3> appended;
    GrowArray<TileTriangle> appendedTriangles;
    for (std::size_t i = 0; i < positions; ++i) appended.append({}, slack);
    for (std::size_t i = 0; i < 2 * positions; ++i) appendedTriangles.append({}, slack);
    EXPECT_EQ(mesh->positions.size(), appended.size());
    EXPECT_EQ(mesh->positions.capacity(), appended.capacity()) << positions;
    EXPECT_EQ(mesh->triangles.size(), appendedTriangles.size());
    EXPECT_EQ(mesh->triangles.capacity(), appendedTriangles.capacity()) << positions;
  }
}

}  // namespace
}  // namespace morvane
