#include "tile/TileExport.h"

#include <maya/MFnMesh.h>

#include <memory>

#include "geometry/GoblinGeometry.h"
#include "tile/MaterialLookup.h"
#include "tile/SaveFailure.h"
#include "tile/TileGoblins.h"
#include "tile/TileLines.h"
#include "tile/TileTexture.h"

namespace morvane {
namespace {

bool findTexture(const TileGround& ground, TileMessages& messages, std::string& texture) {
  MFnMesh mesh(ground.mesh.node());
  const auto name = getTileTextureName(mesh, ground.mesh.instanceNumber(), messages);
  if (!name) return false;
  texture = name.get();
  return true;
}

// Loads the texture and takes an earlier export's layers out of it.
bool loadTexture(const MDagPath& tile, TileMessages& messages, TileExport& result) {
  Status status;
  if (!result.document.load(result.texture.c_str(), &status)) {
    return messages.fail(kLoadFailed, result.texture.empty()
                                          ? tile.fullPathName().asChar() +
                                                std::string(": its file texture names no file")
                                          : result.texture + ": " + status.text());
  }
  if (!result.document.loadWarning.empty())
    messages.warn(result.texture + ": " + result.document.loadWarning);
  status = removeGoblins(result.document);
  return status.ok() || messages.fail(kLayerFailed, result.texture + ": " + status.text());
}

bool findFile(TileMessages& messages, TileExport& result) {
  result.file = tileFileOf(result.texture);
  const std::string obstacle = whyNotReplaced(result.texture, result.existing);
  return obstacle.empty() || messages.fail(kSaveFailed, notReplacedLine(result.file, obstacle));
}

bool gatherGoblins(const TileGround& ground, TileMessages& messages,
                   GoblinGeometryBuilder& builder) {
  return visitGoblins(ground, messages, [&](const TileGoblin& goblin) {
    const std::size_t outside = appendGoblin(goblin.welded, goblin.toTile, GoblinLayout::kTagged,
                                             nullptr, nullptr, builder);
    for (std::size_t i = 0; i < outside; ++i)
      messages.log(std::string(kWarningMark) + kGoblinOutside + '\n');
    return true;
  });
}

bool storeGoblins(const GoblinGeometryBuilder& builder, TileMessages& messages,
                  TileExport& result) {
  PsdDocument& document = result.document;
  const std::uint64_t layerBytes = std::uint64_t{4} * document.rows * document.columns;
  const std::uint64_t size = encodedGoblinGeometrySize(builder, GoblinLayout::kTagged);
  if (layerBytes > 0 && size + 5 > layerBytes) return messages.fail(kTooLarge);
  const std::unique_ptr<std::uint8_t[]> blob(new std::uint8_t[size]);
  const std::uint32_t written =
      encodeGoblinGeometry(builder, GoblinLayout::kTagged, blob.get(), size);
  if (written == 0)
    return messages.fail(kLayerFailed, result.texture + ": more goblins than 4 GB hold");
  Status status;
  return document.addDataLayer(kGoblinLayerName, written, blob.get(), &status) ||
         messages.fail(kLayerFailed, result.texture + ": " + status.text());
}

}  // namespace

bool prepareTileExport(const MDagPath& tile, TileMessages& messages, TileExport& result) {
  // Whole, however long the path is.
  messages.log(kTileBegins + std::string(tile.fullPathName().asChar()) + kTileBeginsEnd + '\n');
  TileGround ground;
  GoblinGeometryBuilder builder;
  if (!findTileGround(tile, messages, ground) || !findTexture(ground, messages, result.texture) ||
      !loadTexture(tile, messages, result) || !findFile(messages, result) ||
      !gatherGoblins(ground, messages, builder)) {
    return false;
  }
  result.goblins = builder.records.size();
  return storeGoblins(builder, messages, result);
}

}  // namespace morvane
