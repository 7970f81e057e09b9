#include <algorithm>
#include <cstring>
#include <string>
#include <utility>

#include "geometry/GoblinGeometry.h"
#include "library/DocumentFile.h"
#include "library/Goblins.h"
#include "util/ByteOrder.h"
#include "util/ReserveMore.h"

namespace morvane {
namespace {

constexpr std::size_t kWord = 4;

std::int32_t loadIndex(const std::uint8_t* from) {
  return static_cast<std::int32_t>(loadLe32(from));
}

// Calls `visit` with the corner count of each face and where its indices lie.
template <typename Visit>
void forEachFace(ArrayView<std::uint8_t> faces, Visit visit) {
  const std::uint8_t* at = faces.begin();
  while (at != faces.end()) {
    const std::uint32_t corners = loadLe32(at);
    visit(corners, at + kWord);
    at += kWord * (std::size_t{corners} + 1);
  }
}

// Turns the stored floats, in place, into the machine's own byte order.
void makeNative(std::uint8_t* pool, std::size_t vertices) {
  std::uint8_t* const end = pool + vertices * sizeof(GoblinPoolVertex);
  for (; pool != end; pool += kWord) {
    const float number = loadLeFloat(pool);
    std::memcpy(pool, &number, kWord);
  }
}

void appendVertex(const GoblinPoolVertex& vertex, GoblinLayout layout, Goblin& goblin) {
  const bool tagged = layout == GoblinLayout::kTagged;
  goblin.positions.push_back({vertex.x, vertex.y, tagged ? 1 - vertex.z : vertex.z});
  goblin.normals.push_back({vertex.nx, vertex.ny, vertex.nz});
  goblin.uvs.push_back({vertex.u, tagged ? vertex.v - 1 : -vertex.v});
}

Status damaged(const std::string& what) {
  return {StatusCode::kDamaged, "the goblin geometry is damaged: " + what};
}

}  // namespace

std::vector<std::array<std::int32_t, 3>> StoredGoblin::triangles() const {
  std::vector<std::array<std::int32_t, 3>> result;
  result.reserve(faceCount_);
  forEachFace(faces_, [&](std::uint32_t corners, const std::uint8_t* indices) {
    for (std::uint32_t i = 2; i < corners; ++i) {
      result.push_back({loadIndex(indices), loadIndex(indices + kWord * (i - 1)),
                        loadIndex(indices + kWord * i)});
    }
  });
  return result;
}

std::vector<std::int32_t> StoredGoblin::vertices() const {
  std::vector<std::int32_t> used;
  used.reserve(faces_.size() / kWord - faceCount_);
  forEachFace(faces_, [&](std::uint32_t corners, const std::uint8_t* indices) {
    for (std::uint32_t i = 0; i < corners; ++i) used.push_back(loadIndex(indices + kWord * i));
  });
  std::sort(used.begin(), used.end());
  used.erase(std::unique(used.begin(), used.end()), used.end());
  return used;
}

// Notes where everything lies. False when the blob does not read in `layout` from its first to
// exactly its last byte; the count of sound bytes is given then.
bool GoblinTile::locate(GoblinLayout layout, std::size_t size, std::size_t& consumed) {
  GoblinGeometryReader reader(blob_.get(), size, layout);
  std::uint32_t count = 0;
  GoblinExtent extent;
  layout_ = layout;
  goblins_.clear();
  bool fits = reader.locatePool(poolStart_, poolSize_) && reader.readGoblinCount(count);
  const auto text = [this](std::size_t start, std::size_t length) {
    return std::string_view(reinterpret_cast<const char*>(blob_.get()) + start, length);
  };
  for (std::uint32_t i = 0; fits && i < count; ++i) {
    fits = reader.locateGoblin(extent) && reserveMore(goblins_, 1);
    if (fits) {
      StoredGoblin& goblin = goblins_.emplace_back();
      goblin.name_ = text(extent.name, extent.nameLength);
      goblin.texture_ = text(extent.texture, extent.textureLength);
      goblin.faceCount_ = extent.faceCount;
      goblin.faces_ = {blob_.get() + extent.faces, extent.facesLength};
    }
  }
  consumed = reader.consumed();
  return fits && consumed == size;
}

Status GoblinTile::parse(std::unique_ptr<std::uint8_t[]> blob, std::size_t size, GoblinTile& tile) {
  GoblinTile fresh;
  fresh.blob_ = std::move(blob);
  std::size_t namedEnd = 0;
  std::size_t taggedEnd = 0;
  if (!fresh.locate(GoblinLayout::kNamed, size, namedEnd) &&
      !fresh.locate(GoblinLayout::kTagged, size, taggedEnd)) {
    return damaged("no layout fits beyond byte " + std::to_string(std::max(namedEnd, taggedEnd)) +
                   " of " + std::to_string(size));
  }
  makeNative(fresh.blob_.get() + fresh.poolStart_, fresh.poolSize_);
  tile = std::move(fresh);
  return {};
}

Status GoblinTile::read(const PsdDocument& document, GoblinTile& tile) {
  if (document.findLayer(kGoblinLayerName) < 0)
    return {StatusCode::kNotFound, std::string("there is no layer \"") + kGoblinLayerName + '"'};
  std::uint32_t size = 0;
  std::unique_ptr<std::uint8_t[]> blob = document.peekDataLayer(kGoblinLayerName, size);
  if (blob == nullptr) return damaged("the layer's channels do not hold as many bytes as it says");
  return parse(std::move(blob), size, tile);
}

Status GoblinTile::read(std::string_view path, GoblinTile& tile) {
  PsdDocument document(1, 1);
  if (Status status = loadDocument(path, document); !status.ok()) return status;
  const Status status = read(document, tile);
  return status.ok() ? status : Status(status.code(), std::string(path) + ": " + status.text());
}

// The buffer holds floats in the machine's own byte order, and new[] aligned it for them.
ArrayView<GoblinPoolVertex> GoblinTile::vertices() const {
  return {reinterpret_cast<const GoblinPoolVertex*>(blob_.get() + poolStart_), poolSize_};
}

Goblin GoblinTile::goblin(std::size_t index) const {
  const StoredGoblin& stored = goblins_[index];
  Goblin goblin;
  goblin.name = stored.name();
  goblin.texture = stored.texture();
  const std::vector<std::int32_t> used = stored.vertices();
  const ArrayView<GoblinPoolVertex> pool = vertices();
  goblin.positions.reserve(used.size());
  goblin.normals.reserve(used.size());
  goblin.uvs.reserve(used.size());
  for (const std::int32_t vertex : used) appendVertex(pool[vertex], layout_, goblin);
  goblin.triangles = stored.triangles();
  for (std::array<std::int32_t, 3>& triangle : goblin.triangles) {
    for (std::int32_t& corner : triangle) {
      const auto at = std::lower_bound(used.begin(), used.end(), corner);
      corner = static_cast<std::int32_t>(at - used.begin());
    }
    if (layout_ == GoblinLayout::kNamed) std::swap(triangle[0], triangle[2]);
  }
  return goblin;
}

std::ptrdiff_t GoblinTile::find(std::string_view name) const {
  const auto found =
      std::find_if(goblins_.begin(), goblins_.end(),
                   [&](const StoredGoblin& goblin) { return goblin.name() == name; });
  return found == goblins_.end() ? -1 : found - goblins_.begin();
}

}  // namespace morvane
