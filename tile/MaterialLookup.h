#ifndef MORVANE_TILE_MATERIALLOOKUP_H_
#define MORVANE_TILE_MATERIALLOOKUP_H_

#include <maya/MFnMesh.h>
#include <maya/MObject.h>

#include <cstdint>
#include <memory>

// What a mesh's shading network says: mesh, shading group, material, file texture.
namespace morvane {

// How many different materials (by node name) the mesh's renderable shading groups lead to. The
// default shading group counts only when it has members and, where there are other groups, faces of
// this mesh.
std::int32_t countMaterials(MObject mesh);

// The name of the file that the colour of an instance of the mesh comes from, as the texture node
// holds it. Null, after
// a line in the message log, unless exactly one material with exactly one file texture is found.
std::unique_ptr<char[]> getTileTextureName(MFnMesh& mesh, unsigned int instance = 0);

}  // namespace morvane

#endif  // MORVANE_TILE_MATERIALLOOKUP_H_
