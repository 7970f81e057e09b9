#include "tools/scene/SceneTiles.h"

#include <algorithm>

#include "geometry/GoblinGeometry.h"
#include "geometry/TileMatrix.h"
#include "geometry/TileMesh.h"
#include "host/Host.h"
#include "host/mesh/MeshData.h"
#include "host/scene/Dag.h"
#include "host/scene/Scene.h"
#include "host/scene/Values.h"

namespace tools {
namespace {

using host::DagPath;
using host::MeshData;
using host::NodePtr;
using morvane::Matrix44;

// Every mesh below, depth first, instances once for each path: the tile's own, then the goblins.
std::vector<DagPath> meshesBelow(const DagPath& tile) {
  std::vector<DagPath> meshes;
  std::vector<DagPath> waiting = {tile};
  while (!waiting.empty()) {
    const DagPath path = waiting.back();
    waiting.pop_back();
    if (path.node()->mesh && !path.node()->isIntermediate()) meshes.push_back(path);
    const auto& children = path.node()->children();
    for (auto child = children.rbegin(); child != children.rend(); ++child) {
      waiting.push_back(path.extendedBy(*child));
    }
  }
  return meshes;
}

morvane::Float3 toFloat3(const host::Vec3& p) {
  return {static_cast<float>(p.x), static_cast<float>(p.y), static_cast<float>(p.z)};
}

std::vector<morvane::Float3> positionsOf(const MeshData& mesh) {
  std::vector<morvane::Float3> positions;
  for (const host::Vec3& point : mesh.points()) positions.push_back(toFloat3(point));
  return positions;
}

// A corner without texture coordinates gets those of entry 0, which is (0, 0).
morvane::MeshTables tablesOf(const MeshData& mesh) {
  morvane::MeshTables tables;
  tables.positions = positionsOf(mesh);
  for (const auto& n : mesh.normals().list) tables.normals.push_back({n.x, n.y, n.z});
  tables.uvs.push_back({});
  const host::MeshUvSet* set = mesh.findUvSet();
  for (std::size_t i = 0; set && i < set->uvs.size(); ++i) {
    tables.uvs.push_back({set->uvs[i].u, set->uvs[i].v});
  }
  tables.colours.push_back(0);
  for (int face = 0; face < mesh.faceCount(); ++face) {
    morvane::PolygonRecord polygon;
    for (int i = 0; i < mesh.cornerCount(face); ++i) {
      const int corner = mesh.faceStart(face) + i;
      polygon.positions.push_back(mesh.cornerVertices()[corner]);
      polygon.normals.push_back(mesh.normals().ids[corner]);
      polygon.uvs.push_back(set ? MeshData::uvAt(*set, corner) + 1 : 0);
      polygon.colours.push_back(0);
    }
    tables.polygons.push_back(std::move(polygon));
  }
  return tables;
}

// To the space of the tile's mesh: the matrix of the one transform above, none of those further up.
Matrix44 goblinMatrix(const NodePtr& mesh) {
  Matrix44 matrix;
  matrix.setIdentity();
  if (mesh->parents().size() != 1) return matrix;
  const MMatrix local = host::localMatrix(mesh->parents()[0]->pointer());
  for (int row = 0; row < 4; ++row) {
    for (int column = 0; column < 4; ++column) {
      matrix(row, column) =
          static_cast<float>(local(static_cast<unsigned>(row), static_cast<unsigned>(column)));
    }
  }
  return matrix;
}

std::string goblinName(const DagPath& path) {
  const auto plug = host::Plug::find(path.node(), "goblinName");
  const std::string name = plug ? host::readText(*plug).value_or("") : "";
  return name.empty() ? path.parent().node()->name() : name;
}

// Appends a mesh to the goblins' pool and records, as an export does.
void append(const morvane::WeldedMesh& mesh, const Matrix44& matrix, const std::string& name,
            Goblins& goblins) {
  morvane::GoblinGeometryBuilder builder;
  morvane::appendGoblin(mesh, matrix, morvane::GoblinLayout::kNamed, name.c_str(), nullptr,
                        builder);
  const auto base = static_cast<std::int32_t>(goblins.pool.size());
  goblins.pool.insert(goblins.pool.end(), builder.pool.begin(), builder.pool.end());
  Goblin goblin;
  goblin.name = name;
  goblin.vertices = static_cast<std::uint32_t>(builder.pool.size());
  for (const auto& t : mesh.triangles) {
    goblin.faces.push_back({base + t[2], base + t[1], base + t[0]});
  }
  goblins.goblins.push_back(std::move(goblin));
}

morvane::WeldedMesh welded(const MeshData& mesh) {
  const auto tileMesh = morvane::buildTileMesh(tablesOf(mesh));
  return tileMesh ? morvane::weldTileMesh(*tileMesh) : morvane::WeldedMesh();
}

// The file's texture coordinates have v = 1 at the picture's top row.
ViewMesh tileMesh(const MeshData& mesh, const Matrix44& toTile) {
  const morvane::WeldedMesh surface = welded(mesh);
  Goblins one;
  one.kind = morvane::GoblinBlobKind::kNamed;
  append(surface, toTile, "tile", one);
  for (std::size_t i = 0; i < one.pool.size(); ++i) {
    one.pool[i].u = surface.vertices[i].uv.u;
    one.pool[i].v = 1 - surface.vertices[i].uv.v;
  }
  return goblinMeshes(one).meshes[0];
}

SceneTile readTile(const DagPath& path) {
  SceneTile tile;
  tile.name = path.node()->name();
  const std::vector<DagPath> meshes = meshesBelow(path);
  const MeshData& own = *meshes.front().node()->mesh;
  const morvane::TileBounds bounds = morvane::tileBounds(positionsOf(own));
  if (!morvane::hasTileExtent(bounds)) {
    tile.fault = own.problem().empty() ? "the tile has no extent in x or z"
                                       : "the tile's mesh is damaged: " + own.problem();
    return tile;
  }
  const Matrix44 toTile = morvane::tileNormalisationMatrix(bounds);
  tile.mesh = tileMesh(own, toTile);
  tile.goblins.present = true;
  tile.goblins.kind = morvane::GoblinBlobKind::kNamed;
  for (std::size_t i = 1; i < meshes.size(); ++i) {
    const NodePtr& goblin = meshes[i].node();
    const morvane::WeldedMesh mesh = welded(*goblin->mesh);
    if (mesh.triangles.empty()) continue;
    append(mesh, morvane::product(goblinMatrix(goblin), toTile), goblinName(meshes[i]),
           tile.goblins);
  }
  return tile;
}

}  // namespace

std::vector<SceneTile> sceneTiles() {
  std::vector<SceneTile> tiles;
  for (const host::TileCandidate& candidate : host::texturedTopLevelTransforms()) {
    const DagPath path = host::Scene::current().findPath(candidate.path);
    if (path.isEmpty()) continue;
    tiles.push_back(readTile(path));
    tiles.back().texture = candidate.texture;
  }
  return tiles;
}

}  // namespace tools
