#include <algorithm>
#include <cstring>
#include <new>

#include "psd/PackBits.h"
#include "psd/PsdDocument.h"

namespace morvane {

namespace {

constexpr std::uint32_t kCompressionWord = 2;  // bytes, counted in a channel info's length

std::int64_t widthOf(const PsdLayer& layer) {
  return std::int64_t{layer.right} - layer.left;
}
std::int64_t heightOf(const PsdLayer& layer) {
  return std::int64_t{layer.bottom} - layer.top;
}

bool isSaneSide(std::int64_t side) {
  return side >= 0 && side <= PsdDocument::kMaxSide;
}

bool hasSaneRectangle(const PsdLayer& layer) {
  return isSaneSide(widthOf(layer)) && isSaneSide(heightOf(layer));
}

// Whether the data of a channel that is raw is exactly the layer's rectangle.
bool fillsRectangle(const PsdLayer& layer, std::uint32_t length) {
  return hasSaneRectangle(layer) &&
         std::int64_t{length} == widthOf(layer) * heightOf(layer) + kCompressionWord;
}

std::unique_ptr<std::uint8_t[]> rawCopy(const PsdChannel& channel, std::size_t size) {
  std::unique_ptr<std::uint8_t[]> plane(new (std::nothrow) std::uint8_t[size]);
  if (plane) std::memcpy(plane.get(), channel.data.get(), size);
  return plane;
}

}  // namespace

std::size_t PsdDocument::channelTableStart(std::int32_t layer) const {
  std::size_t start = 0;
  for (std::int32_t i = 0; i < layer; ++i) start += layers[i].channelCount;
  return start;
}

PsdChannel* PsdDocument::layerChannels(std::int32_t layer) {
  if (layer < 0 || layer >= layerCount) return nullptr;
  return channelTable.data() + channelTableStart(layer);
}

const PsdChannel* PsdDocument::layerChannels(std::int32_t layer) const {
  return const_cast<PsdDocument*>(this)->layerChannels(layer);
}

std::uint32_t PsdDocument::totalChannelCount() const {
  return static_cast<std::uint32_t>(channelTableStart(layerCount));
}

PsdChannelInfo* PsdDocument::findChannelInfo(std::int32_t layer, std::uint32_t channel) {
  if (layer < 0 || layer >= layerCount || channel >= layers[layer].channelCount) return nullptr;
  return &layers[layer].channelInfos[channel];
}

// A loaded file may declare less layer info than it has. Subtracting from that must neither wrap
// around nor reach 0, which would mean that there is no layer info.
void PsdDocument::changeSectionLengths(std::int64_t difference) {
  constexpr std::int64_t kCountWord = 2;
  const std::int64_t info = layerInfoLength + difference;
  layerInfoLength = static_cast<std::uint32_t>(info < kCountWord ? kCountWord : info);
  layerAndMaskLength = static_cast<std::uint32_t>(layerAndMaskLength + difference);
}

void PsdDocument::replaceChannel(std::int32_t layer, std::uint32_t channel,
                                 std::uint16_t compression, Bytes data, std::uint32_t length) {
  PsdChannelInfo* const info = findChannelInfo(layer, channel);
  PsdChannel& entry = layerChannels(layer)[channel];
  const std::uint32_t fullLength = length + kCompressionWord;
  changeSectionLengths(std::int64_t{fullLength} - info->length);
  info->length = fullLength;
  entry.compression = compression;
  entry.data = std::move(data);
}

std::unique_ptr<std::uint8_t[]> PsdDocument::unpackedPlane(std::int32_t layer,
                                                           std::uint32_t channel, std::size_t& size,
                                                           std::uint64_t most) const {
  const PsdLayer& record = layers[layer];
  const PsdChannel& entry = layerChannels(layer)[channel];
  const std::uint32_t length = record.channelInfos[channel].length;
  if (!hasSaneRectangle(record)) return nullptr;
  const auto width = static_cast<std::uint32_t>(widthOf(record));
  const auto height = static_cast<std::uint32_t>(heightOf(record));
  const std::size_t whole = std::size_t{width} * height;
  size = static_cast<std::size_t>(std::min<std::uint64_t>(whole, most));
  if (length <= kCompressionWord || !entry.data) {
    if (size > kMaxMissingPlane) return nullptr;
    return std::unique_ptr<std::uint8_t[]>(new (std::nothrow) std::uint8_t[size]());
  }
  const std::size_t stored = length - kCompressionWord;
  if (entry.compression == 0) return stored == whole ? rawCopy(entry, size) : nullptr;
  return size == whole ? packBitsDecodePlane(width, height, entry.data.get(), stored)
                       : packBitsDecodeStart(height, entry.data.get(), stored, size);
}

bool PsdDocument::decompressChannel(std::int32_t layer, std::uint32_t channel) {
  const PsdChannelInfo* const info = findChannelInfo(layer, channel);
  if (!info) return false;
  const PsdChannel& entry = layerChannels(layer)[channel];
  if (entry.compression == 0 && entry.data) return fillsRectangle(layers[layer], info->length);
  std::size_t size = 0;
  std::unique_ptr<std::uint8_t[]> plane = unpackedPlane(layer, channel, size);
  if (!plane) return false;
  replaceChannel(layer, channel, 0, std::move(plane), static_cast<std::uint32_t>(size));
  return true;
}

bool PsdDocument::compressChannel(std::int32_t layer, std::uint32_t channel) {
  const PsdChannelInfo* const info = findChannelInfo(layer, channel);
  if (!info) return false;
  const PsdChannel& entry = layerChannels(layer)[channel];
  if (entry.compression != 0) return true;
  const PsdLayer& record = layers[layer];
  if (!entry.data || !fillsRectangle(record, info->length)) return false;
  const auto width = static_cast<std::uint32_t>(widthOf(record));
  const auto height = static_cast<std::uint32_t>(heightOf(record));
  std::uint32_t length = 0;
  std::unique_ptr<std::uint8_t[]> packed =
      packBitsEncodePlane(width, height, entry.data.get(), length);
  if (!packed) return false;
  replaceChannel(layer, channel, 1, std::move(packed), length);
  return true;
}

}  // namespace morvane
