#include "psd/TgaImport.h"

#include "util/ByteOrder.h"

namespace morvane {

namespace {

constexpr std::size_t kHeaderSize = 18;

struct TgaImage {
  std::uint32_t width = 0;
  std::uint32_t height = 0;
  std::uint32_t pixelSize = 0;  // bytes: blue, green, red and perhaps alpha
  const std::uint8_t* pixels = nullptr;
};

bool readTga(const std::uint8_t* bytes, std::size_t size, TgaImage& image, std::string& error) {
  if (size < kHeaderSize) {
    error = "header: " + std::to_string(kHeaderSize) + " bytes wanted, " + std::to_string(size) +
            " left at byte 0";
    return false;
  }
  const std::size_t idLength = bytes[0];
  image.width = loadLe16(bytes + 12);
  image.height = loadLe16(bytes + 14);
  const unsigned depth = bytes[16];
  if (depth != 24 && depth != 32) {
    error = "TGA of " + std::to_string(depth) + " bits at byte 16: only 24 and 32 are supported";
    return false;
  }
  image.pixelSize = depth / 8;
  const std::size_t start = kHeaderSize + idLength;
  const std::uint64_t wanted = std::uint64_t{image.width} * image.height * image.pixelSize;
  const std::size_t left = size > start ? size - start : 0;
  if (wanted > left) {
    error = "pixels: " + std::to_string(wanted) + " bytes wanted, " + std::to_string(left) +
            " left at byte " + std::to_string(start);
    return false;
  }
  image.pixels = bytes + start;
  return true;
}

// Takes one byte of every pixel, the last row first.
void copyPlane(const TgaImage& image, std::uint32_t byteInPixel, std::uint8_t* plane) {
  for (std::uint32_t row = image.height; row-- > 0;) {
    const std::uint8_t* from =
        image.pixels + std::size_t{row} * image.width * image.pixelSize + byteInPixel;
    for (std::uint32_t x = 0; x < image.width; ++x, from += image.pixelSize) *plane++ = *from;
  }
}

// One plane at a time, so that the image is never held unpacked a second time.
bool fillChannel(const TgaImage& image, std::uint32_t byteInPixel, PsdDocument& document,
                 std::int32_t layer, std::uint32_t channel) {
  if (!document.decompressChannel(layer, channel)) return false;
  copyPlane(image, byteInPixel, document.layerChannels(layer)[channel].data.get());
  return document.compressChannel(layer, channel);
}

}  // namespace

bool importTga(const std::uint8_t* bytes, std::size_t size, PsdDocument& document,
               std::string& error) {
  TgaImage image;
  if (!readTga(bytes, size, image, error)) return false;
  document.reset(image.width, image.height);
  const std::int32_t layer = document.addLayer("$diffuse");
  if (layer < 0) {
    error = "an image of " + std::to_string(image.width) + " x " + std::to_string(image.height) +
            " pixels cannot be a layer";
    return false;
  }
  const bool hasAlpha = image.pixelSize == 4;  // the new layer is opaque already
  const bool filled = fillChannel(image, 2, document, layer, 1) &&
                      fillChannel(image, 1, document, layer, 2) &&
                      fillChannel(image, 0, document, layer, 3) &&
                      (!hasAlpha || fillChannel(image, 3, document, layer, 0));
  if (!filled) error = "out of memory";
  return filled;
}

}  // namespace morvane
