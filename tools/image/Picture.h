#ifndef MORVANE_TOOLS_IMAGE_PICTURE_H_
#define MORVANE_TOOLS_IMAGE_PICTURE_H_

#include <cstdint>
#include <string>
#include <vector>

#include "psd/PsdDocument.h"

namespace tools {

// A document as a picture for the screen: 8 bits, no colour management.
struct Picture {
  std::uint32_t width = 0;
  std::uint32_t height = 0;
  std::vector<std::uint8_t> rgba;  // row after row from the top, alpha not multiplied in
  bool transparent = false;        // an alpha below 255 occurs
  bool composed = false;           // from the layers, not from the merged image
};

// Gives the merged image, or what the visible layers show when the merged image cannot be read or
// all of its pixels are equal (a program that saves no merged image, a document made of a TGA
// image). Both sides are scaled down alike to at most `maxSide`. False, with the reason, when
// nothing can be shown.
bool readPicture(const morvane::PsdDocument& document, std::uint32_t maxSide, Picture& picture,
                 std::string& fault);

// The same picture with sides of at most `maxSide`, for a picture that is larger.
Picture scaledDown(const Picture& picture, std::uint32_t maxSide);

}  // namespace tools

#endif  // MORVANE_TOOLS_IMAGE_PICTURE_H_
