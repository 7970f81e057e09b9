#ifndef MORVANE_TILE_FINITECHECK_H_
#define MORVANE_TILE_FINITECHECK_H_

#include <maya/MObject.h>

#include <string>

#include "geometry/TileMesh.h"
#include "util/Matrix44.h"

// Meshes with coordinates that are infinite or not a number cannot be exported. The functions name
// the first such vertex, "PATH: vertex N is not finite", and give an empty text when there is none.
namespace morvane {

// All points of the mesh, in object space.
std::string whyNotFinite(MObject mesh);

// Checks the welded mesh's vertices and normals in tile space, because the matrix can be at fault
// too. `goblin` is the mesh that it was made of.
std::string whyNotFinite(MObject goblin, const WeldedMesh& welded, const Matrix44& toTile);

}  // namespace morvane

#endif  // MORVANE_TILE_FINITECHECK_H_
