#ifndef MORVANE_TOOLS_IMAGE_PICTURE_H_
#define MORVANE_TOOLS_IMAGE_PICTURE_H_

#include <cstdint>
#include <optional>
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
  bool black = false;              // all of it is, or nearly: what has it on is not seen
};

// Gives the merged image, or what the visible layers show when the merged image cannot be read, is
// black, or has one colour (a program that saves no merged image, a document made of a TGA image).
// Both sides are scaled down alike to at most `maxSide`. False, with the reason, when nothing can
// be shown.
bool readPicture(const morvane::PsdDocument& document, std::uint32_t maxSide, Picture& picture,
                 std::string& fault);

// What the visible layers show, of the same size. Nothing when no layer left a mark.
std::optional<Picture> readComposite(const morvane::PsdDocument& document, std::uint32_t maxSide);

// A layer by itself, cut down to what it covers of such a picture.
struct LayerPicture {
  Picture picture;
  std::uint32_t left = 0;  // in the picture of the document
  std::uint32_t top = 0;
};
std::optional<LayerPicture> readLayer(const morvane::PsdDocument& document, std::int32_t index,
                                      std::uint32_t maxSide);

// The same picture with sides of at most `maxSide`, for a picture that is larger.
Picture scaledDown(const Picture& picture, std::uint32_t maxSide);

}  // namespace tools

#endif  // MORVANE_TOOLS_IMAGE_PICTURE_H_
