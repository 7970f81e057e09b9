#ifndef MORVANE_PSD_PSDFORMAT_H_
#define MORVANE_PSD_PSDFORMAT_H_

#include <cstdint>

// Numbers of the published layered-image format that more than one place needs.
namespace morvane {

enum PsdColourMode : std::uint16_t {
  kBitmapMode = 0,
  kGrayMode = 1,
  kIndexedMode = 2,
  kRgbMode = 3,
  kCmykMode = 4,
  kMultichannelMode = 7,
  kDuotoneMode = 8,
  kLabMode = 9,
};

// Bits of a layer's flags.
enum PsdLayerFlag : std::uint8_t {
  kLayerTransparencyProtected = 1,
  kLayerHidden = 2,
  kLayerFlagsAreNew = 8,  // bit 4 says something
  kLayerPixelsIrrelevant = 16,
};

// Bits of a layer mask's flags.
enum PsdMaskFlag : std::uint8_t { kMaskDisabled = 2 };

// Channel ids of a layer beside 0, 1, 2...: the planes of its colour.
enum PsdChannelId : std::uint16_t {
  kTransparencyChannel = 0xFFFF,
  kMaskChannel = 0xFFFE,
};

}  // namespace morvane

#endif  // MORVANE_PSD_PSDFORMAT_H_
