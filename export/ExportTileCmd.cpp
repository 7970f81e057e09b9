#include "export/ExportTileCmd.h"

#include <maya/MDagPath.h>
#include <maya/MFnMesh.h>
#include <maya/MGlobal.h>
#include <maya/MSelectionList.h>

#include <algorithm>
#include <cctype>
#include <memory>
#include <new>
#include <string>

#include "geometry/GoblinGeometry.h"
#include "geometry/TileMatrix.h"
#include "psd/PsdDocument.h"
#include "tile/GoblinExtraction.h"
#include "tile/MaterialLookup.h"
#include "tile/MessageLog.h"
#include "util/Platform.h"

namespace morvane {
namespace {

constexpr std::uint32_t kBlankDocumentSide = 256;

bool fail(const char* message) {
  logText(1, message);
  return false;
}

// Says on the host's error channel what the log's fixed lines leave out: which file, and why.
bool fail(const char* message, const std::string& detail) {
  MGlobal::displayError(detail.c_str());
  return fail(message);
}

// A tile's file: the texture itself when it is a PSD, else the PSD of the same name beside it.
std::string savePathFor(const std::string& texture) {
  const SplitPath path = splitPath(texture);
  std::string extension = path.extension;
  std::transform(extension.begin(), extension.end(), extension.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  if (extension == ".psd") return texture;
  return path.drive + path.directory + path.name + ".psd";
}

bool appendGoblins(MeshWalk& walk, const Matrix44& tileMatrix, GoblinGeometryBuilder& builder) {
  for (; !walk.isDone(); walk.next()) {
    WeldedMesh welded;
    if (!extractGoblin(walk.mesh(), welded)) continue;
    Matrix44 goblinMatrix;
    MObject parent;
    if (!getGoblinMatrix(walk.mesh(), goblinMatrix, parent)) {
      return fail("*** Error : transform weirdness on goblin");
    }
    const std::size_t outside = appendGoblin(welded, product(goblinMatrix, tileMatrix),
                                             GoblinLayout::kTagged, nullptr, nullptr, builder);
    for (std::size_t i = 0; i < outside; ++i) {
      logText(1, "*** Warning : goblin outside of tile boundary\n");
    }
  }
  return true;
}

bool storeGoblins(const GoblinGeometryBuilder& builder, const std::string& texture,
                  PsdDocument& document) {
  const std::uint64_t layerBytes = std::uint64_t{4} * document.rows * document.columns;
  const std::uint64_t size = encodedGoblinGeometrySize(builder, GoblinLayout::kTagged);
  if (layerBytes > 0 && size + 5 > layerBytes) {
    return fail("*** Error : goblin geometry exceeds layer size\n");
  }
  const std::unique_ptr<std::uint8_t[]> blob(new std::uint8_t[size]);
  const std::uint32_t written =
      encodeGoblinGeometry(builder, GoblinLayout::kTagged, blob.get(), size);
  std::string reason;
  if (!document.addDataLayer(kGoblinLayerName, written, blob.get(), &reason)) {
    return fail("*** Error : couldn't add goblin layer\n", texture + ": " + reason);
  }
  return true;
}

// Loads the texture and takes an earlier export's layer out of it.
bool loadTexture(const MDagPath& tile, const std::string& texture, PsdDocument& document) {
  std::string reason;
  if (!document.load(texture.c_str(), &reason)) {
    const std::string nameless =
        tile.fullPathName().asChar() + std::string(": its file texture names no file");
    return fail("*** Error : couldn't load psd\n",
                texture.empty() ? nameless : texture + ": " + reason);
  }
  if (document.findLayer(kGoblinLayerName) >= 0) document.removeLayerByName(kGoblinLayerName);
  return true;
}

bool saveTile(const std::string& path, const PsdDocument& document) {
  std::string reason;
  return document.save(path.c_str(), &reason) || fail("*** Error : couldn't save psd\n", reason);
}

}  // namespace

bool exportTileNode(MObject node) {
  MDagPath tile;
  if (MDagPath::getAPathTo(node, tile) != MStatus::kSuccess) {
    return fail("*** Error : couldn't get DAG path\n");
  }
  logf(1, "Exporting tile %s...\n", tile.fullPathName().asChar());
  if (!node.hasFn(MFn::kTransform)) return fail("*** Error : No transform\n");
  MeshWalk walk(tile);
  if (walk.isDone()) return fail("*** Error : No mesh\n");
  MObject tileMesh = walk.mesh();
  Matrix44 tileMatrix;
  if (!getTileMatrix(tile, tileMesh, tileMatrix)) {
    return fail("*** Error : tile has no extent in x or z\n");
  }
  MFnMesh fnTileMesh(tileMesh);
  const std::unique_ptr<char[]> texture = getTileTextureName(fnTileMesh);
  if (!texture) return false;
  PsdDocument document(kBlankDocumentSide, kBlankDocumentSide);
  if (!loadTexture(tile, texture.get(), document)) return false;
  GoblinGeometryBuilder builder;
  walk.next();
  return appendGoblins(walk, tileMatrix, builder) &&
         storeGoblins(builder, texture.get(), document) &&
         saveTile(savePathFor(texture.get()), document);
}

ExportTileCmd::ExportTileCmd() {
  MSelectionList selection;
  MGlobal::getActiveSelectionList(selection);
  for (unsigned int i = 0; i < selection.length(); ++i) {
    MObject node;
    if (selection.getDependNode(i, node) != MStatus::kSuccess) continue;
    if (!exportTileNode(node)) logf(1, "*** Error exporting tile %d\n", static_cast<int>(i));
  }
}

void* ExportTileCmd::creator() {
  return new (std::nothrow) ExportTileCmd;
}

MStatus ExportTileCmd::doIt(const MArgList&) {
  return MStatus::kSuccess;
}

MStatus ExportTileCmd::undoIt() {
  return MStatus::kSuccess;
}

MStatus ExportTileCmd::redoIt() {
  return MStatus::kSuccess;
}

bool ExportTileCmd::isUndoable() const {
  return false;
}

}  // namespace morvane
