#ifndef MORVANE_TILE_MATERIALLOOKUP_H_
#define MORVANE_TILE_MATERIALLOOKUP_H_

#include <maya/MDagPath.h>
#include <maya/MFnMesh.h>
#include <maya/MObject.h>

#include <cstdint>
#include <memory>
#include <vector>

#include "tile/TileMessages.h"

// What a mesh's shading network says: mesh, shading group, material, file texture.
namespace morvane {

// How many different materials (by node name) the mesh's renderable shading groups lead to. The
// default shading group counts only when it has members and, where there are other groups, faces of
// this mesh.
std::int32_t countMaterials(MObject mesh, TileMessages& messages);

// The name of the file that the colour of an instance of the mesh comes from, as the texture node
// holds it. Null, after a line in the message log, unless exactly one material with exactly one
// file texture is found.
std::unique_ptr<char[]> getTileTextureName(MFnMesh& mesh, unsigned int instance,
                                           TileMessages& messages);

// The first file texture from which one of the mesh's materials takes its colour. It makes the
// object a tile for an export without names. The null object when there is none.
MObject findColourTexture(const MDagPath& mesh);

// All that the texture of the mesh depends on: its shading groups, their materials, and where the
// materials' colours come from.
std::vector<MObject> shadingNodes(const MDagPath& mesh);

}  // namespace morvane

#endif  // MORVANE_TILE_MATERIALLOOKUP_H_
