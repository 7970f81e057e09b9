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

// The file texture from which the tile's own mesh takes its colour; the first of several.
TileTextureNode textureOfTile(const MDagPath& tile);

// Every transform directly below the world, in the order of the scene: where tiles stand.
std::vector<MDagPath> topTransforms();

// Those of them whose own mesh has such a texture. An export may still refuse some, and says why.
std::vector<MDagPath> texturedTiles();

}  // namespace morvane

#endif  // MORVANE_TILE_TILESEARCH_H_
