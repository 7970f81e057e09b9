#ifndef MORVANE_TILE_TILEGOBLINS_H_
#define MORVANE_TILE_TILEGOBLINS_H_

#include <maya/MDagPath.h>

#include <functional>

#include "geometry/TileMesh.h"
#include "tile/TileMessages.h"
#include "util/Matrix44.h"

// A tile and its goblins as an export takes them.
namespace morvane {

struct TileGround {
  MDagPath tile;
  MDagPath mesh;    // the tile's own
  Matrix44 toTile;  // from the space of the tile's mesh to tile space
};

// False, after a line in the log, when the node at the path is not a tile.
bool findTileGround(const MDagPath& tile, TileMessages& messages, TileGround& ground);

struct TileGoblin {
  MDagPath mesh;
  WeldedMesh welded;  // has triangles
  Matrix44 toTile;    // from the mesh's space to tile space

  // How far the goblin's farthest vertex lies outside of the tile in x or z, as a share of the
  // tile's side; 0 when none does.
  float distanceOutside() const;
};

// Calls `visit` with each goblin below the tile, in the order of an export. False once `visit`
// returns false, and, after a line in the log, when a goblin cannot be placed.
bool visitGoblins(const TileGround& ground, TileMessages& messages,
                  const std::function<bool(const TileGoblin&)>& visit);

}  // namespace morvane

#endif  // MORVANE_TILE_TILEGOBLINS_H_
