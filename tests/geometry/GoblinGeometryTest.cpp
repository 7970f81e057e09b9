#include "geometry/GoblinGeometry.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <string>

#include "geometry/TileMatrix.h"
#include "util/ByteOrder.h"

namespace morvane {
namespace {

using Blob = std::vector<std::uint8_t>;

constexpr GoblinLayout kLayouts[] = {GoblinLayout::kNamed, GoblinLayout::kTagged};

VertexKey vertexAt(float x, float y, float z, Float3 normal = {0, 1, 0}) {
  VertexKey key;
  key.position = {x, y, z};
  key.normal = normal;
  return key;
}

WeldedMesh triangleMesh() {
  return {{vertexAt(0, 0, 0), vertexAt(1, 0, 0), vertexAt(0, 0, 1)}, {{0, 1, 2}}};
}

WeldedMesh quadMesh() {
  return {{vertexAt(0, 0, 0), vertexAt(1, 0, 0), vertexAt(1, 0, 1), vertexAt(0, 0, 1)},
          {{0, 1, 2}, {0, 2, 3}}};
}

Blob encode(const GoblinGeometryBuilder& builder, GoblinLayout layout) {
  Blob blob(encodedGoblinGeometrySize(builder, layout));
  EXPECT_EQ(encodeGoblinGeometry(builder, layout, blob.data(), blob.size()), blob.size());
  return blob;
}

void append(GoblinGeometryBuilder& builder, const WeldedMesh& mesh, GoblinLayout layout,
            const char* name) {
  appendGoblin(mesh, Matrix44(), layout, name, "", builder);
}

// A triangle "g1" and a quad with a longer name and a texture.
Blob twoGoblins(GoblinLayout layout) {
  GoblinGeometryBuilder builder;
  append(builder, triangleMesh(), layout, "g1");
  appendGoblin(quadMesh(), Matrix44(), layout, "a quad", "textures/quad.psd", builder);
  return encode(builder, layout);
}

std::vector<std::uint32_t> lastWords(const Blob& blob, std::size_t count) {
  std::vector<std::uint32_t> words;
  for (std::size_t i = count; i > 0; --i)
    words.push_back(loadLe32(blob.data() + blob.size() - 4 * i));
  return words;
}

struct Decoded {
  std::vector<GoblinPoolVertex> pool;
  std::vector<GoblinRecord> records;
  std::size_t consumed = 0;
  bool complete = false;
};

Decoded decode(const Blob& blob, GoblinLayout layout) {
  Decoded result;
  GoblinGeometryReader reader(blob.data(), blob.size(), layout);
  std::uint32_t goblins = 0;
  bool sound = reader.readPool(result.pool) && reader.readGoblinCount(goblins);
  for (std::uint32_t i = 0; sound && i < goblins; ++i) {
    GoblinRecord record;
    sound = reader.readGoblin(record);
    if (sound) result.records.push_back(std::move(record));
  }
  result.consumed = reader.consumed();
  result.complete = sound && result.consumed == blob.size();
  return result;
}

void expectIndicesInPool(const Decoded& decoded) {
  for (const GoblinRecord& record : decoded.records) {
    for (std::int32_t face = 0; face < record.faceCount; ++face) {
      for (std::int32_t corner = 0; corner < record.faces[face].cornerCount; ++corner) {
        const std::int32_t index = record.faces[face].indices[corner];
        ASSERT_GE(index, 0);
        ASSERT_LT(static_cast<std::size_t>(index), decoded.pool.size());
      }
    }
  }
}

// The sizes are 8 or 12 bytes, 32 a vertex, 12 and its texts or 4 a goblin, and 16 a face.
TEST(GoblinGeometry, LaterGoblinsIndexTheSharedPool) {
  const Blob named = twoGoblins(GoblinLayout::kNamed);
  EXPECT_EQ(named.size(), 8U + 7 * 32 + (12 + 2 + 16) + (12 + 6 + 17 + 2 * 16));
  EXPECT_EQ(std::memcmp(named.data() + 4 + 7 * 32 + 4,
                        "\2\0\0\0g1\0\0\0\0\1\0\0\0\3\0\0\0\2\0\0\0\1\0\0\0\0\0\0\0", 30),
            0);
  EXPECT_EQ(lastWords(named, 8), (std::vector<std::uint32_t>{3, 5, 4, 3, 3, 6, 5, 3}));
  const Blob tagged = twoGoblins(GoblinLayout::kTagged);
  EXPECT_EQ(tagged.size(), 12U + 7 * 32 + (4 + 16) + (4 + 2 * 16));
  EXPECT_EQ(lastWords(tagged, 9), (std::vector<std::uint32_t>{2, 3, 3, 4, 5, 3, 3, 5, 6}));
}

TEST(GoblinGeometry, PoolVerticesOfBothLayouts) {
  const WeldedMesh mesh = {{vertexAt(-2, 0, -4, {0, 0, 0}), vertexAt(0, 1, -2, {3, 0, 4})}, {}};
  const Matrix44 toTile = tileNormalisationMatrix(tileBounds({{-2, 0, -4}, {2, 1, 4}}));
  GoblinGeometryBuilder named;
  GoblinGeometryBuilder tagged;
  appendGoblin(mesh, toTile, GoblinLayout::kNamed, "", "", named);
  appendGoblin(mesh, toTile, GoblinLayout::kTagged, nullptr, nullptr, tagged);
  const auto fields = [](const GoblinPoolVertex& v) {
    return std::vector<float>{v.x, v.y, v.z, v.nx, v.ny, v.nz, v.u, v.v};
  };
  EXPECT_EQ(fields(named.pool[0]), (std::vector<float>{0, 0, 0, 0, 0, 0, 0, 0}));
  EXPECT_EQ(fields(tagged.pool[0]), (std::vector<float>{0, 0, 1, 0, 0, 0, 0, 1}));
  // The normal (3, 0, 4) is scaled to (0.75, 0, 0.5), of length sqrt(0.8125).
  const float length = std::sqrt(0.8125F);
  EXPECT_FLOAT_EQ(named.pool[1].nx, 0.75F / length);
  EXPECT_FLOAT_EQ(named.pool[1].nz, 0.5F / length);
  EXPECT_EQ(tagged.pool[1].nz, named.pool[1].nz);
  EXPECT_EQ(named.pool[1].z, 0.25F);
  EXPECT_EQ(tagged.pool[1].z, 0.75F);
  EXPECT_EQ(tagged.pool[1].v, 0.75F);
}

TEST(GoblinGeometry, EncoderWritesNothingIntoABufferThatIsTooSmall) {
  for (const GoblinLayout layout : kLayouts) {
    GoblinGeometryBuilder builder;
    append(builder, quadMesh(), layout, "name");
    Blob blob(encodedGoblinGeometrySize(builder, layout) - 1, 0xAA);
    EXPECT_EQ(encodeGoblinGeometry(builder, layout, blob.data(), blob.size()), 0U);
    EXPECT_EQ(blob, Blob(blob.size(), 0xAA));
  }
}

TEST(GoblinGeometry, ReadsBackWhatWasWritten) {
  for (const GoblinLayout layout : kLayouts) {
    const Blob blob = twoGoblins(layout);
    const bool named = layout == GoblinLayout::kNamed;
    EXPECT_EQ(classifyGoblinBlob(blob.data(), blob.size()),
              named ? GoblinBlobKind::kNamed : GoblinBlobKind::kTagged);
    const Decoded decoded = decode(blob, layout);
    ASSERT_TRUE(decoded.complete);
    ASSERT_EQ(decoded.pool.size(), 7U);
    EXPECT_EQ(decoded.pool[5].x, 1);
    EXPECT_EQ(decoded.pool[5].z, named ? 1 : 0);
    ASSERT_EQ(decoded.records.size(), 2U);
    const GoblinRecord& quad = decoded.records[1];
    if (named) {
      EXPECT_STREQ(quad.name.get(), "a quad");
      EXPECT_STREQ(quad.textureFileName.get(), "textures/quad.psd");
    }
    ASSERT_EQ(quad.faceCount, 2);
    EXPECT_EQ(quad.faces[1].indices[0], named ? 6 : 3);
  }
}

TEST(GoblinGeometry, EveryPrefixIsDamagedAndReadsAsFarAsItGoes) {
  for (const GoblinLayout layout : kLayouts) {
    const Blob whole = twoGoblins(layout);
    for (std::size_t size = 0; size < whole.size(); ++size) {
      // A block of exactly this size, so that a checker sees the first byte read behind it.
      const Blob prefix(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size));
      const Decoded decoded = decode(prefix, layout);
      ASSERT_FALSE(decoded.complete) << size;
      ASSERT_LE(decoded.consumed, size);
      ASSERT_EQ(classifyGoblinBlob(prefix.data(), size), GoblinBlobKind::kDamaged) << size;
    }
    Blob longer = whole;
    longer.resize(whole.size() + 4);
    EXPECT_EQ(decode(longer, layout).consumed, whole.size());
    EXPECT_FALSE(fitsLayout(longer.data(), longer.size(), layout));
  }
}

TEST(GoblinGeometry, EveryFieldAtItsExtremes) {
  for (const GoblinLayout layout : kLayouts) {
    const Blob whole = twoGoblins(layout);
    const auto size = static_cast<std::uint32_t>(whole.size());
    for (std::size_t at = 0; at + 4 <= whole.size(); ++at) {
      for (const std::uint32_t value :
           {0U, 1U, 2U, 6U, 7U, 8U, size / 32, size / 4, size, 0x3FFFFFFFU, 0x7FFFFFFFU,
            0x80000000U, 0xFFFFFFFDU, 0xFFFFFFFFU}) {
        Blob blob = whole;
        storeLe32(blob.data() + at, value);
        const Decoded decoded = decode(blob, layout);
        ASSERT_LE(decoded.consumed, blob.size()) << "at " << at << " value " << value;
        ASSERT_EQ(decoded.complete, fitsLayout(blob.data(), blob.size(), layout));
        expectIndicesInPool(decoded);
      }
    }
  }
}

TEST(GoblinGeometry, StopsBeforeTheFirstValueThatDoesNotFit) {
  // Offsets in the named blob of one triangle "g1": name length at 104, face count 114, corner
  // count 118.
  GoblinGeometryBuilder builder;
  append(builder, triangleMesh(), GoblinLayout::kNamed, "g1");
  const Blob whole = encode(builder, GoblinLayout::kNamed);
  const struct {
    std::size_t offset;
    std::uint32_t value;
  } damages[] = {{0, 0x80000000U},   {0, 5},   {104, 27},
                 {110, 0xFFFFFFFFU}, {114, 5}, {118, 4},
                 {118, 0x80000003U}, {122, 3}, {130, 0x80000000U}};
  for (const auto& damage : damages) {
    Blob blob = whole;
    storeLe32(blob.data() + damage.offset, damage.value);
    const Decoded decoded = decode(blob, GoblinLayout::kNamed);
    EXPECT_EQ(decoded.consumed, damage.offset) << damage.value;
    EXPECT_TRUE(decoded.records.empty());
  }
  // A goblin count that is too high leaves the goblins that are there.
  Blob blob = whole;
  storeLe32(blob.data() + 100, 0xFFFFFFFFU);
  const Decoded decoded = decode(blob, GoblinLayout::kNamed);
  EXPECT_EQ(decoded.consumed, blob.size());
  EXPECT_FALSE(decoded.complete);
  EXPECT_EQ(decoded.records.size(), 1U);
}

TEST(GoblinGeometry, FacesAndGoblinsMayBeEmpty) {
  // No pool; one goblin without faces, one with a face without corners.
  const Blob blob = {0, 0, 0, 0, 2, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0,
                     0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1, 0, 0, 0, 0, 0, 0, 0};
  const Decoded decoded = decode(blob, GoblinLayout::kNamed);
  EXPECT_TRUE(decoded.complete);
  ASSERT_EQ(decoded.records.size(), 2U);
  EXPECT_EQ(decoded.records[1].faces[0].cornerCount, 0);
  EXPECT_EQ(classifyGoblinBlob(nullptr, 0), GoblinBlobKind::kDamaged);
}

}  // namespace
}  // namespace morvane
