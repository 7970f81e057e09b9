#include "psd/TgaImport.h"

#include <algorithm>
#include <new>

#include "psd/PlanePacker.h"
#include "psd/SplitPixels.h"
#include "util/ByteOrder.h"

namespace morvane {

namespace {

constexpr std::size_t kHeaderSize = 18;
constexpr std::uint32_t kPlanes = 4;
constexpr const char* kPackedNames[] = {"colour-mapped", "true-colour", "grey"};  // types 9 to 11

constexpr unsigned kRightToLeft = 0x10;
constexpr unsigned kTopToBottom = 0x20;

Status outOfMemory() {
  return {StatusCode::kOutOfMemory, "out of memory"};
}

struct TgaImage {
  std::uint32_t width = 0;
  std::uint32_t height = 0;
  std::uint32_t pixelSize = 0;  // bytes: blue, green, red and perhaps alpha
  std::uint64_t start = 0;      // of the pixels in the file
  unsigned descriptor = 0;

  std::size_t rowSize() const { return std::size_t{width} * pixelSize; }
};

std::string sizeText(const TgaImage& image) {
  return "an image of " + std::to_string(image.width) + " x " + std::to_string(image.height);
}

Status readHeader(InputFile& file, TgaImage& image) {
  if (file.size() < kHeaderSize) {
    return {StatusCode::kDamaged, "header: " + std::to_string(kHeaderSize) + " bytes wanted, " +
                                      std::to_string(file.size()) + " left at byte 0"};
  }
  std::uint8_t bytes[kHeaderSize];
  std::size_t got = 0;
  const Status read = file.read(0, bytes, sizeof bytes, got);
  if (!read.ok()) return read;
  image.width = loadLe16(bytes + 12);
  image.height = loadLe16(bytes + 14);
  const unsigned type = bytes[2];
  if (type >= 9 && type <= 11) {
    return {StatusCode::kUnsupported, "TGA of image type " + std::to_string(type) +
                                          ", run-length " + kPackedNames[type - 9] +
                                          ", at byte 2: only unpacked images are supported"};
  }
  const unsigned depth = bytes[16];
  if (depth != 24 && depth != 32) {
    return {StatusCode::kUnsupported,
            "TGA of " + std::to_string(depth) + " bits at byte 16: only 24 and 32 are supported"};
  }
  image.pixelSize = depth / 8;
  image.start = kHeaderSize + bytes[0];
  image.descriptor = bytes[17];
  return {};
}

std::string warningOf(const TgaImage& image) {
  const bool isTurned = (image.descriptor & kTopToBottom) != 0;
  const bool isMirrored = (image.descriptor & kRightToLeft) != 0;
  if (!isTurned && !isMirrored) return std::string();
  return std::string("its header says that it begins at the ") + (isTurned ? "top" : "bottom") +
         (isMirrored ? " right" : " left") +
         ", but it is taken from the bottom left on, so that it is " +
         (isTurned ? "upside down" : "") + (isTurned && isMirrored ? " and " : "") +
         (isMirrored ? "mirrored" : "") + "; save it with its first row at the bottom";
}

Status checkPixels(const InputFile& file, const TgaImage& image) {
  const std::uint64_t wanted = std::uint64_t{image.height} * image.rowSize();
  const std::uint64_t left = file.size() > image.start ? file.size() - image.start : 0;
  if (wanted > left) {
    return {StatusCode::kDamaged, "pixels: " + std::to_string(wanted) + " bytes wanted, " +
                                      std::to_string(left) + " left at byte " +
                                      std::to_string(image.start)};
  }
  // Checked before memory is taken for the rows of an image without columns.
  if (wanted == 0) return {StatusCode::kDamaged, sizeText(image) + " has no pixels"};
  return {};
}

// The image's planes, in the order of its pixels' bytes, the last row of the file first. Read some
// rows at a time, so that the image is never held unpacked.
class TgaPlanes {
 public:
  explicit TgaPlanes(const TgaImage& image)
      : image_(image),
        packers_{{image.width, image.height},
                 {image.width, image.height},
                 {image.width, image.height},
                 {image.width, image.height}} {}

  Status read(InputFile& file) {
    constexpr std::size_t kAtOnce = 256 * 1024;  // bytes, which stay in the processor's cache
    const std::size_t rowSize = image_.rowSize();
    const std::uint64_t rows = std::clamp<std::uint64_t>(kAtOnce / rowSize, 1, image_.height);
    const std::unique_ptr<std::uint8_t[]> block(new (std::nothrow) std::uint8_t[rows * rowSize]);
    rows_.reset(new (std::nothrow) std::uint8_t[kPlanes * std::size_t{image_.width}]);
    if (!block || !rows_) return outOfMemory();
    for (std::uint64_t left = image_.height; left != 0;) {
      const std::uint64_t count = std::min(left, rows);
      left -= count;
      const std::size_t size = count * rowSize;
      std::size_t got = 0;
      const Status read = file.read(image_.start + left * rowSize, block.get(), size, got);
      if (!read.ok()) return read;
      for (std::uint64_t row = count; row-- != 0;) pack(block.get() + row * rowSize);
    }
    return {};
  }

  // The packed plane of one byte of every pixel; null when memory has run out.
  std::unique_ptr<std::uint8_t[]> take(std::uint32_t byteInPixel, std::uint32_t& length) {
    return packers_[byteInPixel].take(length);
  }

 private:
  void pack(const std::uint8_t* pixels) {
    std::uint8_t* planes[kPlanes];
    for (std::uint32_t i = 0; i < kPlanes; ++i)
      planes[i] = rows_.get() + i * std::size_t{image_.width};
    splitPixels(pixels, image_.width, image_.pixelSize, planes);
    for (std::uint32_t i = 0; i < image_.pixelSize; ++i) packers_[i].pack(planes[i]);
  }

  TgaImage image_;
  PlanePacker packers_[kPlanes];
  std::unique_ptr<std::uint8_t[]> rows_;  // one of each plane
};

}  // namespace

Status importTga(InputFile& file, PsdDocument& document) {
  TgaImage image;
  Status status = readHeader(file, image);
  if (status.ok()) status = checkPixels(file, image);
  if (!status.ok()) return status;
  document.reset(image.width, image.height);
  document.loadWarning = warningOf(image);
  const std::int32_t layer = document.addLayer("$diffuse");
  if (layer < 0)
    return {StatusCode::kOutOfMemory, sizeText(image) + " pixels cannot be a layer: out of memory"};
  TgaPlanes planes(image);
  status = planes.read(file);
  if (!status.ok()) return status;
  constexpr std::uint32_t kChannels[kPlanes] = {3, 2, 1, 0};  // of blue, green, red, alpha
  for (std::uint32_t i = 0; i < image.pixelSize; ++i) {  // without alpha, the layer stays opaque
    std::uint32_t length = 0;
    std::unique_ptr<std::uint8_t[]> packed = planes.take(i, length);
    if (!packed) return outOfMemory();
    document.replaceChannel(layer, kChannels[i], 1, std::move(packed), length);
  }
  return {};
}

}  // namespace morvane
