#ifndef MORVANE_IMPORT_GOBLINREBUILD_H_
#define MORVANE_IMPORT_GOBLINREBUILD_H_

#include <maya/MObject.h>
#include <maya/MStatus.h>

#include <cstddef>
#include <cstdint>

#include "import/TextureNetwork.h"
#include "util/Matrix44.h"

namespace morvane {

// Makes every goblin of a blob in the named layout: a transform below `tile` and a mesh below that,
// with texture coordinates, normals, texture network and `goblinName`. `fromTile` maps tile space
// to the tile's object space.
//
// The result is the status of the last mesh made. A blob without vertices is a failure, as is one
// that does not hold together: goblins before the first value that does not fit are made, and a
// line on standard output says how far the blob was read.
MStatus rebuildGoblins(const std::uint8_t* blob, std::size_t size, const Matrix44& fromTile,
                       MObject tile, TextureNetworks& networks);

}  // namespace morvane

#endif  // MORVANE_IMPORT_GOBLINREBUILD_H_
