#ifndef MORVANE_TOOLS_IMAGE_PICTUREFILE_H_
#define MORVANE_TOOLS_IMAGE_PICTUREFILE_H_

#include <cstdint>
#include <string>
#include <vector>

#include "tools/image/Picture.h"

namespace tools {

// The picture as a PNG file: RGB, or RGBA when it is transparent. Empty when memory runs out.
std::vector<std::uint8_t> pngFile(const Picture& picture);

// The picture as "data:image/...;base64,...": a JPEG of good quality or, when it is transparent, a
// PNG.
std::string pictureUrl(const Picture& picture);

// Base 64 as in RFC 4648, with padding.
std::string base64(const std::vector<std::uint8_t>& bytes);

}  // namespace tools

#endif  // MORVANE_TOOLS_IMAGE_PICTUREFILE_H_
