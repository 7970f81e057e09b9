#include "tools/cli/ViewItems.h"

#include <utility>

#include "tools/image/LayerStack.h"
#include "tools/model/DocumentReport.h"
#include "util/FileFacts.h"
#include "util/Path.h"

namespace tools {
namespace {

const char* sectionName(const morvane::PsdLayer& layer) {
  switch (sectionOf(layer)) {
    case LayerSection::kHeader:
      return "group";
    case LayerSection::kDivider:
      return "end";
    case LayerSection::kNone:
      break;
  }
  return "layer";
}

// More layers than these are shown without their pixels, which would take minutes.
constexpr std::int32_t kMaxShownLayers = 64;

void readLayers(const morvane::PsdDocument& document, ViewItem& item) {
  if (!item.picture || document.layerCount > kMaxShownLayers) return;
  for (std::int32_t i = 0; i < document.layerCount; ++i) {
    const morvane::PsdLayer& layer = document.layers[static_cast<std::size_t>(i)];
    ViewLayer shown;
    shown.section = sectionName(layer);
    shown.clipped = layer.clipping != 0;
    shown.pixels = readLayer(document, i, ViewPage::kMaxPicture);
    item.layers.push_back(std::move(shown));
  }
  if (!item.picture->composed && document.layerCount > 0)
    item.composite = readComposite(document, ViewPage::kMaxPicture);
}

}  // namespace

morvane::Status readDocument(const std::string& path, morvane::PsdDocument& document,
                             ViewItem& item) {
  morvane::Status status;
  if (!document.load(path.c_str(), &status)) return status;
  item.goblins = readGoblins(document);
  item.report = documentJson(item.file, morvane::factsOf(path).size, document, item.goblins);
  Picture picture;
  if (readPicture(document, ViewPage::kMaxPicture, picture, item.pictureFault))
    item.picture = std::move(picture);
  readLayers(document, item);
  return status;
}

ViewItem fileItem(const std::string& shown) {
  ViewItem item;
  item.name = morvane::nameOf(morvane::pathOf(shown).filename());
  item.group = morvane::nameOf(morvane::pathOf(shown).parent_path());
  item.file = shown;
  return item;
}

ViewItem tileItem(const SceneTile& tile, const std::string& scene) {
  ViewItem item;
  item.name = tile.name;
  item.group = scene;
  item.file = tile.texture;
  item.fault = tile.fault;
  item.missing = tile.missing;
  return item;
}

void addSurface(const SceneTile& tile, ViewItem& item) {
  if (!tile.mesh.triangles.empty()) item.tile = tile.mesh;
  item.placement = tile.placement;
  item.unit = lengthUnit();
}

}  // namespace tools
