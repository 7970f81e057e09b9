#include "import/TileReader.h"

#include <maya/MDagPath.h>
#include <maya/MFnDagNode.h>
#include <maya/MGlobal.h>
#include <maya/MObject.h>
#include <maya/MString.h>

#include <cstdio>
#include <memory>
#include <string>

#include "export/SelectedTile.h"
#include "export/TileWriter.h"
#include "geometry/GoblinGeometry.h"
#include "import/GoblinRebuild.h"
#include "import/TextureNetwork.h"
#include "psd/PsdDocument.h"
#include "tile/GoblinExtraction.h"
#include "tile/SceneAttributes.h"

namespace morvane {
namespace {

constexpr TileRequest kRequest = {MPxFileTranslator::kImportAccessMode,
                                  "Please select exactly one tile to import as a psd.",
                                  "only tiles can have psds imported."};
constexpr std::uint32_t kBlankDocumentSide = 256;

bool loadDocument(const MString& path, PsdDocument& document) {
  Status status;
  if (document.load(path.asChar(), &status)) {
    if (!document.loadWarning.empty())
      MGlobal::displayWarning(path + ": " + document.loadWarning.c_str());
    return true;
  }
  MGlobal::displayError(path + ": " + status.text().c_str());
  return false;
}

// Whether a text may stand between double quotes of a command as it is.
bool isPlain(const MString& text) {
  for (const char* at = text.asChar(); *at != '\0'; ++at) {
    const auto byte = static_cast<unsigned char>(*at);
    if (byte < 0x20 || byte == 0x7F || byte == '"' || byte == '\\') return false;
  }
  return true;
}

// The attribute is locked against edits by hand, and must be there already.
MStatus recordPath(MObject tile, const MString& path) {
  if (!isPlain(path)) {
    MGlobal::displayError(path + ": the name has a quote, a backslash or a line break, which " +
                          "cannot be recorded in the scene; rename the file");
    return MStatus::kFailure;
  }
  const MString plug = commandName(getShapeNode(tile)) + ".psdFileName";
  MGlobal::executeCommand(MString("setAttr -lock false ") + plug, false, false);
  const MStatus set = MGlobal::executeCommand(
      MString("setAttr -type \"string\" ") + plug + " \"" + path + "\"", false, false);
  if (set != MStatus::kSuccess) return set;
  MGlobal::executeCommand(MString("setAttr -lock true ") + plug, false, false);
  return MStatus::kSuccess;
}

MStatus readGoblins(const MString& file, const PsdDocument& document, MObject tile,
                    const MDagPath& path, TextureNetworks& networks) {
  if (document.findLayer(kGoblinLayerName) < 0) {
    std::printf("Warning: no GoblinGeometry layer found.\n");
    return MStatus::kSuccess;
  }
  std::uint32_t size = 0;
  const std::unique_ptr<std::uint8_t[]> blob = document.peekDataLayer(kGoblinLayerName, size);
  if (!blob) {
    MGlobal::displayError(file + ": the layer GoblinGeometry does not hold what it says; was it " +
                          "changed in a paint program? Export the tile again");
  }
  if (size == 0) return failTranslation("Warning: empty GoblinGeometry layer!\n");
  if (classifyGoblinBlob(blob.get(), size) == GoblinBlobKind::kTagged)
    return failTranslation("Error: GoblinGeometry layer is in the exportTile layout!\n");
  Matrix44 fromTile;
  if (!getTileMatrix(path, MeshWalk(path).mesh(), fromTile))
    return failTranslation("Error: tile has no extent in x or z!\n");
  fromTile.invert();
  return rebuildGoblins(blob.get(), size, fromTile, tile, networks);
}

}  // namespace

MStatus readTile(const MFileObject& file, MPxFileTranslator::FileAccessMode mode) {
  std::printf("---------- Tile importer (v%s) ----------\n", kTranslatorVersion);
  MObject tile;
  MDagPath tilePath;
  if (!getSelectedTile(kRequest, mode, tile, tilePath)) return MStatus::kFailure;
  std::printf("Tile: %s\n", tilePath.fullPathName().asChar());
  const MString path = file.fullName();
  PsdDocument document(kBlankDocumentSide, kBlankDocumentSide);
  if (!loadDocument(path, document)) return MStatus::kFailure;
  TextureNetworks networks;
  networks.apply(tile, path);
  const MStatus recorded = recordPath(tile, path);
  if (recorded != MStatus::kSuccess) return recorded;
  return readGoblins(path, document, tile, tilePath, networks);
}

}  // namespace morvane
