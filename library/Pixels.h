#ifndef MORVANE_LIBRARY_PIXELS_H_
#define MORVANE_LIBRARY_PIXELS_H_

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "psd/PsdDocument.h"
#include "util/Status.h"

namespace morvane {

// Decoded pixels: rows x columns x channels bytes, row after row from the top, the channels of a
// pixel side by side.
struct Pixels {
  std::uint32_t rows = 0;
  std::uint32_t columns = 0;
  // What each channel is: 0, 1, 2... are the planes of the colour mode, kTransparencyChannel is the
  // transparency (255: opaque).
  std::vector<std::uint16_t> channels;
  std::unique_ptr<std::uint8_t[]> bytes;

  std::size_t size() const { return std::size_t{rows} * columns * channels.size(); }
};

// The pixels of one layer, of its own rectangle: the colour planes in order, and the transparency
// last where the layer has one. Masks are left out, and a plane that the file does not bring is
// zeros. kNotFound when there is no such layer; kUnsupported for a depth other than 8 and for a
// compression other than raw and packed; kDamaged when a channel does not fill the rectangle;
// kOutOfMemory.
Status readLayerPixels(const PsdDocument& document, std::int32_t layer, Pixels& pixels);

// The merged image with all of its channels, numbered from 0. The channels after the colours are
// transparency or saved selections. kUnsupported for a depth other than 8 and for a compression
// other than raw and packed; kDamaged when it is cut off; kOutOfMemory.
Status readMergedPixels(const PsdDocument& document, Pixels& pixels);

}  // namespace morvane

#endif  // MORVANE_LIBRARY_PIXELS_H_
