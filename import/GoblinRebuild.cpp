#include "import/GoblinRebuild.h"

#include <maya/MFloatArray.h>
#include <maya/MFloatPointArray.h>
#include <maya/MFnMesh.h>
#include <maya/MFnTransform.h>
#include <maya/MIntArray.h>
#include <maya/MVector.h>

#include <cstdio>

#include "geometry/GoblinGeometry.h"
#include "geometry/GoblinMesh.h"
#include "geometry/TileMatrix.h"
#include "import/TextureNetwork.h"
#include "tile/SceneAttributes.h"

namespace morvane {
namespace {

MIntArray toIntArray(const std::vector<std::int32_t>& values) {
  MIntArray array;
  array.setLength(static_cast<unsigned int>(values.size()));
  for (unsigned int i = 0; i < array.length(); ++i) array[i] = values[i];
  return array;
}

MFloatArray toFloatArray(const std::vector<float>& values) {
  MFloatArray array;
  array.setLength(static_cast<unsigned int>(values.size()));
  for (unsigned int i = 0; i < array.length(); ++i) array[i] = values[i];
  return array;
}

MFloatPointArray toPointArray(const std::vector<std::array<float, 4>>& points) {
  MFloatPointArray array;
  array.setLength(static_cast<unsigned int>(points.size()));
  for (unsigned int i = 0; i < array.length(); ++i) {
    const std::array<float, 4>& p = points[i];
    array[i] = MFloatPoint(p[0], p[1], p[2], p[3]);
  }
  return array;
}

// Gives every corner the normal of its own vertex.
void setNormals(const GoblinMesh& goblin, MFnMesh& mesh) {
  std::size_t corner = 0;
  for (std::size_t face = 0; face < goblin.polygonCounts.size(); ++face) {
    for (std::int32_t i = 0; i < goblin.polygonCounts[face]; ++i, ++corner) {
      const std::int32_t vertex = goblin.polygonConnects[corner];
      const std::array<double, 3>& n = goblin.normals[vertex];
      MVector normal(n[0], n[1], n[2]);
      mesh.setFaceVertexNormal(normal, static_cast<int>(face), vertex, MSpace::kObject);
    }
  }
}

MStatus createGoblin(const GoblinRecord& record, const GoblinMesh& goblin, MObject tile,
                     TextureNetworks& networks) {
  const auto points = static_cast<int>(goblin.points.size());
  MIntArray counts = toIntArray(goblin.polygonCounts);
  MIntArray connects = toIntArray(goblin.polygonConnects);
  MFnTransform transform;
  MObject parent = transform.create(tile);
  MFnMesh mesh;
  MStatus created;
  MFloatPointArray positions = toPointArray(goblin.points);
  mesh.create(points, record.faceCount, positions, counts, connects, parent, &created);
  std::printf("Create: %d %d \t %s\n", points, record.faceCount, created.errorString().asChar());
  MFloatArray us = toFloatArray(goblin.us);
  MFloatArray vs = toFloatArray(goblin.vs);
  mesh.setUVs(us, vs);
  mesh.assignUVs(counts, connects);
  setNormals(goblin, mesh);
  MObject shape = mesh.object();
  networks.apply(shape, record.textureFileName.get());
  setStringAttr(shape, "goblinName", record.name.get(), true);
  return created;
}

void mapPool(std::vector<GoblinPoolVertex>& pool, const Matrix44& fromTile) {
  for (GoblinPoolVertex& vertex : pool) {
    const Float3 position = transformPoint({vertex.x, vertex.y, vertex.z}, fromTile);
    vertex.x = position.x;
    vertex.y = position.y;
    vertex.z = position.z;
  }
}

// Makes goblins up to the end of the blob, or up to the first value that does not fit: false then.
// `status` is that of the last mesh.
bool createGoblins(GoblinGeometryReader& reader, const Matrix44& fromTile, MObject tile,
                   TextureNetworks& networks, MStatus& status) {
  std::vector<GoblinPoolVertex> pool;
  std::uint32_t goblins = 0;
  if (!reader.readPool(pool) || !reader.readGoblinCount(goblins)) return false;
  mapPool(pool, fromTile);
  LocalIndexMap localIndices(pool.size(), -1);
  for (std::uint32_t i = 0; i < goblins; ++i) {
    GoblinRecord record;
    if (!reader.readGoblin(record)) return false;
    status = createGoblin(record, buildGoblinMesh(record, pool, localIndices), tile, networks);
  }
  return true;
}

bool hasVertices(const std::uint8_t* blob, std::size_t size) {
  std::uint32_t poolSize = 0;
  if (size < sizeof poolSize) return true;
  readU32At(blob, 0, &poolSize);
  return static_cast<std::int32_t>(poolSize) >= 1;
}

}  // namespace

MStatus rebuildGoblins(const std::uint8_t* blob, std::size_t size, const Matrix44& fromTile,
                       MObject tile, TextureNetworks& networks) {
  if (!hasVertices(blob, size)) {
    std::printf("Error: zero vertex size?!?\n");
    return MStatus::kFailure;
  }
  MStatus status;
  GoblinGeometryReader reader(blob, size, GoblinLayout::kNamed);
  const bool sound = createGoblins(reader, fromTile, tile, networks, status);
  if (!sound && reader.consumed() == size) {
    std::printf("Error: corrupt goblin geometry data!  (It ends before what it promises.)\n");
  } else if (reader.consumed() != size) {
    std::printf("Error: corrupt goblin geometry data!  (Processed %d of %d.)\n",
                static_cast<int>(reader.consumed()), static_cast<int>(size));
  }
  return sound ? status : MStatus(MStatus::kFailure);
}

}  // namespace morvane
