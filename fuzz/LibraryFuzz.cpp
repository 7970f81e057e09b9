// What programs do through library/ with files that are not theirs. The input is a PSD file, whose
// bytes, pixels and goblins are read and whose goblins are replaced; or else a blob of goblins,
// which is read, taken apart into meshes, written and read again.
#include <algorithm>
#include <cstring>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "fuzz/FuzzTools.h"
#include "library/DocumentFile.h"
#include "library/Goblins.h"
#include "library/Pixels.h"

using namespace morvane;
using namespace morvane::fuzz;

namespace {

constexpr std::size_t kTileMultiple = 46;    // library/Goblins.h
constexpr std::size_t kPixelMultiple = 256;  // a packed byte gives 64, and so for each of a layer's
constexpr std::int32_t kMostLayers = 8;
constexpr std::size_t kMostGoblins = 32;

std::unique_ptr<std::uint8_t[]> copyOf(const std::uint8_t* bytes, std::size_t size) {
  std::unique_ptr<std::uint8_t[]> copy(new std::uint8_t[size]);
  if (size != 0) std::memcpy(copy.get(), bytes, size);
  return copy;
}

// --- Goblins

template <typename Element>
bool sameBits(const std::vector<Element>& a, const std::vector<Element>& b) {
  return a.size() == b.size() &&
         (a.empty() || std::memcmp(a.data(), b.data(), a.size() * sizeof(Element)) == 0);
}

// Vertices that are in no triangle are written, and not read again.
bool usesAll(const Goblin& goblin) {
  std::set<std::int32_t> used;
  for (const auto& triangle : goblin.triangles) used.insert(triangle.begin(), triangle.end());
  return used.size() == goblin.positions.size();
}

bool areSame(const Goblin& a, const Goblin& b, GoblinLayout layout) {
  if (!usesAll(a)) return a.triangles.size() == b.triangles.size();
  if (!sameBits(a.triangles, b.triangles) || a.positions.size() != b.positions.size()) return false;
  return layout == GoblinLayout::kTagged ||
         (a.name == b.name && a.texture == b.texture && sameBits(a.positions, b.positions) &&
          sameBits(a.normals, b.normals) && sameBits(a.uvs, b.uvs));
}

std::vector<Goblin> meshesOf(const GoblinTile& tile) {
  std::vector<Goblin> goblins;
  for (std::size_t i = 0; i < tile.size() && i < kMostGoblins; ++i) {
    goblins.push_back(tile.goblin(i));
    const Goblin& goblin = goblins.back();
    const std::size_t vertices = goblin.positions.size();
    require(goblin.normals.size() == vertices && goblin.uvs.size() == vertices,
            "the arrays of a goblin have different lengths");
    for (const auto& triangle : goblin.triangles)
      for (const std::int32_t corner : triangle)
        require(corner >= 0 && static_cast<std::size_t>(corner) < vertices, "a corner of nothing");
  }
  return goblins;
}

void requireSame(const std::vector<Goblin>& goblins, const GoblinTile& tile) {
  require(tile.size() == goblins.size(), "goblins were lost or found by writing them");
  for (std::size_t i = 0; i < goblins.size(); ++i)
    require(areSame(goblins[i], tile.goblin(i), tile.layout()), "another goblin was written");
}

// Numbers that are not finite and zero bytes in names are refused.
void writeAndRead(const std::vector<Goblin>& goblins, GoblinLayout layout, PsdDocument& document) {
  std::vector<std::uint8_t> blob;
  if (!encodeGoblins(goblins, layout, blob).ok()) return;
  GoblinTile again;
  require(GoblinTile::parse(copyOf(blob.data(), blob.size()), blob.size(), again).ok(),
          "goblins that were written cannot be read");
  if (again.layout() == layout) requireSame(goblins, again);
  if (!setGoblins(document, goblins, layout).ok()) return;
  require(GoblinTile::read(document, again).ok(), "goblins of a document cannot be read");
  require(again.size() == goblins.size(), "a document has other goblins than it was given");
}

void readBlob(const std::uint8_t* data, std::size_t size) {
  GoblinTile tile;
  const MemoryWatch watch;
  const bool isTile = GoblinTile::parse(copyOf(data, size), size, tile).ok();
  watch.requireAtMost(kTileMultiple, size, kSmallConstant);
  if (!isTile) return;
  const std::vector<Goblin> goblins = meshesOf(tile);
  PsdDocument document(40, 30);
  for (const GoblinLayout layout : {GoblinLayout::kNamed, GoblinLayout::kTagged})
    writeAndRead(goblins, layout, document);
}

// --- Documents

// Every plane of the pixels, beside what the document itself unpacks.
void compareWithChannels(PsdDocument& document, std::int32_t layer, const Pixels& pixels) {
  const PsdLayer& record = document.layers[layer];
  const std::size_t channels = pixels.channels.size();
  std::size_t place = 0;
  for (const std::uint16_t id : pixels.channels) {
    std::uint32_t c = 0;
    while (record.channelInfos[c].id != id) ++c;
    const std::size_t at = place++;
    if (pixels.size() == 0 || !document.decompressChannel(layer, c)) continue;
    const std::uint8_t* const plane = document.layerChannels(layer)[c].data.get();
    for (std::size_t i = 0; i < pixels.size() / channels; ++i)
      require(pixels.bytes[i * channels + at] == plane[i], "two answers to what a pixel is");
  }
}

void readPixels(PsdDocument& document, std::size_t size) {
  Pixels pixels;
  const MemoryWatch watch;
  const bool hasMerged = readMergedPixels(document, pixels).ok();
  require(!hasMerged || pixels.rows == document.rows, "a merged image of another size");
  watch.requireAtMost(kPixelMultiple, size, kSmallConstant);
  for (std::int32_t layer = 0; layer <= std::min<std::int32_t>(document.layerCount, kMostLayers);
       ++layer) {
    const MemoryWatch layerWatch;
    const bool isRead = readLayerPixels(document, layer, pixels).ok();
    layerWatch.requireAtMost(kPixelMultiple, size, PsdDocument::kMaxMissingPlane + kSmallConstant);
    require(!isRead || layer < document.layerCount, "a layer that is not there has pixels");
    if (isRead) compareWithChannels(document, layer, pixels);
  }
}

void readDocument(const std::uint8_t* data, std::size_t size) {
  PsdDocument document(1, 1);
  if (!parseDocument(data, size, document).ok()) return;
  std::vector<std::uint8_t> written;
  require(writeDocument(document, written).ok() && written.size() == size &&
              std::equal(written.begin(), written.end(), data),
          "a document that was parsed is written as other bytes");
  GoblinTile tile;
  if (GoblinTile::read(document, tile).ok())
    writeAndRead(meshesOf(tile), GoblinLayout::kNamed, document);
  readPixels(document, size);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  constexpr char kStart[] = {'8', 'B', 'P', 'S'};
  if (size >= sizeof kStart && std::memcmp(data, kStart, sizeof kStart) == 0)
    readDocument(data, size);
  else
    readBlob(data, size);
  return 0;
}
