#include "library/Pixels.h"

#include <algorithm>
#include <new>
#include <optional>
#include <string>
#include <utility>

#include "psd/PlaneRows.h"
#include "psd/PsdFormat.h"

namespace morvane {
namespace {

constexpr std::uint32_t kCompressionWord = 2;  // bytes, counted in a channel info's length
constexpr std::uint16_t kMaxChannels = 56;     // of the format

std::uint16_t colourPlanes(const PsdDocument& document) {
  if (document.colourMode == kMultichannelMode) return std::min(document.channels, kMaxChannels);
  return std::max<std::uint16_t>(colourPlanesOf(document.colourMode), 1);
}

Status checkDepth(const PsdDocument& document) {
  if (document.depth == 8) return {};
  return {StatusCode::kUnsupported, "pixels of " + std::to_string(document.depth) +
                                        " bits a channel, not 8, are not decoded"};
}

// Puts one row into every `stride`-th byte; null stands for zeros.
void interleave(const std::uint8_t* row, std::size_t size, std::size_t stride, std::uint8_t* to) {
  for (std::size_t i = 0; i < size; ++i) to[i * stride] = row == nullptr ? std::uint8_t{0} : row[i];
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

// The rows of one channel of a layer: empty when the file does not have the plane, and when the
// layer is empty.
struct LayerPlane {
  std::uint32_t channel = 0;
  std::optional<PlaneRows> rows;
};

std::vector<LayerPlane> openPlanes(const PsdLayer& layer, const PsdChannel* entries,
                                   const std::vector<std::uint32_t>& channels,
                                   const Pixels& pixels) {
  const bool isEmpty = pixels.rows == 0 || pixels.columns == 0;
  std::vector<LayerPlane> planes;
  for (const std::uint32_t channel : channels) {
    const std::uint32_t length = layer.channelInfos[channel].length;
    planes.push_back({channel, std::nullopt});
    if (!isEmpty && length > kCompressionWord && entries[channel].data != nullptr) {
      planes.back().rows.emplace(entries[channel].compression, entries[channel].data.get(),
                                 length - kCompressionWord, pixels.columns, pixels.rows);
    }
  }
  return planes;
}

// Whether the file's data can fill the planes that it has, and the missing planes stay below a
// limit. This bounds the memory that a file can claim.
bool canFill(const std::vector<LayerPlane>& planes, std::uint64_t size) {
  std::uint64_t missing = 0;
  for (const LayerPlane& plane : planes) {
    missing += plane.rows ? 0 : size;
    if (plane.rows && !plane.rows->mayBeWhole()) return false;
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
  const Status tooShort = {StatusCode::kDamaged, "layer " + std::to_string(layer) +
                                                     ": its data does not fill its rectangle"};
  if (!setRectangle(record, fresh)) return tooShort;
  std::vector<LayerPlane> planes = openPlanes(record, entries, channels, fresh);
  if (!canFill(planes, std::uint64_t{fresh.rows} * fresh.columns)) return tooShort;
  for (const std::uint32_t channel : channels)
    fresh.channels.push_back(record.channelInfos[channel].id);
  if (Status status = allocate(fresh); !status.ok()) return status;
  std::uint8_t* to = fresh.bytes.get();
  for (std::uint32_t y = 0; y < fresh.rows; ++y) {
    for (std::size_t i = 0; i < planes.size(); ++i) {
      const std::uint8_t* const row = planes[i].rows ? planes[i].rows->next() : nullptr;
      if (planes[i].rows && row == nullptr) return damagedChannel(layer, planes[i].channel);
      interleave(row, fresh.columns, planes.size(), to + i);
    }
    to += fresh.columns * planes.size();
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
  const Status cutOff = {StatusCode::kDamaged, "the merged image is cut off"};
  if (fresh.rows > kMost || fresh.columns > kMost || document.channels > kMaxChannels)
    return cutOff;
  PlaneRows rows(document.mergedCompression, document.mergedData.get(), document.mergedLength,
                 fresh.columns, std::uint64_t{fresh.rows} * document.channels);
  if (!rows.isReadable() || !rows.mayBeWhole()) return cutOff;
  for (std::uint16_t channel = 0; channel < document.channels; ++channel)
    fresh.channels.push_back(channel);
  if (Status status = allocate(fresh); !status.ok()) return status;
  const std::size_t channels = fresh.channels.size();
  for (std::size_t i = 0; i < channels; ++i) {
    std::uint8_t* to = fresh.bytes.get() + i;
    for (std::uint32_t y = 0; y < fresh.rows; ++y, to += fresh.columns * channels) {
      const std::uint8_t* const row = rows.next();
      if (row == nullptr) return cutOff;
      interleave(row, fresh.columns, channels, to);
    }
  }
  pixels = std::move(fresh);
  return {};
}

}  // namespace morvane
