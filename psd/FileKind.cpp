#include "psd/FileKind.h"

#include <cstdio>
#include <cstring>
#include <string_view>

namespace morvane {

namespace {

struct Kind {
  std::string_view first;
  const char* name;
};

constexpr std::string_view kPsd = "8BPS";
constexpr Kind kKinds[] = {
    {kPsd, "a PSD file"},
    {"\xFF\xD8\xFF", "a JPEG image"},
    {"\x89PNG", "a PNG image"},
    {"GIF8", "a GIF image"},
    {std::string_view("II*\0", 4), "a TIFF image"},
    {std::string_view("MM\0*", 4), "a TIFF image"},
    {std::string_view("II+\0", 4), "a TIFF image"},
    {std::string_view("MM\0+", 4), "a TIFF image"},
    {"RIFF", "a WebP image or another RIFF file"},
    {"DDS ", "a DDS image"},
    {"v/1\x01", "an OpenEXR image"},
    {"#?RA", "a Radiance HDR image"},
    {"%PDF", "a PDF document"},
    {"PK\x03\x04", "a ZIP archive"},
    {"//Ma", "a Maya ASCII scene"},
    {"FOR4", "a Maya binary scene"},
    {"FOR8", "a Maya binary scene"},
    {"BM", "a BMP image"},
};

}  // namespace

const char* knownKind(const void* first) {
  for (const Kind& kind : kKinds)
    if (std::memcmp(first, kind.first.data(), kind.first.size()) == 0) return kind.name;
  return nullptr;
}

bool isPsd(const void* first) {
  return std::memcmp(first, kPsd.data(), kPsd.size()) == 0;
}

std::string describeBeginning(const void* first) {
  const auto* const bytes = static_cast<const unsigned char*>(first);
  char text[32];
  std::snprintf(text, sizeof text, "begins with %02X %02X %02X %02X", bytes[0], bytes[1], bytes[2],
                bytes[3]);
  const char* const kind = knownKind(first);
  return kind ? text + std::string(", ") + kind : text;
}

}  // namespace morvane
