#include "host/binary/ChunkWalker.h"

#include <algorithm>
#include <utility>

#include "util/ByteOrder.h"

namespace host {
namespace {

constexpr std::size_t kFormSize = 4;

constexpr std::size_t headerSize(bool isWide) {
  return isWide ? 16 : 8;
}

}  // namespace

std::string tagText(std::uint32_t tag) {
  constexpr char kDigits[] = "0123456789ABCDEF";
  std::string letters;
  std::string digits;
  bool isPrintable = true;
  for (int shift = 24; shift >= 0; shift -= 8) {
    const std::uint32_t byte = tag >> shift & 0xFF;
    isPrintable = isPrintable && byte >= 0x20 && byte < 0x7F;
    letters += static_cast<char>(byte);
    digits += kDigits[byte >> 4];
    digits += kDigits[byte & 15];
  }
  return isPrintable ? letters : digits;
}

bool isBinarySceneStart(std::string_view bytes) {
  const bool isWide = bytes.substr(0, 4) == "FOR8";
  return (isWide || bytes.substr(0, 4) == "FOR4") && bytes.size() >= headerSize(isWide) &&
         bytes.substr(headerSize(isWide), kFormSize) == "Maya";
}

ChunkWalker::ChunkWalker(ByteWindow& bytes) : bytes_(bytes) {
  const std::uint8_t* const first = bytes.at(0, 4);
  isWide_ = first == nullptr || morvane::loadBe32(first) == tagOf("FOR8");
}

ChunkWalker::Step ChunkWalker::report(std::string damage, std::uint64_t next) {
  damage_ = std::move(damage);
  position_ = next;
  return Step::kDamage;
}

void ChunkWalker::skipContainer() {
  position_ = open_.empty() ? bytes_.size() : open_.back().end;
}

bool ChunkWalker::isContainer() const {
  return isWide_ ? chunk_.tag == tagOf("FOR8") || chunk_.tag == tagOf("LIS8")
                 : chunk_.tag == tagOf("FOR4") || chunk_.tag == tagOf("LIS4");
}

bool ChunkWalker::readHeader(std::uint64_t end) {
  const std::size_t size = headerSize(isWide_);
  chunk_ = Chunk();
  chunk_.start = position_;
  const std::uint8_t* const header = end - position_ < size ? nullptr : bytes_.at(position_, size);
  if (header == nullptr) return false;
  chunk_.tag = morvane::loadBe32(header);
  chunk_.length = isWide_ ? morvane::loadBe64(header + 8) : morvane::loadBe32(header + 4);
  chunk_.data = position_ + size;
  return true;
}

// When every container around is too short as well, the file was cut; else the length is wrong.
ChunkWalker::Step ChunkWalker::tooLong(std::uint64_t left, std::uint64_t end) {
  if (open_.empty() || open_.back().isCut) {
    isCut_ = true;
    return report("the file ends inside the chunk " + tagText(chunk_.tag), end);
  }
  return report("the chunk " + tagText(chunk_.tag) + " says that it holds " +
                    std::to_string(chunk_.length) + " bytes, where " + std::to_string(left) +
                    " are left",
                end);
}

ChunkWalker::Step ChunkWalker::openContainer(std::uint64_t left) {
  const bool isCut = chunk_.length > left;
  const std::uint64_t end = chunk_.data + std::min(chunk_.length, left);
  const std::uint8_t* const form =
      end - chunk_.data < kFormSize ? nullptr : bytes_.at(chunk_.data, kFormSize);
  if (form == nullptr) {
    isCut_ = isCut_ || isCut;
    return report("the container " + tagText(chunk_.tag) + " has no form type", end);
  }
  if (open_.size() == kMaxDepth)
    return report("containers stand more than " + std::to_string(kMaxDepth) + " deep", end);
  chunk_.form = morvane::loadBe32(form);
  chunk_.data += kFormSize;
  chunk_.length = end - chunk_.data;
  position_ = chunk_.data;
  isCut_ = isCut_ || isCut;
  open_.push_back({end, isCut});
  return Step::kOpen;
}

ChunkWalker::Step ChunkWalker::next() {
  if (!open_.empty() && position_ >= open_.back().end) {
    position_ = open_.back().end;
    open_.pop_back();
    return Step::kClose;
  }
  const std::uint64_t end = open_.empty() ? bytes_.size() : open_.back().end;
  if (bytes_.failed() || position_ >= end) return Step::kEnd;
  if (!readHeader(end)) {
    isCut_ = isCut_ || open_.empty() || open_.back().isCut;
    return report(std::to_string(end - position_) + " bytes stand where a chunk should begin", end);
  }
  const std::uint64_t left = end - chunk_.data;
  const bool mayBeCut = open_.empty() || open_.back().isCut;
  if (chunk_.length > left && !(isContainer() && mayBeCut)) return tooLong(left, end);
  if (isContainer()) return openContainer(left);
  const std::uint64_t alignment = isWide_ ? 8 : 4;
  const std::uint64_t padding = (alignment - chunk_.length % alignment) % alignment;
  position_ = chunk_.data + chunk_.length + std::min(padding, left - chunk_.length);
  return Step::kChunk;
}

}  // namespace host
