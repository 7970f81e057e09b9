#ifndef MORVANE_TILE_FINITECHECK_H_
#define MORVANE_TILE_FINITECHECK_H_

#include <maya/MObject.h>

#include <string>

#include "geometry/TileMesh.h"
#include "util/Matrix44.h"

// Meshes with coordinates that are infinite or not a number cannot be exported. The functions tell
// of the first vertex at fault, "PATH: vertex N is not finite"; an empty text when there is none.
namespace morvane {

// All points of the mesh, in object space.
std::string whyNotFinite(MObject mesh);

// The welded mesh's vertices and normals in tile space: the matrix, too, can be at fault. `goblin`
// is the mesh that it was made of.
std::string whyNotFinite(MObject goblin, const WeldedMesh& welded, const Matrix44& toTile);

}  // namespace morvane

#endif  // MORVANE_TILE_FINITECHECK_H_
