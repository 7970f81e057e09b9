#include "bench/LayeredFiles.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <map>

#include "bench/Scratch.h"
#include "psd/PackBits.h"
#include "psd/PsdDocument.h"

namespace bench {
namespace {

constexpr const char* kDataLayer = "GoblinGeometry";

// Red, green, blue and an opaque alpha of one kind of content.
Bytes makePixels(Content content, std::uint32_t side, std::uint32_t seed) {
  Bytes rgba(std::size_t{4} * side * side, 255);
  for (std::uint32_t channel = 0; channel < 3; ++channel) {
    const Bytes plane = makePlane(content, side, seed + channel);
    for (std::size_t i = 0; i < plane.size(); ++i) rgba[4 * i + channel] = plane[i];
  }
  return rgba;
}

void setMergedImage(morvane::PsdDocument& document, std::uint32_t side) {
  Bytes planes;
  for (std::uint32_t seed = 1; seed <= 3; ++seed) {
    const Bytes plane = makePlane(Content::kPhoto, side, seed);
    planes.insert(planes.end(), plane.begin(), plane.end());
  }
  document.mergedData =
      morvane::packBitsEncodePlane(side, 3 * side, planes.data(), document.mergedLength);
}

bool addPicture(morvane::PsdDocument& document, const char* name, std::uint32_t side,
                std::uint32_t seed) {
  const Bytes rgba = makePixels(Content::kFlatArt, side, seed);
  const std::int32_t layer = document.addLayer(name);
  return layer >= 0 && document.setLayerPixels(layer, 0, 0, side, side, rgba.data());
}

// What holds less than 1 MiB gets as much as it holds.
bool addData(morvane::PsdDocument& document) {
  constexpr std::uint64_t kSize = 1 << 20;
  const std::uint64_t most = std::uint64_t{4} * document.rows * document.columns - 5;
  const Bytes data(std::min(kSize, most), 0x5A);
  return document.addDataLayer(kDataLayer, static_cast<std::uint32_t>(data.size()), data.data());
}

std::string makeLayeredFile(std::uint32_t side) {
  std::string path = scratchFolder() + "/layers" + std::to_string(side) + ".psd";
  morvane::PsdDocument document(side, side);
  setMergedImage(document, side);
  const bool made = addPicture(document, "$diffuse", side, 4) &&
                    addPicture(document, "detail", side, 7) && addData(document) &&
                    document.save(path.c_str());
  return made ? path : std::string();
}

long peakKilobytes() {
  std::ifstream status("/proc/self/status");
  for (std::string line; std::getline(status, line);)
    if (line.compare(0, 6, "VmHWM:") == 0) return std::strtol(line.c_str() + 6, nullptr, 10);
  return -1;
}

}  // namespace

const std::string& layeredFile(std::uint32_t side) {
  static std::map<std::uint32_t, std::string> paths;
  const auto found = paths.find(side);
  return found != paths.end() ? found->second : paths[side] = makeLayeredFile(side);
}

bool replaceDataLayer(const std::string& path) {
  morvane::PsdDocument document(1, 1);
  if (!document.load(path.c_str()) || document.findLayer(kDataLayer) < 1) return false;
  document.removeLayerByName(kDataLayer);
  return addData(document) && document.save(path.c_str());
}

int replaceDataLayerAlone(const std::string& path) {
  if (!replaceDataLayer(path)) return 1;
  std::printf("%ld\n", peakKilobytes());
  return 0;
}

std::string tgaFile(std::uint32_t side, unsigned bits) {
  const Bytes rgba = makePixels(Content::kFlatArt, side, 11);
  std::string text(18, '\0');
  text[2] = 2;
  text[12] = text[14] = static_cast<char>(side & 0xFF);
  text[13] = text[15] = static_cast<char>(side >> 8);
  text[16] = static_cast<char>(bits);
  for (std::size_t i = 0; i < rgba.size(); i += 4) {
    for (std::size_t channel : {2, 1, 0}) text += static_cast<char>(rgba[i + channel]);
    if (bits == 32) text += static_cast<char>(rgba[i]);
  }
  std::string path = scratchFolder() + "/image" + std::to_string(bits) + ".tga";
  writeFile(path, text);
  return path;
}

}  // namespace bench
