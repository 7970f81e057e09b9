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

// Reads a count of things that take at least `bytesEach` bytes and must all follow it.
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

// Nothing is made of the count itself: a count that is too high shows when a record is missing, and
// the records before it are good.
bool GoblinGeometryReader::readGoblinCount(std::uint32_t& count) {
  if (!peekWord(count)) return false;
  offset_ += kWord;
  return true;
}

bool GoblinGeometryReader::readText(std::unique_ptr<char[]>* text) {
  std::uint32_t length = 0;
  if (!readCount(1, length)) return false;
  if (text != nullptr) {
    text->reset(new (std::nothrow) char[std::size_t{length} + 1]);
    if (!*text) return false;
    if (length > 0) std::memcpy(text->get(), bytes_ + offset_, length);
    (*text)[length] = '\0';
  }
  offset_ += length;
  return true;
}

bool GoblinGeometryReader::readFace(GoblinFace* face) {
  std::uint32_t corners = 0;
  if (!readCount(kWord, corners)) return false;
  if (face != nullptr) {
    face->cornerCount = static_cast<std::int32_t>(corners);
    if (corners > 0) face->indices.reset(new (std::nothrow) std::int32_t[corners]);
    if (corners > 0 && !face->indices) return false;
  }
  for (std::uint32_t corner = 0; corner < corners; ++corner) {
    std::uint32_t index = 0;
    if (!peekWord(index) || index >= poolSize_) return false;
    if (face != nullptr) face->indices[corner] = static_cast<std::int32_t>(index);
    offset_ += kWord;
  }
  return true;
}

bool GoblinGeometryReader::readRecord(GoblinRecord* record) {
  if (layout_ == GoblinLayout::kNamed) {
    if (!readText(record != nullptr ? &record->name : nullptr)) return false;
    if (!readText(record != nullptr ? &record->textureFileName : nullptr)) return false;
  }
  std::uint32_t faces = 0;
  if (!readCount(kWord, faces)) return false;
  if (record != nullptr) {
    record->faceCount = static_cast<std::int32_t>(faces);
    record->faces.reset(new (std::nothrow) GoblinFace[faces]);
    if (!record->faces) return false;
  }
  for (std::uint32_t face = 0; face < faces; ++face) {
    if (!readFace(record != nullptr ? &record->faces[face] : nullptr)) return false;
  }
  return true;
}

bool GoblinGeometryReader::readGoblin(GoblinRecord& record) {
  record = GoblinRecord();
  return readRecord(&record);
}

bool GoblinGeometryReader::skipBlob() {
  if (!readPoolSize()) return false;
  offset_ += sizeof(GoblinPoolVertex) * poolSize_;
  std::uint32_t goblins = 0;
  if (!readGoblinCount(goblins)) return false;
  for (std::uint32_t goblin = 0; goblin < goblins; ++goblin) {
    if (!readRecord(nullptr)) return false;
  }
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
