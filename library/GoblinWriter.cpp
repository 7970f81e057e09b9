#include <cmath>
#include <cstdint>
#include <limits>
#include <memory>
#include <string>
#include <utility>

#include "geometry/GoblinGeometry.h"
#include "library/Goblins.h"

namespace morvane {
namespace {

constexpr std::size_t kMaxPool = std::numeric_limits<std::int32_t>::max();

template <std::size_t N>
std::string findNotFinite(const char* array, const std::vector<std::array<float, N>>& values) {
  for (std::size_t i = 0; i < values.size(); ++i) {
    for (const float value : values[i])
      if (!std::isfinite(value))
        return std::string(array) + "[" + std::to_string(i) + "] is not finite";
  }
  return {};
}

std::string findBadLength(const char* array, std::size_t length, std::size_t vertices) {
  if (length == vertices) return {};
  return std::string(array) + " has " + std::to_string(length) + " entries, positions has " +
         std::to_string(vertices);
}

std::string findBadTriangle(const Goblin& goblin) {
  for (std::size_t i = 0; i < goblin.triangles.size(); ++i) {
    for (const std::int32_t corner : goblin.triangles[i]) {
      if (corner < 0 || static_cast<std::size_t>(corner) >= goblin.positions.size()) {
        return "triangles[" + std::to_string(i) + "] names vertex " + std::to_string(corner) +
               " of " + std::to_string(goblin.positions.size());
      }
    }
  }
  return {};
}

std::string findZeroByte(const char* field, const std::string& text) {
  return text.find('\0') == std::string::npos ? "" : std::string(field) + " holds a zero byte";
}

// What is wrong with the goblin; empty when nothing is.
std::string findFault(const Goblin& goblin) {
  const std::size_t vertices = goblin.positions.size();
  for (std::string fault :
       {findZeroByte("name", goblin.name), findZeroByte("texture", goblin.texture),
        findBadLength("normals", goblin.normals.size(), vertices),
        findBadLength("uvs", goblin.uvs.size(), vertices),
        findNotFinite("positions", goblin.positions), findNotFinite("normals", goblin.normals),
        findNotFinite("uvs", goblin.uvs), findBadTriangle(goblin)}) {
    if (!fault.empty()) return fault;
  }
  return {};
}

GoblinPoolVertex storedVertex(const Goblin& goblin, std::size_t i, GoblinLayout layout) {
  const auto& [x, y, z] = goblin.positions[i];
  const auto& [nx, ny, nz] = goblin.normals[i];
  const auto& [u, v] = goblin.uvs[i];
  if (layout == GoblinLayout::kTagged) return {x, y, 1 - z, nx, ny, nz, u, v + 1};
  return {x, y, z, nx, ny, nz, u, -v};
}

std::unique_ptr<GoblinRecord> makeRecord(const Goblin& goblin, std::int32_t base,
                                         GoblinLayout layout) {
  auto record = std::make_unique<GoblinRecord>();
  record->name = copyText(goblin.name.c_str());
  record->textureFileName = copyText(goblin.texture.c_str());
  record->faceCount = static_cast<std::int32_t>(goblin.triangles.size());
  record->faces = std::make_unique<GoblinFace[]>(goblin.triangles.size());
  for (std::size_t i = 0; i < goblin.triangles.size(); ++i) {
    GoblinFace& face = record->faces[i];
    std::array<std::int32_t, 3> corners = goblin.triangles[i];
    if (layout == GoblinLayout::kNamed) std::swap(corners[0], corners[2]);
    face.cornerCount = 3;
    face.indices.reset(
        new std::int32_t[3]{base + corners[0], base + corners[1], base + corners[2]});
  }
  return record;
}

// Both counts of a goblin, and the sum of them all, have 31 bits.
Status buildAll(const std::vector<Goblin>& goblins, GoblinLayout layout,
                GoblinGeometryBuilder& builder) {
  for (std::size_t i = 0; i < goblins.size(); ++i) {
    const Goblin& goblin = goblins[i];
    const std::string fault = findFault(goblin);
    if (!fault.empty()) {
      return {StatusCode::kBadArgument,
              "goblin " + std::to_string(i) + " \"" + goblin.name + "\": " + fault};
    }
    const std::size_t base = builder.pool.size();
    if (goblin.positions.size() > kMaxPool - base || goblin.triangles.size() > kMaxPool)
      return {StatusCode::kNoRoom, "the goblins have too many vertices or triangles"};
    for (std::size_t vertex = 0; vertex < goblin.positions.size(); ++vertex)
      builder.pool.push_back(storedVertex(goblin, vertex, layout));
    builder.records.push_back(makeRecord(goblin, static_cast<std::int32_t>(base), layout));
  }
  return {};
}

}  // namespace

Status encodeGoblins(const std::vector<Goblin>& goblins, GoblinLayout layout,
                     std::vector<std::uint8_t>& blob) {
  GoblinGeometryBuilder builder;
  if (Status status = buildAll(goblins, layout, builder); !status.ok()) return status;
  const std::uint64_t size = encodedGoblinGeometrySize(builder, layout);
  if (size > std::numeric_limits<std::uint32_t>::max())
    return {StatusCode::kNoRoom, "the goblins take " + std::to_string(size) + " bytes, over 4 GiB"};
  std::vector<std::uint8_t> fresh(static_cast<std::size_t>(size));
  encodeGoblinGeometry(builder, layout, fresh.data(), size);
  if (layout == GoblinLayout::kTagged &&
      fitsLayout(fresh.data(), fresh.size(), GoblinLayout::kNamed)) {
    return {StatusCode::kUnsupported,
            "these goblins' tagged bytes would be read as the named ones"};
  }
  blob = std::move(fresh);
  return {};
}

Status setGoblins(PsdDocument& document, const std::vector<Goblin>& goblins, GoblinLayout layout) {
  std::vector<std::uint8_t> blob;
  if (Status status = encodeGoblins(goblins, layout, blob); !status.ok()) return status;
  const std::int32_t old = document.findLayer(kGoblinLayerName);
  if (old == 0) {
    return {StatusCode::kUnsupported, std::string("the bottom layer is named \"") +
                                          kGoblinLayerName + "\": give it another name"};
  }
  const std::uint64_t room = 4 * std::uint64_t{document.rows} * document.columns;
  if (blob.size() + 4 >= room) {
    return {StatusCode::kNoRoom, std::to_string(blob.size()) + " bytes do not fit a layer of " +
                                     std::to_string(document.columns) + " x " +
                                     std::to_string(document.rows) + " pixels"};
  }
  Status added;
  if (!document.addDataLayer(kGoblinLayerName, static_cast<std::uint32_t>(blob.size()), blob.data(),
                             &added)) {
    return added;
  }
  // Done last: a failure must not lose the goblins that were there.
  document.removeLayer(old);
  return {};
}

}  // namespace morvane
