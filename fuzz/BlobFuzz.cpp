// A goblin geometry blob of any bytes, read in both layouts and written again; and goblins of any
// vertices and triangles, written and read again.
#include <cstring>
#include <string>
#include <vector>

#include "fuzz/FuzzTools.h"
#include "geometry/GoblinGeometry.h"
#include "geometry/GoblinMesh.h"

using namespace morvane;
using namespace morvane::fuzz;

namespace {

constexpr std::size_t kReadMultiple = 16;  // geometry/GoblinGeometry.h
constexpr GoblinLayout kLayouts[] = {GoblinLayout::kNamed, GoblinLayout::kTagged};

// Reads what there is. True when that is a whole blob.
bool readAll(const std::uint8_t* bytes, std::size_t size, GoblinLayout layout,
             GoblinGeometryBuilder& read) {
  GoblinGeometryReader reader(bytes, size, layout);
  std::uint32_t count = 0;
  if (!reader.readPool(read.pool) || !reader.readGoblinCount(count)) return false;
  for (std::uint32_t i = 0; i < count; ++i) {
    auto record = std::make_unique<GoblinRecord>();
    if (!reader.readGoblin(*record)) return false;
    read.records.push_back(std::move(record));
  }
  return reader.consumed() == size;
}

std::string encoded(const GoblinGeometryBuilder& builder, GoblinLayout layout) {
  const std::uint64_t size = encodedGoblinGeometrySize(builder, layout);
  std::vector<std::uint8_t> bytes(size + 1);
  require(encodeGoblinGeometry(builder, layout, bytes.data(), size) == size, "another size");
  require(encodeGoblinGeometry(builder, layout, bytes.data(), size - 1) == 0, "too large");
  return {bytes.begin(), bytes.end() - 1};
}

void buildMeshes(const GoblinGeometryBuilder& read) {
  LocalIndexMap local(read.pool.size(), -1);
  for (const auto& record : read.records) buildGoblinMesh(*record, read.pool, local);
  for (const std::int32_t index : local) require(index == -1, "an index was left in the map");
}

void decode(const std::uint8_t* bytes, std::size_t size, GoblinLayout layout) {
  GoblinGeometryBuilder read;
  const MemoryWatch watch;
  const bool whole = readAll(bytes, size, layout, read);
  watch.requireAtMost(kReadMultiple, size, kSmallConstant);
  require(whole == fitsLayout(bytes, size, layout), "two answers to whether a blob is whole");
  buildMeshes(read);
  if (!whole) return;
  // Texts that hold zero bytes end there.
  const std::string again = encoded(read, layout);
  require(again.size() < size || again == std::string(bytes, bytes + size),
          "a blob that was read is written as other bytes");
}

// Some goblins of any floats, and triangles over them.
void encode(InputBytes in) {
  GoblinGeometryBuilder made[2];
  const std::size_t goblins = in.takeByte() % 4;
  for (std::size_t goblin = 0; goblin < goblins; ++goblin) {
    WeldedMesh mesh;
    mesh.vertices.resize(in.takeByte() % 8);
    for (VertexKey& vertex : mesh.vertices) {
      std::uint8_t raw[sizeof(Float3)];
      for (std::uint8_t& byte : raw) byte = in.takeByte();
      std::memcpy(&vertex.position, raw, sizeof raw);
    }
    const auto vertices = static_cast<std::int32_t>(mesh.vertices.size());
    mesh.triangles.resize(vertices == 0 ? 0 : in.takeByte() % 8);
    for (auto& triangle : mesh.triangles)
      for (std::int32_t& corner : triangle) corner = in.takeByte() % vertices;
    for (int i = 0; i < 2; ++i)
      appendGoblin(mesh, Matrix44(), kLayouts[i], goblin ? "name" : nullptr, "", made[i]);
  }
  for (int i = 0; i < 2; ++i) {
    const std::string bytes = encoded(made[i], kLayouts[i]);
    const auto* const blob = reinterpret_cast<const std::uint8_t*>(bytes.data());
    GoblinGeometryBuilder again;
    require(readAll(blob, bytes.size(), kLayouts[i], again), "a written blob cannot be read");
    require(encoded(again, kLayouts[i]) == bytes, "a written blob reads as other goblins");
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  for (const GoblinLayout layout : kLayouts) decode(data, size, layout);
  const GoblinBlobKind kind = classifyGoblinBlob(data, size);
  require((kind == GoblinBlobKind::kDamaged) == (!fitsLayout(data, size, GoblinLayout::kNamed) &&
                                                 !fitsLayout(data, size, GoblinLayout::kTagged)),
          "a blob of one layout is called damaged, or the other way round");
  encode(InputBytes(data, size));
  return 0;
}
