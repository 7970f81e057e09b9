#include "host/mesh/history/FaceRebuild.h"

#include <algorithm>
#include <numeric>

#include "host/mesh/MeshBuild.h"
#include "host/mesh/MeshNormals.h"
#include "host/mesh/history/HistoryTools.h"

namespace host {
namespace {

std::vector<int> idsOf(const std::vector<int>& old, const FaceRebuild& faces) {
  std::vector<int> ids;
  ids.reserve(faces.corners.size());
  for (const FaceRebuild::Corner& corner : faces.corners) {
    const bool known = corner.from >= 0 && static_cast<std::size_t>(corner.from) < old.size();
    ids.push_back(known ? old[static_cast<std::size_t>(corner.from)] : -1);
  }
  return ids;
}

void carryNormals(const MeshData& from, const FaceRebuild& faces, MeshData& to) {
  const auto& stored = from.storedNormals();
  if (std::none_of(stored.begin(), stored.end(), isLocked)) return;
  const std::vector<MeshNormal> old = storedNormalsByCorner(from);
  std::vector<MeshNormal>& normals = to.changeNormals();
  for (const FaceRebuild::Corner& corner : faces.corners) {
    normals.push_back(corner.from >= 0
                          ? old[static_cast<std::size_t>(corner.from)]
                          : MeshNormal{kUnlockedNormal, kUnlockedNormal, kUnlockedNormal});
  }
}

void carrySets(const MeshData& from, const FaceRebuild& faces, MeshData& to) {
  for (const MeshUvSet& old : from.uvSets()) {
    MeshUvSet& set = *to.uvSet(old.index);
    set.name = old.name;
    set.uvs = old.uvs;
    set.ids = idsOf(old.ids, faces);
  }
  for (const MeshColourSet& old : from.colourSets()) {
    MeshColourSet& set = *to.colourSet(old.index);
    set.name = old.name;
    set.components = old.components;
    set.colours = old.colours;
    set.ids = idsOf(old.ids, faces);
  }
  to.setCurrentUvSetName(from.currentUvSetName());
  to.setCurrentColourSetName(from.currentColourSetName());
}

std::vector<MeshEdge> keptEdges(const MeshData& from, const FaceRebuild& faces) {
  std::vector<MeshEdge> edges;
  for (const MeshEdge& edge : from.edges()) {
    const int start = faces.newVertexOf[static_cast<std::size_t>(edge.start)];
    const int end = faces.newVertexOf[static_cast<std::size_t>(edge.end)];
    if (start >= 0 && end >= 0 && start != end) edges.push_back({start, end, edge.flag});
  }
  return edges;
}

}  // namespace

FaceRebuild FaceRebuild::withPointsOf(const MeshData& mesh) {
  FaceRebuild faces;
  faces.points = mesh.points();
  faces.newVertexOf.resize(faces.points.size());
  std::iota(faces.newVertexOf.begin(), faces.newVertexOf.end(), 0);
  return faces;
}

void FaceRebuild::addFace(const MeshData& mesh, int face) {
  const int first = mesh.faceStart(face);
  counts.push_back(mesh.cornerCount(face));
  for (int corner = first; corner < first + mesh.cornerCount(face); ++corner)
    corners.push_back({mesh.cornerVertices()[static_cast<std::size_t>(corner)], corner});
}

std::string rebuild(const FaceRebuild& faces, MeshData& mesh) {
  if (!mesh.holes().empty()) return "its input has faces with holes, which are not evaluated here";
  MeshPolygons polygons;
  polygons.points = faces.points;
  polygons.counts = faces.counts;
  polygons.connects.reserve(faces.corners.size());
  for (const FaceRebuild::Corner& corner : faces.corners)
    polygons.connects.push_back(corner.vertex);
  MeshData made;
  const std::vector<MeshEdge> edges = keptEdges(mesh, faces);
  const std::string problem = buildMesh(polygons, made, nullptr, edges);
  if (!problem.empty()) return "it leaves " + problem;
  carrySets(mesh, faces, made);
  carryNormals(mesh, faces, made);
  mesh = std::move(made);
  return {};
}

void dropUnusedPoints(FaceRebuild& faces) {
  std::vector<int> numbers(faces.points.size(), -1);
  for (const FaceRebuild::Corner& corner : faces.corners)
    numbers[static_cast<std::size_t>(corner.vertex)] = 0;
  int next = 0;
  for (std::size_t i = 0; i < numbers.size(); ++i) {
    if (numbers[i] == 0) {
      faces.points[static_cast<std::size_t>(next)] = faces.points[i];
      numbers[i] = next++;
    }
  }
  faces.points.resize(static_cast<std::size_t>(next));
  for (FaceRebuild::Corner& corner : faces.corners)
    corner.vertex = numbers[static_cast<std::size_t>(corner.vertex)];
  for (int& vertex : faces.newVertexOf)
    vertex = vertex < 0 ? -1 : numbers[static_cast<std::size_t>(vertex)];
}

void dropUnusedUvs(MeshData& mesh) {
  std::vector<int> indices;
  for (const MeshUvSet& set : mesh.uvSets()) indices.push_back(set.index);
  for (const int index : indices) {
    MeshUvSet& set = *mesh.uvSet(index);
    std::vector<int> numbers(set.uvs.size(), -1);
    for (std::size_t corner = 0; corner < set.ids.size(); ++corner) {
      const int id = MeshData::uvAt(set, static_cast<int>(corner));
      if (id >= 0) numbers[static_cast<std::size_t>(id)] = 0;
    }
    int next = 0;
    for (std::size_t i = 0; i < numbers.size(); ++i) {
      if (numbers[i] == 0) {
        set.uvs[static_cast<std::size_t>(next)] = set.uvs[i];
        numbers[i] = next++;
      }
    }
    for (std::size_t corner = 0; corner < set.ids.size(); ++corner) {
      const int id = MeshData::uvAt(set, static_cast<int>(corner));
      set.ids[corner] = id < 0 ? -1 : numbers[static_cast<std::size_t>(id)];
    }
    set.uvs.resize(static_cast<std::size_t>(next));
  }
}

}  // namespace host
