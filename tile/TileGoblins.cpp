#include "tile/TileGoblins.h"

#include <algorithm>
#include <string>

#include "geometry/TileMatrix.h"
#include "tile/FiniteCheck.h"
#include "tile/GoblinExtraction.h"
#include "tile/TileLines.h"

namespace morvane {

bool findTileGround(const MDagPath& tile, TileMessages& messages, TileGround& ground) {
  if (!tile.node().hasFn(MFn::kTransform)) return messages.fail(kNoTransform);
  const MeshWalk walk(tile);
  if (walk.isDone()) return messages.fail(kNoMesh);
  const std::string fault = whyNotFinite(walk.mesh());
  if (!fault.empty()) return messages.fail(fault);
  ground.tile = tile;
  ground.mesh = walk.path();
  return getTileMatrix(tile, walk.mesh(), ground.toTile) || messages.fail(kNoExtent);
}

float TileGoblin::distanceOutside() const {
  float farthest = 0;
  for (const VertexKey& vertex : welded.vertices) {
    const Float3 p = transformPoint(vertex.position, toTile);
    farthest = std::max({farthest, -p.x, p.x - 1, -p.z, p.z - 1});
  }
  return farthest;
}

bool visitGoblins(const TileGround& ground, TileMessages& messages,
                  const std::function<bool(const TileGoblin&)>& visit) {
  MeshWalk walk(ground.tile);
  for (walk.next(); !walk.isDone(); walk.next()) {
    TileGoblin goblin;
    goblin.mesh = walk.path();
    if (!extractGoblin(walk.mesh(), messages, goblin.welded)) continue;
    Matrix44 matrix;
    MObject parent;
    if (!getGoblinMatrix(walk.mesh(), matrix, parent)) {
      messages.log(std::string(kErrorMark) + kWeirdTransform);
      return false;
    }
    goblin.toTile = product(matrix, ground.toTile);
    const std::string fault = whyNotFinite(walk.mesh(), goblin.welded, goblin.toTile);
    if (!fault.empty()) return messages.fail(fault);
    if (!visit(goblin)) return false;
  }
  return true;
}

}  // namespace morvane
