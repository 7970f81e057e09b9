#include <cstring>
#include <new>

#include "geometry/GoblinGeometry.h"
#include "util/ByteOrder.h"

namespace morvane {
namespace {

constexpr std::size_t kWord = 4;

GoblinPoolVertex loadPoolVertex(const std::uint8_t* from) {
  const auto field = [from](std::size_t i) { return loadLeFloat(from + kWord * i); };
  return {field(0), field(1), field(2), field(3), field(4), field(5), field(6), field(7)};
}

}  // namespace

std::ptrdiff_t readU32At(const std::uint8_t* bytes, std::ptrdiff_t offset,
                         std::uint32_t* destination) {
  if (destination == nullptr) return -1;
  *destination = loadLe32(bytes + offset);
  return offset + static_cast<std::ptrdiff_t>(kWord);
}

GoblinGeometryReader::GoblinGeometryReader(const std::uint8_t* bytes, std::size_t size,
                                           GoblinLayout layout)
    : bytes_(bytes), size_(size), layout_(layout) {}

bool GoblinGeometryReader::peekWord(std::uint32_t& word) const {
  if (left() < kWord) return false;
  readU32At(bytes_, static_cast<std::ptrdiff_t>(offset_), &word);
  return true;
}

// Reads a count. As many things of at least `bytesEach` bytes must follow it.
bool GoblinGeometryReader::readCount(std::size_t bytesEach, std::uint32_t& count) {
  if (!peekWord(count) || count > INT32_MAX || count > (left() - kWord) / bytesEach) return false;
  offset_ += kWord;
  return true;
}

bool GoblinGeometryReader::readPoolSize() {
  const std::size_t start = offset_;
  if (layout_ == GoblinLayout::kTagged) {
    std::uint32_t tag = 0;
    if (!peekWord(tag) || tag != kTaggedLayoutTag) return false;
    offset_ += kWord;
  }
  if (readCount(sizeof(GoblinPoolVertex), poolSize_)) return true;
  offset_ = start;
  return false;
}

bool GoblinGeometryReader::readPool(std::vector<GoblinPoolVertex>& pool) {
  if (!readPoolSize()) return false;
  pool.reserve(poolSize_);
  for (std::uint32_t i = 0; i < poolSize_; ++i) {
    pool.push_back(loadPoolVertex(bytes_ + offset_));
    offset_ += sizeof(GoblinPoolVertex);
  }
  return true;
}

// The count is not checked here: when it is too high, a record will be missing, and the records
// before it are good.
bool GoblinGeometryReader::readGoblinCount(std::uint32_t& count) {
  if (!peekWord(count)) return false;
  offset_ += kWord;
  return true;
}

bool GoblinGeometryReader::locatePool(std::size_t& start, std::uint32_t& count) {
  if (!readPoolSize()) return false;
  start = offset_;
  count = poolSize_;
  offset_ += sizeof(GoblinPoolVertex) * poolSize_;
  return true;
}

bool GoblinGeometryReader::locateText(std::size_t& start, std::size_t& length) {
  std::uint32_t count = 0;
  if (!readCount(1, count)) return false;
  start = offset_;
  length = count;
  offset_ += count;
  return true;
}

bool GoblinGeometryReader::readText(std::unique_ptr<char[]>& text) {
  std::size_t start = 0;
  std::size_t length = 0;
  if (!locateText(start, length)) return false;
  text.reset(new (std::nothrow) char[length + 1]);
  lacksMemory_ = text == nullptr;
  if (lacksMemory_) return false;
  if (length > 0) std::memcpy(text.get(), bytes_ + start, length);
  text[length] = '\0';
  return true;
}

// The indices may be null: they are then checked and stepped over.
bool GoblinGeometryReader::readCorners(std::uint32_t corners, std::int32_t* indices) {
  for (std::uint32_t corner = 0; corner < corners; ++corner) {
    std::uint32_t index = 0;
    if (!peekWord(index) || index >= poolSize_) return false;
    if (indices != nullptr) indices[corner] = static_cast<std::int32_t>(index);
    offset_ += kWord;
  }
  return true;
}

bool GoblinGeometryReader::readFace(GoblinFace& face) {
  std::uint32_t corners = 0;
  if (!readCount(kWord, corners)) return false;
  face.cornerCount = static_cast<std::int32_t>(corners);
  if (corners > 0) face.indices.reset(new (std::nothrow) std::int32_t[corners]);
  lacksMemory_ = corners > 0 && face.indices == nullptr;
  if (lacksMemory_) return false;
  return readCorners(corners, face.indices.get());
}

bool GoblinGeometryReader::readGoblin(GoblinRecord& record) {
  record = GoblinRecord();
  if (layout_ == GoblinLayout::kNamed) {
    if (!readText(record.name) || !readText(record.textureFileName)) return false;
  }
  std::uint32_t faces = 0;
  if (!readCount(kWord, faces)) return false;
  record.faceCount = static_cast<std::int32_t>(faces);
  record.faces.reset(new (std::nothrow) GoblinFace[faces]);
  lacksMemory_ = record.faces == nullptr;
  if (lacksMemory_) return false;
  for (std::uint32_t face = 0; face < faces; ++face)
    if (!readFace(record.faces[face])) return false;
  return true;
}

bool GoblinGeometryReader::locateGoblin(GoblinExtent& extent) {
  extent = GoblinExtent();
  if (layout_ == GoblinLayout::kNamed) {
    if (!locateText(extent.name, extent.nameLength)) return false;
    if (!locateText(extent.texture, extent.textureLength)) return false;
  }
  if (!readCount(kWord, extent.faceCount)) return false;
  extent.faces = offset_;
  for (std::uint32_t face = 0; face < extent.faceCount; ++face) {
    std::uint32_t corners = 0;
    if (!readCount(kWord, corners) || !readCorners(corners, nullptr)) return false;
  }
  extent.facesLength = offset_ - extent.faces;
  return true;
}

bool GoblinGeometryReader::skipBlob() {
  std::size_t pool = 0;
  std::uint32_t vertices = 0;
  std::uint32_t goblins = 0;
  if (!locatePool(pool, vertices) || !readGoblinCount(goblins)) return false;
  GoblinExtent extent;
  for (std::uint32_t goblin = 0; goblin < goblins; ++goblin)
    if (!locateGoblin(extent)) return false;
  return left() == 0;
}

bool fitsLayout(const std::uint8_t* bytes, std::size_t size, GoblinLayout layout) {
  return GoblinGeometryReader(bytes, size, layout).skipBlob();
}

GoblinBlobKind classifyGoblinBlob(const std::uint8_t* bytes, std::size_t size) {
  if (fitsLayout(bytes, size, GoblinLayout::kNamed)) return GoblinBlobKind::kNamed;
  if (fitsLayout(bytes, size, GoblinLayout::kTagged)) return GoblinBlobKind::kTagged;
  return GoblinBlobKind::kDamaged;
}

}  // namespace morvane
