#include "export/TileWriter.h"

#include <maya/MDagPath.h>
#include <maya/MGlobal.h>

#include <cstdio>
#include <memory>
#include <string>

#include "export/SelectedTile.h"
#include "geometry/GoblinGeometry.h"
#include "geometry/TileMatrix.h"
#include "psd/PsdDocument.h"
#include "tile/FiniteCheck.h"
#include "tile/GoblinExtraction.h"
#include "tile/SceneAttributes.h"
#include "tile/TileTexture.h"

namespace morvane {
namespace {

constexpr TileRequest kRequest = {MPxFileTranslator::kExportActiveAccessMode,
                                  "Please select exactly one tile to export.",
                                  "only tiles can be exported."};
constexpr std::uint32_t kDocumentSide = 256;
constexpr std::uint64_t kBlobLimit = 4 * kDocumentSide * kDocumentSide;

MString outputPath(const MFileObject& file) {
  const MString name = file.name();
  const int dot = name.rindex('.');
  if (dot >= 1) {
    MString extension = name.substring(dot, static_cast<int>(name.length()) - 1);
    extension.toLowerCase();
    if (extension == ".psd") return file.fullName();
  }
  return file.fullName() + ".psd";
}

Matrix44 matrixOf(MObject goblin) {
  Matrix44 matrix;
  MObject parent;
  if (!getGoblinMatrix(goblin, matrix, parent))
    std::printf("Error: %s is not a transform node.\n", getNodeName(parent).asChar());
  return matrix;
}

bool fail(const std::string& reason) {
  std::printf("Error: %s!\n", reason.c_str());
  return false;
}

bool appendGoblins(MeshWalk& walk, const Matrix44& tileMatrix, const MString& sourceFileName,
                   GoblinGeometryBuilder& builder) {
  SpokenMessages messages;
  for (; !walk.isDone(); walk.next()) {
    MObject goblin = walk.mesh();
    std::printf("%s\n", getNodeName(goblin).asChar());
    MString name;
    getStringAttr(goblin, "goblinName", name, true);
    WeldedMesh welded;
    if (!extractGoblin(goblin, messages, welded)) continue;
    const Matrix44 toTile = product(matrixOf(goblin), tileMatrix);
    const std::string fault = whyNotFinite(goblin, welded, toTile);
    if (!fault.empty()) return fail(fault);
    appendGoblin(welded, toTile, GoblinLayout::kNamed, name.asChar(), sourceFileName.asChar(),
                 builder);
  }
  return true;
}

bool openSource(const MString& sourceFileName, PsdDocument& document) {
  if (sourceFileName.length() == 0) return true;
  document.load(sourceFileName.asChar());
  const Status status = removeGoblins(document);
  return status.ok() || fail(std::string(sourceFileName.asChar()) + ": " + status.text());
}

MStatus saveGoblins(const GoblinGeometryBuilder& builder, PsdDocument& document, const char* path) {
  const std::uint64_t size = encodedGoblinGeometrySize(builder, GoblinLayout::kNamed);
  if (size + 5 >= kBlobLimit)
    return failTranslation("Error: .psd data layer size limit exceeded!\n");
  const std::unique_ptr<std::uint8_t[]> blob(new std::uint8_t[size]);
  const std::uint32_t written =
      encodeGoblinGeometry(builder, GoblinLayout::kNamed, blob.get(), size);
  if (written == 0) return failTranslation("Error: .psd data layer size limit exceeded!\n");
  Status status;
  if (!document.addDataLayer(kGoblinLayerName, written, blob.get(), &status)) {
    MGlobal::displayError(status.text().c_str());
    return failTranslation("Error: couldn't add goblin layer!\n");
  }
  if (!document.save(path, &status)) {
    std::printf("Error: couldn't save %s!\n", path);
    MGlobal::displayError(status.text().c_str());
    return MStatus::kFailure;
  }
  return MStatus::kSuccess;
}

}  // namespace

MStatus writeTile(const MFileObject& file, MPxFileTranslator::FileAccessMode mode,
                  const MString& sourceFileName) {
  const MString path = outputPath(file);
  std::printf("Tile exporter (v%s).  Exporting to %s\n", kTranslatorVersion, path.asChar());
  MObject node;
  MDagPath tile;
  if (!getSelectedTile(kRequest, mode, node, tile)) return MStatus::kFailure;
  std::printf("%s\n", tile.fullPathName().asChar());
  MeshWalk walk(tile);
  std::printf("Path to shape: %s\n", tile.fullPathName().asChar());
  const std::string fault = walk.isDone() ? "" : whyNotFinite(walk.mesh());
  if (!fault.empty()) {
    fail(fault);
    return MStatus::kFailure;
  }
  Matrix44 tileMatrix;
  if (!getTileMatrix(tile, walk.mesh(), tileMatrix))
    return failTranslation("Error: tile has no extent in x or z!\n");
  PsdDocument document(kDocumentSide, kDocumentSide);
  if (!openSource(sourceFileName, document)) return MStatus::kFailure;
  GoblinGeometryBuilder builder;
  if (!walk.isDone()) walk.next();
  if (!appendGoblins(walk, tileMatrix, sourceFileName, builder)) return MStatus::kFailure;
  return saveGoblins(builder, document, path.asChar());
}

}  // namespace morvane
