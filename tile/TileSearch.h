#ifndef MORVANE_TILE_TILESEARCH_H_
#define MORVANE_TILE_TILESEARCH_H_

#include <maya/MDagPath.h>

#include <string>
#include <vector>

// The tiles of a scene.
namespace morvane {

// A file texture: the file that it names, and the node.
struct TileTextureNode {
  std::string file;
  std::string name;  // empty: there is none
};

// That which the colour of the tile's own mesh comes from, the first of several.
TileTextureNode textureOfTile(const MDagPath& tile);

// Every transform directly below the world, in the order of the scene: where tiles stand.
std::vector<MDagPath> topTransforms();

// Those whose own mesh has such a texture. What is among them can still be refused by an export,
// which says why.
std::vector<MDagPath> texturedTiles();

}  // namespace morvane

#endif  // MORVANE_TILE_TILESEARCH_H_
