#include "library/Pixels.h"

#include <algorithm>
#include <new>
#include <string>
#include <utility>

#include "psd/PackBits.h"
#include "psd/PsdFormat.h"

namespace morvane {
namespace {

constexpr std::uint32_t kCompressionWord = 2;  // bytes, counted in a channel info's length
constexpr std::uint16_t kMaxChannels = 56;     // of the format

// One plane, in the document or decoded from it. Null bytes stand for zeros.
struct Plane {
  const std::uint8_t* bytes = nullptr;
  std::unique_ptr<std::uint8_t[]> decoded;
};

std::uint16_t colourPlanes(const PsdDocument& document) {
  switch (document.colourMode) {
    case kRgbMode:
    case kLabMode:
      return 3;
    case kCmykMode:
      return 4;
    case kMultichannelMode:
      return std::min(document.channels, kMaxChannels);
    default:
      return 1;
  }
}

Status checkDepth(const PsdDocument& document) {
  if (document.depth == 8) return {};
  return {StatusCode::kUnsupported, "pixels of " + std::to_string(document.depth) +
                                        " bits a channel, not 8, are not decoded"};
}

// False when the data does not fill the plane.
bool findPlane(std::uint16_t compression, const std::uint8_t* data, std::size_t length,
               std::uint32_t width, std::uint32_t height, Plane& plane) {
  const std::size_t size = std::size_t{width} * height;
  if (compression == 0) {
    plane.bytes = data;
    return length >= size;
  }
  plane.decoded = packBitsDecodePlane(width, height, data, length);
  plane.bytes = plane.decoded.get();
  return plane.bytes != nullptr;
}

// Puts one plane into every `stride`-th byte.
void interleave(const std::uint8_t* plane, std::size_t size, std::size_t stride, std::uint8_t* to) {
  if (plane == nullptr) {
    for (std::size_t i = 0; i < size; ++i) to[i * stride] = 0;
    return;
  }
  for (std::size_t i = 0; i < size; ++i) to[i * stride] = plane[i];
}

Status allocate(Pixels& pixels) {
  pixels.bytes.reset(new (std::nothrow) std::uint8_t[pixels.size()]);
  if (pixels.bytes != nullptr) return {};
  return {StatusCode::kOutOfMemory, "no memory for " + std::to_string(pixels.size()) + " bytes"};
}

// Positions in the layer of the channels that are pixels, in the order of Pixels.
std::vector<std::uint32_t> pixelChannels(const PsdDocument& document, const PsdLayer& layer) {
  std::vector<std::uint32_t> found;
  const std::uint16_t colours = colourPlanes(document);
  const auto look = [&](std::uint16_t id) {
    for (std::uint32_t c = 0; c < layer.channelCount; ++c) {
      if (layer.channelInfos[c].id == id) {
        found.push_back(c);
        return;
      }
    }
  };
  for (std::uint16_t id = 0; id < colours; ++id) look(id);
  look(kTransparencyChannel);
  return found;
}

Status damagedChannel(std::int32_t layer, std::uint32_t channel) {
  return {StatusCode::kDamaged, "layer " + std::to_string(layer) + ", channel " +
                                    std::to_string(channel) +
                                    ": its data does not fill the layer's rectangle"};
}

// Raw or packed, all of them.
Status checkCompression(const PsdChannel* entries, const std::vector<std::uint32_t>& channels) {
  for (const std::uint32_t channel : channels) {
    if (entries[channel].compression > 1) {
      return {StatusCode::kUnsupported,
              "channel " + std::to_string(channel) + ": its compression " +
                  std::to_string(entries[channel].compression) + " is neither raw nor packed"};
    }
  }
  return {};
}

// A file is not trusted with memory: no more is taken than its data can fill, and a bounded part
// for planes that it does not bring.
bool canFill(const PsdLayer& layer, const std::vector<std::uint32_t>& channels,
             std::uint64_t size) {
  std::uint64_t missing = 0;
  for (const std::uint32_t channel : channels) {
    const std::uint32_t length = layer.channelInfos[channel].length;
    if (length > kCompressionWord) {
      if (size > std::uint64_t{length} * kMaxPackBitsExpansion) return false;
    } else {
      missing += size;
    }
  }
  return missing <= PsdDocument::kMaxMissingPlane;
}

bool setRectangle(const PsdLayer& layer, Pixels& pixels) {
  const std::int64_t width = std::int64_t{layer.right} - layer.left;
  const std::int64_t height = std::int64_t{layer.bottom} - layer.top;
  constexpr std::int64_t kMost = PsdDocument::kMaxSide;
  if (width < 0 || height < 0 || width > kMost || height > kMost) return false;
  pixels.columns = static_cast<std::uint32_t>(width);
  pixels.rows = static_cast<std::uint32_t>(height);
  return true;
}

}  // namespace

Status readLayerPixels(const PsdDocument& document, std::int32_t layer, Pixels& pixels) {
  const PsdChannel* const entries = document.layerChannels(layer);
  if (layer < 0 || layer >= document.layerCount)
    return {StatusCode::kNotFound, "there is no layer " + std::to_string(layer)};
  if (Status status = checkDepth(document); !status.ok()) return status;
  const PsdLayer& record = document.layers[layer];
  Pixels fresh;
  const std::vector<std::uint32_t> channels = pixelChannels(document, record);
  if (Status status = checkCompression(entries, channels); !status.ok()) return status;
  if (!setRectangle(record, fresh) ||
      !canFill(record, channels, std::uint64_t{fresh.rows} * fresh.columns)) {
    return {StatusCode::kDamaged,
            "layer " + std::to_string(layer) + ": its data does not fill its rectangle"};
  }
  for (const std::uint32_t channel : channels)
    fresh.channels.push_back(record.channelInfos[channel].id);
  if (Status status = allocate(fresh); !status.ok()) return status;
  const std::size_t size = std::size_t{fresh.rows} * fresh.columns;
  for (std::size_t i = 0; i < channels.size() && size != 0; ++i) {
    const PsdChannel& entry = entries[channels[i]];
    const std::uint32_t length = record.channelInfos[channels[i]].length;
    Plane plane;
    if (length > kCompressionWord && entry.data != nullptr &&
        !findPlane(entry.compression, entry.data.get(), length - kCompressionWord, fresh.columns,
                   fresh.rows, plane)) {
      return damagedChannel(layer, channels[i]);
    }
    interleave(plane.bytes, size, channels.size(), fresh.bytes.get() + i);
  }
  pixels = std::move(fresh);
  return {};
}

Status readMergedPixels(const PsdDocument& document, Pixels& pixels) {
  if (Status status = checkDepth(document); !status.ok()) return status;
  if (document.mergedCompression > 1) {
    return {StatusCode::kUnsupported, "the merged image's compression " +
                                          std::to_string(document.mergedCompression) +
                                          " is neither raw nor packed"};
  }
  constexpr std::uint32_t kMost = PsdDocument::kMaxSide;
  Pixels fresh;
  fresh.rows = document.rows;
  fresh.columns = document.columns;
  Plane all;
  if (fresh.rows > kMost || fresh.columns > kMost || document.channels > kMaxChannels ||
      document.mergedData == nullptr ||
      !findPlane(document.mergedCompression, document.mergedData.get(), document.mergedLength,
                 fresh.columns, fresh.rows * document.channels, all)) {
    return {StatusCode::kDamaged, "the merged image is cut off"};
  }
  for (std::uint16_t channel = 0; channel < document.channels; ++channel)
    fresh.channels.push_back(channel);
  if (Status status = allocate(fresh); !status.ok()) return status;
  const std::size_t size = std::size_t{fresh.rows} * fresh.columns;
  for (std::size_t i = 0; i < fresh.channels.size(); ++i)
    interleave(all.bytes + i * size, size, fresh.channels.size(), fresh.bytes.get() + i);
  pixels = std::move(fresh);
  return {};
}

}  // namespace morvane
