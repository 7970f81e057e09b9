#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <map>
#include <random>

#include "geometry/TileMesh.h"

namespace morvane {
namespace {

using KeyWords = std::array<std::uint32_t, 15>;

KeyWords wordsOf(const VertexKey& key) {
  KeyWords words;
  std::memcpy(words.data(), &key, sizeof key);
  return words;
}

// A grid of quads over positions that `place` gives for each column and row; every corner has
// normal, uv and colour 0 of the tables.
template <typename Place>
MeshTables gridTables(std::int32_t side, Place place) {
  MeshTables tables;
  for (std::int32_t y = 0; y < side; ++y)
    for (std::int32_t x = 0; x < side; ++x) tables.positions.push_back(place(x, y));
  tables.normals = {{0, 1, 0}};
  tables.uvs = {{0, 0}};
  tables.colours = {0};
  for (std::int32_t y = 0; y + 1 < side; ++y) {
    for (std::int32_t x = 0; x + 1 < side; ++x) {
      const std::int32_t corner = y * side + x;
      PolygonRecord quad;
      quad.positions = {corner, corner + side, corner + side + 1, corner + 1};
      quad.normals = quad.uvs = quad.colours = {0, 0, 0, 0};
      tables.polygons.push_back(std::move(quad));
    }
  }
  return tables;
}

template <typename T>
T entryOrZero(const std::vector<T>& table, std::int32_t index) {
  return index >= 0 && index < static_cast<std::int32_t>(table.size()) ? table[index] : T{};
}

// Triangles that name any entries, some of them outside the tables, whose values repeat.
MeshTables anyTables(std::mt19937& random) {
  const auto below = [&](int count) { return static_cast<std::int32_t>(random() % count); };
  MeshTables tables;
  for (int i = 0; i < 40; ++i) {
    tables.positions.push_back({static_cast<float>(below(9)), 0, 1});
    tables.normals.push_back({0, static_cast<float>(below(2)), 0});
    tables.uvs.push_back({0, 0.5F * static_cast<float>(below(2))});
    tables.colours.push_back(below(2));
  }
  for (int i = 0; i < 3000; ++i) {
    PolygonRecord polygon;
    for (auto* list : {&polygon.positions, &polygon.normals, &polygon.uvs, &polygon.colours})
      for (int corner = 0; corner < 3; ++corner) list->push_back(below(i < 1000 ? 5 : 42) - 1);
    tables.polygons.push_back(std::move(polygon));
  }
  return tables;
}

// Welds by looking every key up in an ordered map.
void expectWeldedLikeAMap(const MeshTables& tables) {
  const auto mesh = buildTileMesh(tables);
  const WeldedMesh welded = weldTileMesh(*mesh);
  std::map<KeyWords, std::int32_t> numbers;
  ASSERT_EQ(welded.triangles.size(), static_cast<std::size_t>(mesh->triangles.size()));
  for (std::size_t i = 0; i < welded.triangles.size(); ++i) {
    for (std::size_t corner = 0; corner < 3; ++corner) {
      const TileTriangle& triangle = mesh->triangles[static_cast<std::int32_t>(i)];
      VertexKey key;
      key.position = entryOrZero(tables.positions, triangle.positions[corner]);
      key.normal = entryOrZero(tables.normals, triangle.normals[corner]);
      key.uv = entryOrZero(tables.uvs, triangle.uvs[corner]);
      key.colour = entryOrZero(tables.colours, triangle.colours[corner]);
      const auto next = static_cast<std::int32_t>(numbers.size());
      const std::int32_t expected = numbers.emplace(wordsOf(key), next).first->second;
      ASSERT_EQ(welded.triangles[i][corner], expected);
      ASSERT_EQ(wordsOf(welded.vertices[expected]), wordsOf(key));
    }
  }
  EXPECT_EQ(welded.vertices.size(), numbers.size());
}

TEST(Weld, ComparesBits) {
  const float nan = std::nanf("");
  std::vector<VertexKey> vertices;
  WeldTable table;
  VertexKey key;
  EXPECT_EQ(weldVertex(key, vertices, table), 0);
  key.uv.v = 0.5F;  // stays out of the hash
  EXPECT_EQ(weldVertex(key, vertices, table), 1);
  key.colour = 1;  // as does this
  EXPECT_EQ(weldVertex(key, vertices, table), 2);
  key.position.x = -0.0F;
  EXPECT_EQ(weldVertex(key, vertices, table), 3);
  key.position.x = nan;
  EXPECT_EQ(weldVertex(key, vertices, table), 4);
  EXPECT_EQ(weldVertex(key, vertices, table), 4);
  key.position.x = 0.0F;
  EXPECT_EQ(weldVertex(key, vertices, table), 2);
  EXPECT_EQ(vertices.size(), 5U);
}

TEST(Weld, JoinsWhatAMapJoinsInOrderOfFirstAppearance) {
  std::mt19937 random(7);
  std::uniform_real_distribution<float> uniform(-10, 10);
  expectWeldedLikeAMap(gridTables(90, [&](int, int) {
    return Float3{uniform(random), 0, uniform(random)};
  }));
  // Many corners at the same few places.
  expectWeldedLikeAMap(gridTables(90, [](int x, int y) {
    return Float3{static_cast<float>(x % 7), 0.1F * static_cast<float>(y % 5), 0};
  }));
  expectWeldedLikeAMap(anyTables(random));
}

}  // namespace
}  // namespace morvane
