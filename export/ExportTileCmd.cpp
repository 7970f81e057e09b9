#include "export/ExportTileCmd.h"

#include <maya/MDagPath.h>
#include <maya/MFnMesh.h>
#include <maya/MGlobal.h>
#include <maya/MSelectionList.h>

#include <memory>
#include <new>
#include <string>

#include "geometry/GoblinGeometry.h"
#include "geometry/TileMatrix.h"
#include "psd/PsdDocument.h"
#include "tile/FiniteCheck.h"
#include "tile/GoblinExtraction.h"
#include "tile/MaterialLookup.h"
#include "tile/MessageLog.h"
#include "tile/TileTexture.h"

namespace morvane {
namespace {

constexpr std::uint32_t kBlankDocumentSide = 256;
constexpr const char* kLayerFailed = "*** Error : couldn't add goblin layer\n";
constexpr const char* kSaveFailed = "*** Error : couldn't save psd\n";

bool fail(const char* message) {
  logText(1, message);
  return false;
}

// Says on the host's error channel what the log's fixed lines leave out: which file, and why.
bool fail(const char* message, const std::string& detail) {
  MGlobal::displayError(detail.c_str());
  return fail(message);
}

// For what the log has no fixed line of.
bool failFor(const std::string& reason) {
  return fail(("*** Error : " + reason + "\n").c_str());
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
    const Matrix44 toTile = product(goblinMatrix, tileMatrix);
    const std::string fault = whyNotFinite(walk.mesh(), welded, toTile);
    if (!fault.empty()) {
      return failFor(fault);
    }
    const std::size_t outside =
        appendGoblin(welded, toTile, GoblinLayout::kTagged, nullptr, nullptr, builder);
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
  if (written == 0) {
    return fail(kLayerFailed, texture + ": more goblins than 4 GB hold");
  }
  std::string reason;
  if (!document.addDataLayer(kGoblinLayerName, written, blob.get(), &reason)) {
    return fail(kLayerFailed, texture + ": " + reason);
  }
  return true;
}

// Loads the texture and takes an earlier export's layers out of it.
bool loadTexture(const MDagPath& tile, const std::string& texture, PsdDocument& document) {
  std::string reason;
  if (!document.load(texture.c_str(), &reason)) {
    const std::string nameless =
        tile.fullPathName().asChar() + std::string(": its file texture names no file");
    return fail("*** Error : couldn't load psd\n",
                texture.empty() ? nameless : texture + ": " + reason);
  }
  if (!document.loadWarning.empty()) {
    MGlobal::displayWarning((texture + ": " + document.loadWarning).c_str());
  }
  return removeGoblins(document, reason) || fail(kLayerFailed, texture + ": " + reason);
}

bool failSave(const std::string& file, const std::string& reason) {
  return fail(kSaveFailed, "cannot write " + file + ": " + reason);
}

// Replaces the file that was loaded, or looked at before the goblins were gathered, and no other.
bool saveTile(const std::string& file, const PsdDocument& document, const FileIdentity& seen) {
  PsdReplacement replacement;
  if (document.path == nullptr || file != document.path.get()) {
    replacement.expected = &seen;
  }
  std::string reason;
  const bool saved = document.save(file.c_str(), &reason, &replacement);
  if (replacement.foundAnother) {
    return failSave(file, "changed while it was exported; export again");
  }
  if (!saved) {
    return fail(kSaveFailed, reason);
  }
  if (replacement.otherNames != 0) {
    const bool isOne = replacement.otherNames == 1;
    MGlobal::displayWarning((file + ": " + std::to_string(replacement.otherNames) +
                             (isOne ? " more name (a hard link) of the file keeps"
                                    : " more names (hard links) of the file keep") +
                             " the old content")
                                .c_str());
  }
  return true;
}

}  // namespace

bool exportTileNode(MObject node) {
  MDagPath tile;
  if (MDagPath::getAPathTo(node, tile) != MStatus::kSuccess) {
    return fail("*** Error : couldn't get DAG path\n");
  }
  return exportTileAt(tile);
}

bool exportTileAt(MDagPath tile) {
  // Whole, however long the path is.
  logText(1, ("Exporting tile " + std::string(tile.fullPathName().asChar()) + "...\n").c_str());
  if (!tile.node().hasFn(MFn::kTransform)) return fail("*** Error : No transform\n");
  MeshWalk walk(tile);
  if (walk.isDone()) return fail("*** Error : No mesh\n");
  MObject tileMesh = walk.mesh();
  const std::string fault = whyNotFinite(tileMesh);
  if (!fault.empty()) {
    return failFor(fault);
  }
  Matrix44 tileMatrix;
  if (!getTileMatrix(tile, tileMesh, tileMatrix)) {
    return fail("*** Error : tile has no extent in x or z\n");
  }
  MFnMesh fnTileMesh(tileMesh);
  const std::unique_ptr<char[]> texture =
      getTileTextureName(fnTileMesh, walk.path().instanceNumber());
  if (!texture) return false;
  PsdDocument document(kBlankDocumentSide, kBlankDocumentSide);
  if (!loadTexture(tile, texture.get(), document)) return false;
  const std::string file = tileFileOf(texture.get());
  FileIdentity seen;
  const std::string obstacle = whyNotReplaced(texture.get(), seen);
  if (!obstacle.empty()) {
    return failSave(file, obstacle);
  }
  GoblinGeometryBuilder builder;
  walk.next();
  return appendGoblins(walk, tileMatrix, builder) &&
         storeGoblins(builder, texture.get(), document) && saveTile(file, document, seen);
}

ExportTileCmd::ExportTileCmd() {
  MSelectionList selection;
  MGlobal::getActiveSelectionList(selection);
  for (unsigned int i = 0; i < selection.length(); ++i) {
    MObject node;
    if (selection.getDependNode(i, node) != MStatus::kSuccess) continue;
    MDagPath tile;
    const bool isNamed = selection.getDagPath(i, tile) == MStatus::kSuccess;
    if (!(isNamed ? exportTileAt(tile) : exportTileNode(node)))
      logf(1, "*** Error exporting tile %d\n", static_cast<int>(i));
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
