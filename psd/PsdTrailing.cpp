#include "psd/PsdTrailing.h"

#include <algorithm>
#include <cstring>
#include <iterator>
#include <new>

#include "util/ByteOrder.h"

namespace morvane {

namespace {

constexpr std::uint32_t kHeaderSize = 12;
constexpr std::uint32_t kPlainIdOffset = 15;  // the last byte of an id block that comes first

constexpr const char* kContentFreeKeys[] = {"lyid", "lnsr", "clbl", "infx", "knko",
                                            "lspf", "lclr", "fxrp", "shmd"};

struct TaggedBlock {
  const std::uint8_t* start;
  std::uint32_t dataLength;
  std::uint32_t size;  // with header and padding
};

bool hasKey(const TaggedBlock& block, const char* key) {
  return std::memcmp(block.start + 4, key, 4) == 0;
}

bool describesNoContent(const TaggedBlock& block) {
  return std::any_of(std::begin(kContentFreeKeys), std::end(kContentFreeKeys),
                     [&](const char* key) { return hasKey(block, key); });
}

// The block at `start`; false when there is not a whole one within `length` bytes.
bool readBlock(const std::uint8_t* start, std::uint32_t length, TaggedBlock& block) {
  if (length < kHeaderSize) return false;
  if (std::memcmp(start, "8BIM", 4) != 0 && std::memcmp(start, "8B64", 4) != 0) return false;
  const std::uint32_t dataLength = loadBe32(start + 8);
  const std::uint32_t room = length - kHeaderSize;
  if (dataLength > room || (dataLength & 1) > room - dataLength) return false;
  block = {start, dataLength, kHeaderSize + dataLength + (dataLength & 1)};
  return true;
}

// Calls use(block) for every block; false when the data is not exactly a sequence of blocks.
template <typename Use>
bool forEachBlock(const PsdLayer& layer, Use use) {
  const std::uint8_t* at = layer.trailingData.get();
  std::uint32_t left = layer.trailingLength;
  TaggedBlock block;
  for (; left != 0; at += block.size, left -= block.size) {
    if (!readBlock(at, left, block)) return false;
    use(block);
  }
  return true;
}

}  // namespace

bool inheritTrailingData(const PsdLayer& below, PsdLayer& layer) {
  layer.trailingLength = 0;
  if (below.trailingLength == 0 || !below.trailingData) return true;
  layer.trailingData.reset(new (std::nothrow) std::uint8_t[below.trailingLength]);
  if (!layer.trailingData) return false;
  const bool isSequence = forEachBlock(below, [&](const TaggedBlock& block) {
    if (!describesNoContent(block)) return;
    std::memcpy(layer.trailingData.get() + layer.trailingLength, block.start, block.size);
    layer.trailingLength += block.size;
  });
  if (!isSequence) {
    std::memcpy(layer.trailingData.get(), below.trailingData.get(), below.trailingLength);
    layer.trailingLength = below.trailingLength;
  }
  return true;
}

std::uint8_t* layerIdByte(PsdLayer& layer) {
  std::uint8_t* const data = layer.trailingData.get();
  std::uint8_t* found = nullptr;
  const bool isSequence = forEachBlock(layer, [&](const TaggedBlock& block) {
    if (found || !hasKey(block, "lyid") || block.dataLength == 0) return;
    found = data + (block.start - data) + kHeaderSize + block.dataLength - 1;
  });
  if (isSequence) return found;
  return layer.trailingLength > kPlainIdOffset ? data + kPlainIdOffset : nullptr;
}

}  // namespace morvane
