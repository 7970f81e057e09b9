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

// The planes of one colour, transparency aside; 0 for a mode in which their number varies or is
// not known.
constexpr std::uint16_t colourPlanesOf(std::uint16_t mode) {
  switch (mode) {
    case kBitmapMode:
    case kGrayMode:
    case kIndexedMode:
    case kDuotoneMode:
      return 1;
    case kRgbMode:
    case kLabMode:
      return 3;
    case kCmykMode:
      return 4;
    default:
      return 0;
  }
}

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
