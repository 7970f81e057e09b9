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
#include "tile/GoblinExtraction.h"
#include "tile/SceneAttributes.h"

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
  if (!getGoblinMatrix(goblin, matrix, parent)) {
    std::printf("Error: %s is not a transform node.\n", getNodeName(parent).asChar());
  }
  return matrix;
}

void appendGoblins(MeshWalk& walk, const Matrix44& tileMatrix, const MString& sourceFileName,
                   GoblinGeometryBuilder& builder) {
  for (; !walk.isDone(); walk.next()) {
    MObject goblin = walk.mesh();
    std::printf("%s\n", getNodeName(goblin).asChar());
    MString name;
    getStringAttr(goblin, "goblinName", name, true);
    WeldedMesh welded;
    if (!extractGoblin(goblin, welded)) continue;
    appendGoblin(welded, product(matrixOf(goblin), tileMatrix), GoblinLayout::kNamed, name.asChar(),
                 sourceFileName.asChar(), builder);
  }
}

void openSource(const MString& sourceFileName, PsdDocument& document) {
  if (sourceFileName.length() == 0) return;
  document.load(sourceFileName.asChar());
  if (document.findLayer(kGoblinLayerName) >= 0) document.removeLayerByName(kGoblinLayerName);
}

MStatus saveGoblins(const GoblinGeometryBuilder& builder, PsdDocument& document, const char* path) {
  const std::uint64_t size = encodedGoblinGeometrySize(builder, GoblinLayout::kNamed);
  if (size + 5 >= kBlobLimit)
    return failTranslation("Error: .psd data layer size limit exceeded!\n");
  const std::unique_ptr<std::uint8_t[]> blob(new std::uint8_t[size]);
  const std::uint32_t written =
      encodeGoblinGeometry(builder, GoblinLayout::kNamed, blob.get(), size);
  std::string reason;
  if (!document.addDataLayer(kGoblinLayerName, written, blob.get(), &reason)) {
    MGlobal::displayError(reason.c_str());
    return failTranslation("Error: couldn't add goblin layer!\n");
  }
  if (!document.save(path, &reason)) {
    std::printf("Error: couldn't save %s!\n", path);
    MGlobal::displayError(reason.c_str());
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
  Matrix44 tileMatrix;
  if (!getTileMatrix(tile, walk.mesh(), tileMatrix)) {
    return failTranslation("Error: tile has no extent in x or z!\n");
  }
  PsdDocument document(kDocumentSide, kDocumentSide);
  openSource(sourceFileName, document);
  GoblinGeometryBuilder builder;
  if (!walk.isDone()) walk.next();
  appendGoblins(walk, tileMatrix, sourceFileName, builder);
  return saveGoblins(builder, document, path.asChar());
}

}  // namespace morvane
