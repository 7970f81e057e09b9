#include "tools/scene/SceneTiles.h"

#include <maya/MFnDagNode.h>
#include <maya/MGlobal.h>
#include <maya/MMatrix.h>

#include <algorithm>

#include "geometry/GoblinGeometry.h"
#include "tile/GoblinExtraction.h"
#include "tile/SceneAttributes.h"
#include "tile/TileGoblins.h"
#include "tile/TileLines.h"
#include "tools/scene/SceneEvaluation.h"
#include "tools/scene/TileCandidates.h"

namespace tools {
namespace {

// Keeps the first error.
class FirstError final : public morvane::TileMessages {
 public:
  void log(const std::string& text) override {
    const std::string mark = morvane::kErrorMark;
    if (error_.empty() && text.compare(0, mark.size(), mark) == 0)
      error_ = text.substr(mark.size(), text.find('\n') - mark.size());
  }
  void explain(const std::string&) override {}
  void warn(const std::string&) override {}
  const std::string& error() const { return error_; }

 private:
  std::string error_;
};

// That of the transform for a goblin without one.
std::string goblinName(const MDagPath& mesh) {
  MString name;
  morvane::getStringAttr(mesh.node(), "goblinName", name, true);
  if (name.length() == 0) name = morvane::getNodeName(mesh.transform());
  return name.asChar();
}

// Appends a mesh to the goblins' pool and records, as an export does.
void append(const morvane::WeldedMesh& mesh, const morvane::Matrix44& matrix,
            const std::string& name, Goblins& goblins) {
  morvane::GoblinGeometryBuilder builder;
  morvane::appendGoblin(mesh, matrix, morvane::GoblinLayout::kNamed, name.c_str(), nullptr,
                        builder);
  const auto base = static_cast<std::int32_t>(goblins.pool.size());
  goblins.pool.insert(goblins.pool.end(), builder.pool.begin(), builder.pool.end());
  Goblin goblin;
  goblin.name = name;
  goblin.vertices = static_cast<std::uint32_t>(builder.pool.size());
  for (const auto& t : mesh.triangles)
    goblin.faces.push_back({base + t[2], base + t[1], base + t[0]});
  goblins.goblins.push_back(std::move(goblin));
}

// The file's texture coordinates have v = 1 at the picture's top row.
ViewMesh groundMesh(const morvane::TileGround& ground, morvane::TileMessages& messages) {
  morvane::WeldedMesh surface;
  morvane::extractGoblin(ground.mesh.node(), messages, surface);
  Goblins one;
  one.kind = morvane::GoblinBlobKind::kNamed;
  append(surface, ground.toTile, "tile", one);
  for (std::size_t i = 0; i < one.pool.size(); ++i) {
    one.pool[i].u = surface.vertices[i].uv.u;
    one.pool[i].v = 1 - surface.vertices[i].uv.v;
  }
  return goblinMeshes(one).meshes[0];
}

TilePlacement placementOf(const morvane::TileGround& ground) {
  MMatrix toTile;
  for (int row = 0; row < 4; ++row)
    for (int column = 0; column < 4; ++column)
      toTile.matrix[row][column] = static_cast<double>(ground.toTile(row, column));
  const MMatrix toScene = toTile.inverse() * ground.mesh.inclusiveMatrix();
  TilePlacement placement;
  std::copy(&toScene.matrix[0][0], &toScene.matrix[0][0] + 16, placement.begin());
  return placement;
}

constexpr std::size_t kMostNamed = 5;  // things that are not evaluated

// The parts of the tile that are missing from the picture, or look different in Maya.
std::string missingOf(const std::vector<Unevaluated>& parts) {
  const Unevaluated summary = summaryOf(parts, kMostNamed);
  return summary.what + (summary.what.empty() ? "" : "; ") + summary.advice;
}

SceneTile readTile(const TileCandidate& candidate) {
  SceneTile tile;
  tile.name = MFnDagNode(candidate.dagPath).name().asChar();
  tile.texture = candidate.texture;
  FirstError messages;
  morvane::TileGround ground;
  if (morvane::findTileGround(candidate.dagPath, messages, ground)) {
    tile.mesh = groundMesh(ground, messages);
    tile.placement = placementOf(ground);
    tile.goblins.present = true;
    tile.goblins.kind = morvane::GoblinBlobKind::kNamed;
    morvane::visitGoblins(ground, messages, [&](const morvane::TileGoblin& goblin) {
      append(goblin.welded, goblin.toTile, goblinName(goblin.mesh), tile.goblins);
      return true;
    });
  }
  tile.fault = messages.error();
  tile.missing = missingOf(unevaluatedParts(candidate.dagPath));
  return tile;
}

}  // namespace

std::vector<SceneTile> sceneTiles() {
  std::vector<SceneTile> tiles;
  for (const TileCandidate& candidate : texturedTiles()) tiles.push_back(readTile(candidate));
  return tiles;
}

std::string lengthUnit() {
  MString unit;
  return MGlobal::executeCommand("currentUnit -query -linear", unit) == MStatus::kSuccess
             ? unit.asChar()
             : "cm";
}

}  // namespace tools
