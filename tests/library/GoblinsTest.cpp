#include "library/Goblins.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <functional>
#include <limits>

#include "library/DocumentFile.h"
#include "util/ByteOrder.h"

namespace morvane {
namespace {

using Bytes8 = std::vector<std::uint8_t>;

Bytes8 word(std::uint32_t value) {
  Bytes8 bytes(4);
  storeLe32(bytes.data(), value);
  return bytes;
}

Bytes8 join(std::initializer_list<Bytes8> parts) {
  Bytes8 all;
  for (const Bytes8& part : parts) all.insert(all.end(), part.begin(), part.end());
  return all;
}

Bytes8 words(std::initializer_list<std::uint32_t> values) {
  Bytes8 all;
  for (const std::uint32_t value : values) all = join({all, word(value)});
  return all;
}

Bytes8 floats(std::initializer_list<float> values) {
  Bytes8 all;
  for (const float value : values) {
    std::uint32_t bits;
    std::memcpy(&bits, &value, sizeof bits);
    all = join({all, word(bits)});
  }
  return all;
}

Bytes8 text(const std::string& value) {
  return join({word(static_cast<std::uint32_t>(value.size())), Bytes8(value.begin(), value.end())});
}

// The tile of docs/goblin-geometry.md: one triangle, in both layouts, written out by hand.
Bytes8 namedExample() {
  return join({word(3), floats({.25F, .375F, .25F, 0, 1, 0, .25F, .25F}),
               floats({.25F, .375F, .75F, 0, 1, 0, .25F, .75F}),
               floats({.5F, .375F, .25F, 0, 1, 0, .5F, .25F}), word(1), text("g1"), text("t.psd"),
               word(1), words({3, 2, 1, 0})});
}

Bytes8 taggedExample() {
  return join({word(1), word(3), floats({.25F, .375F, .75F, 0, 1, 0, .25F, .75F}),
               floats({.25F, .375F, .25F, 0, 1, 0, .25F, .25F}),
               floats({.5F, .375F, .75F, 0, 1, 0, .5F, .75F}), word(1), word(1),
               words({3, 0, 1, 2})});
}

Goblin exampleMesh() {
  return {"g1",
          "t.psd",
          {{.25F, .375F, .25F}, {.25F, .375F, .75F}, {.5F, .375F, .25F}},
          {{0, 1, 0}, {0, 1, 0}, {0, 1, 0}},
          {{.25F, -.25F}, {.25F, -.75F}, {.5F, -.25F}},
          {{0, 1, 2}}};
}

Status parse(const Bytes8& bytes, GoblinTile& tile) {
  std::unique_ptr<std::uint8_t[]> blob(new std::uint8_t[bytes.size()]);
  std::copy(bytes.begin(), bytes.end(), blob.get());
  return GoblinTile::parse(std::move(blob), bytes.size(), tile);
}

void expectSame(const Goblin& a, const Goblin& b) {
  EXPECT_EQ(a.positions, b.positions);
  EXPECT_EQ(a.normals, b.normals);
  EXPECT_EQ(a.uvs, b.uvs);
  EXPECT_EQ(a.triangles, b.triangles);
}

TEST(Goblins, BothLayoutsAreTheSameMeshAndBack) {
  for (const GoblinLayout layout : {GoblinLayout::kNamed, GoblinLayout::kTagged}) {
    const bool named = layout == GoblinLayout::kNamed;
    const Bytes8 bytes = named ? namedExample() : taggedExample();
    GoblinTile tile;
    ASSERT_TRUE(parse(bytes, tile).ok());
    ASSERT_EQ(tile.size(), 1u);
    EXPECT_EQ(tile.layout(), layout);
    expectSame(tile.goblin(0), exampleMesh());
    EXPECT_EQ(tile[0].name(), named ? "g1" : "");
    EXPECT_EQ(tile[0].texture(), named ? "t.psd" : "");
    EXPECT_EQ(tile.find("g1"), named ? 0 : -1);
    // As stored: mirrored, or with its corners reversed.
    EXPECT_EQ(tile.vertices().size(), 3u);
    EXPECT_EQ(tile.vertices()[1].z, named ? .75F : .25F);
    const std::array<std::int32_t, 3> corners = tile[0].triangles()[0];
    EXPECT_EQ(corners, (named ? std::array<std::int32_t, 3>{2, 1, 0}
                              : std::array<std::int32_t, 3>{0, 1, 2}));

    Bytes8 again;
    ASSERT_TRUE(encodeGoblins({exampleMesh()}, layout, again).ok());
    EXPECT_EQ(again, bytes);
  }
}

// Two goblins over one pool: a polygon, faces without an area, and vertices that both use.
TEST(Goblins, PolygonsAreCutAndVerticesAreEachGoblinsOwn) {
  Bytes8 pool;
  for (int i = 0; i < 5; ++i)
    pool = join({pool, floats({static_cast<float>(i), 0, 0, 0, 1, 0, 0, 0})});
  GoblinTile tile;
  ASSERT_TRUE(
      parse(join({word(5), pool, word(2), text(""), text(""), word(3), words({4, 4, 3, 2, 1}),
                  words({2, 0, 4}), word(0), text("b"), text(""), word(1), words({3, 4, 2, 2})}),
            tile)
          .ok());
  const Goblin polygon = tile.goblin(0);
  EXPECT_EQ(polygon.positions.size(), 5u);  // the face of two corners uses two more
  EXPECT_EQ(polygon.triangles, (std::vector<std::array<std::int32_t, 3>>{{2, 3, 4}, {1, 2, 4}}));
  const Goblin other = tile.goblin(1);
  EXPECT_EQ(other.positions, (std::vector<std::array<float, 3>>{{2, 0, 0}, {4, 0, 0}}));
  EXPECT_EQ(other.triangles, (std::vector<std::array<std::int32_t, 3>>{{0, 0, 1}}));
}

TEST(Goblins, DamageIsRefusedAndLeavesTheTile) {
  GoblinTile tile;
  ASSERT_TRUE(parse(namedExample(), tile).ok());
  for (const Bytes8& sound : {namedExample(), taggedExample()}) {
    for (std::size_t size = 0; size < sound.size(); ++size) {
      const Status status = parse(Bytes8(sound.begin(), sound.begin() + size), tile);
      EXPECT_EQ(status.code(), StatusCode::kDamaged) << size;
    }
    Bytes8 wrong = sound;
    wrong[wrong.size() - 4] = 3;  // an index outside the pool
    EXPECT_FALSE(parse(wrong, tile).ok());
    EXPECT_FALSE(parse(join({sound, word(0)}), tile).ok());
  }
  expectSame(tile.goblin(0), exampleMesh());
}

TEST(Goblins, WrongArraysAreNamed) {
  const float nan = std::numeric_limits<float>::quiet_NaN();
  const struct {
    std::function<void(Goblin&)> spoil;
    const char* text;
  } kCases[] = {
      {[](Goblin& g) { g.normals.pop_back(); }, "normals has 2 entries, positions has 3"},
      {[](Goblin& g) { g.uvs.clear(); }, "uvs has 0 entries"},
      {[&](Goblin& g) { g.positions[1][2] = nan; }, "positions[1] is not finite"},
      {[](Goblin& g) { g.triangles[0][2] = 3; }, "triangles[0] names vertex 3 of 3"},
      {[](Goblin& g) { g.triangles[0][0] = -1; }, "triangles[0] names vertex -1"},
      {[](Goblin& g) { g.name.push_back('\0'); }, "name holds a zero byte"},
  };
  for (const auto& test : kCases) {
    Goblin goblin = exampleMesh();
    test.spoil(goblin);
    Bytes8 blob = {7};
    const Status status = encodeGoblins({exampleMesh(), goblin}, GoblinLayout::kNamed, blob);
    EXPECT_EQ(status.code(), StatusCode::kBadArgument);
    EXPECT_NE(status.text().find(test.text), std::string::npos) << status.text();
    EXPECT_NE(status.text().find("goblin 1 "), std::string::npos) << status.text();
    EXPECT_EQ(blob, Bytes8{7});
  }
}

TEST(Goblins, GoIntoADocumentInPlaceOfTheOldOnes) {
  PsdDocument document(8, 8);
  GoblinTile tile;
  EXPECT_EQ(GoblinTile::read(document, tile).code(), StatusCode::kNotFound);
  ASSERT_TRUE(setGoblins(document, {}).ok());
  ASSERT_TRUE(document.addLayer("above") > 0);
  ASSERT_TRUE(setGoblins(document, {exampleMesh()}).ok());
  ASSERT_EQ(document.layerCount, 3);  // base, above, goblins
  EXPECT_EQ(document.findLayer(kGoblinLayerName), 2);
  EXPECT_NE(document.layers[2].flags & 2, 0) << "it is hidden";
  ASSERT_TRUE(GoblinTile::read(document, tile).ok());
  expectSame(tile.goblin(0), exampleMesh());

  // 4 x 8 x 8 - 5 = 251 bytes are room for one goblin of 139 bytes, not for three.
  Bytes8 before;
  ASSERT_TRUE(writeDocument(document, before).ok());
  const Status full = setGoblins(document, {exampleMesh(), exampleMesh(), exampleMesh()});
  EXPECT_EQ(full.code(), StatusCode::kNoRoom);
  Bytes8 after;
  ASSERT_TRUE(writeDocument(document, after).ok());
  EXPECT_EQ(after, before);

  document.layers[0].name.reset(new char[sizeof "GoblinGeometry"]);
  std::strcpy(document.layers[0].name.get(), kGoblinLayerName);
  EXPECT_EQ(setGoblins(document, {}).code(), StatusCode::kUnsupported);
}

}  // namespace
}  // namespace morvane
