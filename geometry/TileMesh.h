#ifndef MORVANE_GEOMETRY_TILEMESH_H_
#define MORVANE_GEOMETRY_TILEMESH_H_

#include <array>
#include <cstdint>
#include <memory>
#include <vector>

#include "util/GrowArray.h"

// From a mesh's attribute tables and polygons to unique vertices and triangles over them. Plain
// data work: no host is needed here.
namespace morvane {

struct Float2 {
  float u = 0;
  float v = 0;
};

struct Float3 {
  float x = 0;
  float y = 0;
  float z = 0;
};

// One polygon: for each corner an index into each attribute table, in the host's corner order.
struct PolygonRecord {
  std::vector<std::int32_t> positions;
  std::vector<std::int32_t> normals;
  std::vector<std::int32_t> uvs;
  std::vector<std::int32_t> colours;
  std::int32_t materialId = 0;
};

// What is read from one mesh, in object space.
struct MeshTables {
  std::vector<Float3> positions;
  std::vector<Float3> normals;
  std::vector<Float2> uvs;  // a mesh without any has the one entry (0, 0)
  std::vector<std::uint32_t>
      colours;  // one a vertex, see packColour; a mesh without any has the one entry 0
  std::vector<PolygonRecord> polygons;
};

// Packs a colour to R, G, B, A bytes from the most significant end. Components outside [0, 1] are
// not clamped: they carry into the neighbouring byte, modulo 2^32.
std::uint32_t packColour(float r, float g, float b, float a);

struct TileTriangle {
  std::array<std::int32_t, 3> positions;
  std::array<std::int32_t, 3> uvs;
  std::array<std::int32_t, 3> normals;
  std::array<std::int32_t, 3> colours;
  std::int32_t materialId;
  std::int32_t reserved;
};
static_assert(sizeof(TileTriangle) == 14 * sizeof(std::int32_t), "a triangle is 14 words");

struct TileMesh {
  GrowArray<Float3> positions;
  GrowArray<Float2> uvs;
  GrowArray<std::uint32_t> colours;
  GrowArray<Float3> normals;
  GrowArray<TileTriangle> triangles;
};

// Copies the tables and cuts every polygon into a fan of triangles around its first corner. Null
// when a polygon's four index lists differ in length; the reason then goes to addExtractionError.
std::unique_ptr<TileMesh> buildTileMesh(const MeshTables& tables);

// Everything that makes one mesh vertex: two corners are the same vertex when their keys are the
// same bits.
struct VertexKey {
  Float3 position;
  Float3 normal;
  Float2 uv;
  std::array<std::uint32_t, 6> reserved{};
  std::uint32_t colour = 0;
};
static_assert(sizeof(VertexKey) == 15 * sizeof(std::uint32_t), "a key is 15 words without padding");

struct WeldedMesh {
  std::vector<VertexKey> vertices;  // unique, in order of first appearance
  std::vector<std::array<std::int32_t, 3>>
      triangles;  // indices into vertices, in the tile mesh's order
};

// The welding table: finds a welded vertex by all of its key's bits.
class WeldTable {
 public:
  // Makes room for as many vertices.
  void reserve(std::size_t vertices);

  // The vertex whose key is `key`; a new key is appended to the vertices. Every call of one table
  // must pass the same vertices, and each time for the same key the same hash, a number whose
  // high bits differ between keys.
  std::int32_t findOrAdd(const VertexKey& key, std::uint32_t hash,
                         std::vector<VertexKey>& vertices);

  // Has the memory fetched in which a key of this hash is looked for. Needs room for a vertex.
  void prefetch(std::uint32_t hash) const;

 private:
  struct Slot {
    std::int32_t number;  // the vertex's, from 1; 0: free
    std::uint32_t hash;
  };

  void resize(std::size_t count);

  std::vector<Slot> slots_;  // open addressing; a power of two of them, at most half of them taken
};

// The index of `key` among the welded vertices, to which it is appended when it is new.
std::int32_t weldVertex(const VertexKey& key, std::vector<VertexKey>& vertices, WeldTable& table);

// Welds the triangles' corners. An index outside its table stands for an all-zero entry of that
// table.
WeldedMesh weldTileMesh(const TileMesh& mesh);

}  // namespace morvane

#endif  // MORVANE_GEOMETRY_TILEMESH_H_
