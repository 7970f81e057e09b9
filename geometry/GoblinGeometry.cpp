#include "geometry/GoblinGeometry.h"

#include <cstring>

#include "geometry/TileMatrix.h"
#include "util/ByteOrder.h"

namespace morvane {
namespace {

constexpr float kBoundaryTolerance = 0.01F;

bool isOutside(const Float3& p) {
  const auto outside = [](float coordinate) {
    return coordinate < -kBoundaryTolerance || coordinate > 1.0F + kBoundaryTolerance;
  };
  return outside(p.x) || outside(p.z);
}

GoblinPoolVertex poolVertex(const Float3& position, const Float3& normal, const Matrix44& toTile,
                            GoblinLayout layout) {
  Quat direction = transformVector4({normal.x, normal.y, normal.z, 0.0F}, toTile);
  direction.normalise();
  const float z = layout == GoblinLayout::kTagged ? 1.0F - position.z : position.z;
  return {position.x, position.y, z, direction.x, direction.y, direction.z, position.x, z};
}

// The faces in the layout's corner order. `base` is the pool index of the mesh's first vertex.
std::unique_ptr<GoblinFace[]> facesOf(const WeldedMesh& mesh, std::int32_t base,
                                      GoblinLayout layout) {
  auto faces = std::make_unique<GoblinFace[]>(mesh.triangles.size());
  for (std::size_t i = 0; i < mesh.triangles.size(); ++i) {
    const std::array<std::int32_t, 3>& corners = mesh.triangles[i];
    faces[i].cornerCount = 3;
    faces[i].indices.reset(new std::int32_t[3]);
    for (std::size_t corner = 0; corner < 3; ++corner) {
      const std::size_t from = layout == GoblinLayout::kNamed ? 2 - corner : corner;
      faces[i].indices[corner] = base + corners[from];
    }
  }
  return faces;
}

std::size_t textLength(const std::unique_ptr<char[]>& text) {
  return text ? std::strlen(text.get()) : 0;
}

std::uint64_t recordSize(const GoblinRecord& record, GoblinLayout layout) {
  std::uint64_t size = 4;
  if (layout == GoblinLayout::kNamed)
    size += 8 + std::uint64_t{textLength(record.name)} + textLength(record.textureFileName);
  for (std::int32_t face = 0; face < record.faceCount; ++face)
    size += 4 + 4 * static_cast<std::uint64_t>(record.faces[face].cornerCount);
  return size;
}

std::ptrdiff_t writeText(std::uint8_t* bytes, std::ptrdiff_t offset,
                         const std::unique_ptr<char[]>& text) {
  const std::size_t length = textLength(text);
  offset = writeU32At(bytes, offset, static_cast<std::uint32_t>(length));
  if (length > 0) std::memcpy(bytes + offset, text.get(), length);
  return offset + static_cast<std::ptrdiff_t>(length);
}

std::ptrdiff_t writePoolVertex(std::uint8_t* bytes, std::ptrdiff_t offset,
                               const GoblinPoolVertex& v) {
  for (const float field : {v.x, v.y, v.z, v.nx, v.ny, v.nz, v.u, v.v}) {
    storeLeFloat(bytes + offset, field);
    offset += 4;
  }
  return offset;
}

std::ptrdiff_t writeRecord(std::uint8_t* bytes, std::ptrdiff_t offset, const GoblinRecord& record,
                           GoblinLayout layout) {
  if (layout == GoblinLayout::kNamed) {
    offset = writeText(bytes, offset, record.name);
    offset = writeText(bytes, offset, record.textureFileName);
  }
  offset = writeU32At(bytes, offset, static_cast<std::uint32_t>(record.faceCount));
  for (std::int32_t i = 0; i < record.faceCount; ++i) {
    const GoblinFace& face = record.faces[i];
    offset = writeU32At(bytes, offset, static_cast<std::uint32_t>(face.cornerCount));
    for (std::int32_t corner = 0; corner < face.cornerCount; ++corner)
      offset = writeU32At(bytes, offset, static_cast<std::uint32_t>(face.indices[corner]));
  }
  return offset;
}

}  // namespace

std::unique_ptr<char[]> copyText(const char* text) {
  const std::size_t size = std::strlen(text) + 1;
  std::unique_ptr<char[]> copy(new char[size]);
  std::memcpy(copy.get(), text, size);
  return copy;
}

std::size_t appendGoblin(const WeldedMesh& mesh, const Matrix44& toTile, GoblinLayout layout,
                         const char* name, const char* textureFileName,
                         GoblinGeometryBuilder& builder) {
  const auto base = static_cast<std::int32_t>(builder.pool.size());
  std::size_t outside = 0;
  for (const VertexKey& vertex : mesh.vertices) {
    const Float3 position = transformPoint(vertex.position, toTile);
    if (isOutside(position)) ++outside;
    builder.pool.push_back(poolVertex(position, vertex.normal, toTile, layout));
  }
  auto record = std::make_unique<GoblinRecord>();
  if (name != nullptr) record->name = copyText(name);
  if (textureFileName != nullptr) record->textureFileName = copyText(textureFileName);
  record->faceCount = static_cast<std::int32_t>(mesh.triangles.size());
  record->faces = facesOf(mesh, base, layout);
  builder.records.push_back(std::move(record));
  return outside;
}

std::ptrdiff_t writeU32At(std::uint8_t* bytes, std::ptrdiff_t offset, std::uint32_t value) {
  storeLe32(bytes + offset, value);
  return offset + 4;
}

std::uint64_t encodedGoblinGeometrySize(const GoblinGeometryBuilder& builder, GoblinLayout layout) {
  std::uint64_t size = layout == GoblinLayout::kTagged ? 12 : 8;
  size += sizeof(GoblinPoolVertex) * std::uint64_t{builder.pool.size()};
  for (const auto& record : builder.records) size += recordSize(*record, layout);
  return size;
}

std::uint32_t encodeGoblinGeometry(const GoblinGeometryBuilder& builder, GoblinLayout layout,
                                   std::uint8_t* bytes, std::uint64_t capacity) {
  const std::uint64_t size = encodedGoblinGeometrySize(builder, layout);
  if (size > capacity || size > UINT32_MAX) return 0;
  std::ptrdiff_t offset = 0;
  if (layout == GoblinLayout::kTagged) offset = writeU32At(bytes, offset, kTaggedLayoutTag);
  offset = writeU32At(bytes, offset, static_cast<std::uint32_t>(builder.pool.size()));
  for (const GoblinPoolVertex& vertex : builder.pool)
    offset = writePoolVertex(bytes, offset, vertex);
  offset = writeU32At(bytes, offset, static_cast<std::uint32_t>(builder.records.size()));
  for (const auto& record : builder.records) offset = writeRecord(bytes, offset, *record, layout);
  return static_cast<std::uint32_t>(offset);
}

}  // namespace morvane
