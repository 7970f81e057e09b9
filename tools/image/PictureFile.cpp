#include "tools/image/PictureFile.h"

#include <cstdlib>
#include <new>

// The image writer has no way to report a lack of memory: it would end the process.
static void* orThrow(void* block) {
  if (block == nullptr) throw std::bad_alloc();
  return block;
}

#define STBIW_MALLOC(size) orThrow(std::malloc(size))
#define STBIW_REALLOC(old, size) orThrow(std::realloc(old, size))
#define STBIW_FREE(block) std::free(block)
#define STB_IMAGE_WRITE_STATIC
#define STB_IMAGE_WRITE_IMPLEMENTATION
#define STBI_WRITE_NO_STDIO
// Casts around the macros above count as this file's own.
#if defined(__GNUC__)
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wold-style-cast"
#endif
#include <stb/stb_image_write.h>
#if defined(__GNUC__)
#pragma GCC diagnostic pop
#endif

namespace tools {
namespace {

constexpr int kJpegQuality = 88;

void append(void* context, void* data, int size) {
  auto* bytes = static_cast<std::vector<std::uint8_t>*>(context);
  const auto* from = static_cast<const std::uint8_t*>(data);
  bytes->insert(bytes->end(), from, from + size);
}

std::vector<std::uint8_t> withoutAlpha(const Picture& picture) {
  std::vector<std::uint8_t> rgb;
  rgb.reserve(picture.rgba.size() / 4 * 3);
  for (std::size_t i = 0; i < picture.rgba.size(); i += 4)
    rgb.insert(rgb.end(), &picture.rgba[i], &picture.rgba[i] + 3);
  return rgb;
}

}  // namespace

std::vector<std::uint8_t> pngFile(const Picture& picture) {
  const auto width = static_cast<int>(picture.width);
  const auto height = static_cast<int>(picture.height);
  std::vector<std::uint8_t> file;
  if (picture.transparent) {
    stbi_write_png_to_func(append, &file, width, height, 4, picture.rgba.data(), 4 * width);
  } else {
    const auto rgb = withoutAlpha(picture);
    stbi_write_png_to_func(append, &file, width, height, 3, rgb.data(), 3 * width);
  }
  return file;
}

std::string pictureUrl(const Picture& picture) {
  if (picture.transparent) return "data:image/png;base64," + base64(pngFile(picture));
  std::vector<std::uint8_t> file;
  const auto rgb = withoutAlpha(picture);
  stbi_write_jpg_to_func(append, &file, static_cast<int>(picture.width),
                         static_cast<int>(picture.height), 3, rgb.data(), kJpegQuality);
  return "data:image/jpeg;base64," + base64(file);
}

std::string base64(const std::vector<std::uint8_t>& bytes) {
  static constexpr char kDigits[] =
      "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::string text;
  text.reserve((bytes.size() + 2) / 3 * 4);
  for (std::size_t i = 0; i < bytes.size(); i += 3) {
    std::uint32_t group = 0;
    for (std::size_t k = 0; k < 3; ++k)
      group = group << 8 | (i + k < bytes.size() ? bytes[i + k] : 0u);
    for (std::size_t k = 0; k < 4; ++k)
      text += i + k > bytes.size() ? '=' : kDigits[group >> (18 - 6 * k) & 63];
  }
  return text;
}

}  // namespace tools
