#include "tile/TileTexture.h"

#include <algorithm>
#include <cctype>

#include "geometry/GoblinGeometry.h"
#include "util/Platform.h"

namespace morvane {
namespace {

constexpr const char* kTgaLayerName = "$diffuse";

bool isPsdName(const SplitPath& path) {
  std::string extension = path.extension;
  std::transform(extension.begin(), extension.end(), extension.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return extension == ".psd";
}

// The first layer that no export of a TGA texture makes; null when there is none.
const PsdLayer* foreignLayer(const PsdDocument& document) {
  for (std::size_t i = 0; i < document.layers.size(); ++i) {
    const PsdLayer& layer = document.layers[i];
    const std::string name = layer.name ? layer.name.get() : "";
    const bool isOwn = i == 0 ? name.empty() : name == kTgaLayerName || name == kGoblinLayerName;
    if (!isOwn) return &layer;
  }
  return nullptr;
}

}  // namespace

std::string tileFileOf(const std::string& texture) {
  const SplitPath path = splitPath(texture);
  return isPsdName(path) ? texture : path.drive + path.directory + path.name + ".psd";
}

ExistingFile lookAt(const std::string& file) {
  ExistingFile existing;
  existing.identity = identityAt(file);
  if (!existing.identity.known) return existing;
  PsdDocument document(1, 1);
  if (!document.load(file.c_str(), &existing.loaded)) return existing;
  existing.identity = document.identity();
  const PsdLayer* const layer = foreignLayer(document);
  if (layer != nullptr) {
    existing.picture =
        std::string("it has the layer \"") + (layer->name ? layer->name.get() : "") + '"';
  }
  return existing;
}

std::string whyNotReplaced(const std::string& texture, FileIdentity& found) {
  const std::string file = tileFileOf(texture);
  const ExistingFile existing = file == texture ? ExistingFile() : lookAt(file);
  found = existing.identity;
  const bool isPicture = !existing.picture.empty();
  const std::string& why = isPicture ? existing.picture : existing.loaded.text();
  if (why.empty()) return std::string();
  return std::string(isPicture ? "picture (" : "file (") + why + "), which an export of " +
         texture + " would replace; rename one of the two, or use the PSD as the texture";
}

Status removeGoblins(PsdDocument& document) {
  document.removeLayersByName(kGoblinLayerName);
  if (document.findLayer(kGoblinLayerName) < 0) return {};
  return {StatusCode::kUnsupported,
          std::string("its bottom layer is named ") + kGoblinLayerName + "; rename that layer"};
}

}  // namespace morvane
