#include <algorithm>
#include <cstring>

#include "psd/PackBits.h"
#include "psd/PsdDocument.h"
#include "psd/PsdFormat.h"

namespace morvane {

namespace {

constexpr std::uint32_t kPixelSize = 4;

struct Rectangle {
  std::int64_t left, top, right, bottom;

  bool isEmpty() const { return left >= right || top >= bottom; }
};

Rectangle intersection(const Rectangle& a, const Rectangle& b) {
  return {std::max(a.left, b.left), std::max(a.top, b.top), std::min(a.right, b.right),
          std::min(a.bottom, b.bottom)};
}

// Stores one byte of every pixel of `source` that lies in `layer` into the layer's plane.
void storePlane(const Rectangle& source, const std::uint8_t* rgba, std::uint32_t byteInPixel,
                const Rectangle& layer, std::uint8_t* plane) {
  const Rectangle shared = intersection(source, layer);
  if (shared.isEmpty()) return;
  for (std::int64_t y = shared.top; y < shared.bottom; ++y) {
    const std::int64_t pixel =
        (y - source.top) * (source.right - source.left) + shared.left - source.left;
    const std::uint8_t* from = rgba + pixel * kPixelSize + byteInPixel;
    std::uint8_t* to =
        plane + (y - layer.top) * (layer.right - layer.left) + shared.left - layer.left;
    for (std::int64_t x = shared.left; x < shared.right; ++x, from += kPixelSize) *to++ = *from;
  }
}

}  // namespace

bool PsdDocument::setLayerPixels(std::int32_t layer, std::uint32_t left, std::uint32_t top,
                                 std::uint32_t right, std::uint32_t bottom,
                                 const std::uint8_t* rgba) {
  if (layer < 0 || layer >= layerCount || colourMode != kRgbMode || depth != 8) return false;
  const PsdLayer& record = layers[layer];
  if (record.channelCount != kPixelSize) return false;
  const Rectangle source = {left, top, right, bottom};
  const Rectangle target = {record.left, record.top, record.right, record.bottom};

  // Only when all four planes are there does the document change.
  std::unique_ptr<std::uint8_t[]> packed[kPixelSize];
  std::uint32_t lengths[kPixelSize];
  for (std::uint32_t c = 0; c < kPixelSize; ++c) {
    const std::uint32_t byteInPixel = c == 0 ? 3 : c - 1;  // transparency is the first channel
    std::size_t size = 0;
    const std::unique_ptr<std::uint8_t[]> plane = unpackedPlane(layer, c, size);
    if (!plane) return false;
    storePlane(source, rgba, byteInPixel, target, plane.get());
    packed[c] = packBitsEncodePlane(static_cast<std::uint32_t>(target.right - target.left),
                                    static_cast<std::uint32_t>(target.bottom - target.top),
                                    plane.get(), lengths[c]);
    if (!packed[c]) return false;
  }
  for (std::uint32_t c = 0; c < kPixelSize; ++c)
    replaceChannel(layer, c, 1, std::move(packed[c]), lengths[c]);
  return true;
}

}  // namespace morvane
