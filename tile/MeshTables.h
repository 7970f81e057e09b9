#ifndef MORVANE_TILE_MESHTABLES_H_
#define MORVANE_TILE_MESHTABLES_H_

#include <maya/MObject.h>

#include <cstdint>
#include <vector>

#include "geometry/TileMesh.h"
#include "tile/TileMessages.h"

// Reads a host mesh's attribute tables and polygons, in object space and in the host's order. Each
// function replaces what the table held.
namespace morvane {

void getMeshPositions(MObject mesh, std::vector<Float3>& positions);
void getMeshNormals(MObject mesh, std::vector<Float3>& normals);
void getMeshUVs(MObject mesh, std::vector<Float2>& uvs);
void getMeshColours(MObject mesh, std::vector<std::uint32_t>& colours);

// Warns in the log when the mesh has more than one material.
void getMeshPolygons(MObject mesh, TileMessages& messages, std::vector<PolygonRecord>& polygons);

// All five, in this order.
MeshTables getMeshTables(MObject mesh, TileMessages& messages);

}  // namespace morvane

#endif  // MORVANE_TILE_MESHTABLES_H_
