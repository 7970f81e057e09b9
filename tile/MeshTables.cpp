#include "tile/MeshTables.h"

#include <maya/MColorArray.h>
#include <maya/MFloatVectorArray.h>
#include <maya/MFnMesh.h>
#include <maya/MItMeshPolygon.h>
#include <maya/MPointArray.h>

#include <string>

#include "tile/MaterialLookup.h"
#include "tile/TileLines.h"

namespace morvane {
namespace {

PolygonRecord readPolygon(MItMeshPolygon& polygon) {
  PolygonRecord record;
  const auto corners = static_cast<int>(polygon.polygonVertexCount());
  for (auto* list : {&record.positions, &record.normals, &record.uvs, &record.colours})
    list->reserve(corners);
  for (int corner = 0; corner < corners; ++corner) {
    const auto vertex = static_cast<std::int32_t>(polygon.vertexIndex(corner));
    int uv = 0;
    polygon.getUVIndex(corner, uv);
    record.positions.push_back(vertex);
    record.normals.push_back(static_cast<std::int32_t>(polygon.normalIndex(corner)));
    record.uvs.push_back(uv);
    record.colours.push_back(vertex);
  }
  return record;
}

}  // namespace

void getMeshPositions(MObject mesh, std::vector<Float3>& positions) {
  MPointArray points;
  MFnMesh(mesh).getPoints(points, MSpace::kObject);
  positions.clear();
  positions.reserve(points.length());
  for (unsigned int i = 0; i < points.length(); ++i) {
    positions.push_back({static_cast<float>(points[i].x), static_cast<float>(points[i].y),
                         static_cast<float>(points[i].z)});
  }
}

void getMeshNormals(MObject mesh, std::vector<Float3>& normals) {
  MFloatVectorArray vectors;
  MFnMesh(mesh).getNormals(vectors, MSpace::kObject);
  normals.clear();
  normals.reserve(vectors.length());
  for (unsigned int i = 0; i < vectors.length(); ++i)
    normals.push_back({vectors[i].x, vectors[i].y, vectors[i].z});
}

void getMeshUVs(MObject mesh, std::vector<Float2>& uvs) {
  MFnMesh fnMesh(mesh);
  const int count = fnMesh.numUVs();
  uvs.clear();
  for (int i = 0; i < count; ++i) {
    Float2 uv;
    fnMesh.getUV(i, uv.u, uv.v);
    uvs.push_back(uv);
  }
  if (uvs.empty()) uvs.push_back({});
}

void getMeshColours(MObject mesh, std::vector<std::uint32_t>& colours) {
  MColorArray vertexColours;
  MFnMesh(mesh).getVertexColors(vertexColours);
  colours.clear();
  for (unsigned int i = 0; i < vertexColours.length(); ++i) {
    const MColor& colour = vertexColours[i];
    colours.push_back(packColour(colour.r, colour.g, colour.b, colour.a));
  }
  if (colours.empty()) colours.push_back(0);
}

void getMeshPolygons(MObject mesh, TileMessages& messages, std::vector<PolygonRecord>& polygons) {
  if (countMaterials(mesh, messages) > 1)
    messages.log(std::string(kPlainWarningMark) + kGoblinMaterials);
  polygons.clear();
  MStatus attached;
  MItMeshPolygon polygon(mesh, &attached);
  if (attached != MStatus::kSuccess) return;
  for (; !polygon.isDone(); polygon.next()) polygons.push_back(readPolygon(polygon));
}

MeshTables getMeshTables(MObject mesh, TileMessages& messages) {
  MeshTables tables;
  getMeshPositions(mesh, tables.positions);
  getMeshNormals(mesh, tables.normals);
  getMeshUVs(mesh, tables.uvs);
  getMeshColours(mesh, tables.colours);
  getMeshPolygons(mesh, messages, tables.polygons);
  return tables;
}

}  // namespace morvane
