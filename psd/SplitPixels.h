#ifndef MORVANE_PSD_SPLITPIXELS_H_
#define MORVANE_PSD_SPLITPIXELS_H_

#include <cstddef>
#include <cstdint>

namespace morvane {

// Takes `count` pixels of 3 or 4 bytes apart: planes[i] gets byte i of each.
void splitPixels(const std::uint8_t* pixels, std::size_t count, std::uint32_t pixelSize,
                 std::uint8_t* const planes[4]);

}  // namespace morvane

#endif  // MORVANE_PSD_SPLITPIXELS_H_
