#include <algorithm>
#include <map>

#include "host/mesh/DisjointSets.h"
#include "host/mesh/MeshNormals.h"
#include "host/mesh/history/FaceRebuild.h"
#include "host/mesh/history/HistoryNodes.h"
#include "host/mesh/history/HistoryTools.h"

namespace host {
namespace {

// The ids of `from`'s corners behind those of the corners before, which reach to `corners`.
void appendIds(const std::vector<int>& from, std::size_t corners, std::size_t offset,
               std::vector<int>& ids) {
  ids.resize(corners, -1);
  for (const int id : from) ids.push_back(id < 0 ? -1 : id + static_cast<int>(offset));
}

// Sets of one name become one.
template <class Set>
int indexOfName(const std::vector<Set>& sets, const std::string& name) {
  int next = 0;
  for (const Set& set : sets) {
    if (set.name == name) return set.index;
    next = std::max(next, set.index + 1);
  }
  return next;
}

void appendSets(const MeshData& part, std::size_t corners, MeshData& mesh) {
  for (const MeshUvSet& own : part.uvSets()) {
    MeshUvSet* const set = mesh.uvSet(indexOfName(mesh.uvSets(), own.name));
    if (set == nullptr) continue;
    set->name = own.name;
    appendIds(own.ids, corners, set->uvs.size(), set->ids);
    set->uvs.insert(set->uvs.end(), own.uvs.begin(), own.uvs.end());
  }
  for (const MeshColourSet& own : part.colourSets()) {
    MeshColourSet* const set = mesh.colourSet(indexOfName(mesh.colourSets(), own.name));
    if (set == nullptr) continue;
    set->name = own.name;
    set->components = std::max(set->colours.empty() ? 1 : set->components, own.components);
    appendIds(own.ids, corners, set->colours.size(), set->ids);
    set->colours.insert(set->colours.end(), own.colours.begin(), own.colours.end());
  }
}

void appendNormals(const MeshData& part, std::size_t corners, MeshData& mesh) {
  const auto& stored = part.storedNormals();
  if (std::none_of(stored.begin(), stored.end(), isLocked)) return;
  const std::vector<MeshNormal> own = storedNormalsByCorner(part);
  std::vector<MeshNormal>& normals = mesh.changeNormals();
  normals.resize(corners, {kUnlockedNormal, kUnlockedNormal, kUnlockedNormal});
  normals.insert(normals.end(), own.begin(), own.end());
}

// Its edges have other numbers then; the other way is −e − 1.
std::vector<int> renumbered(const MeshData& part, int firstEdge) {
  std::vector<int> loops = part.storedLoopEdges();
  for (int& edge : loops) edge += edge >= 0 ? firstEdge : -firstEdge;
  return loops;
}

void appendFaces(const MeshData& part, int firstEdge, MeshData& mesh) {
  const std::vector<int> loops = renumbered(part, firstEdge);
  mesh.beginFaces(static_cast<std::size_t>(mesh.storedFaceStarts().size() - 1));
  for (int face = 0; face < part.faceCount(); ++face) {
    bool isHole = false;
    for (const auto& [begin, end] : part.loops(face)) {
      const int* const edges = loops.data() + begin;
      const auto count = static_cast<std::size_t>(end - begin);
      isHole ? mesh.addHole(edges, count) : mesh.addFace(edges, count);
      isHole = true;
    }
  }
}

void append(const MeshData& part, MeshData& mesh) {
  const auto firstPoint = mesh.storedPoints().size();
  const auto firstEdge = mesh.edges().size();
  const auto corners = mesh.storedLoopEdges().size();
  const std::vector<Vec3>& points = part.points();
  if (!points.empty()) mesh.setPoints(firstPoint, &points.front().x, points.size());
  std::vector<int> edges;
  for (const MeshEdge& edge : part.edges()) {
    edges.insert(edges.end(), {edge.start + static_cast<int>(firstPoint),
                               edge.end + static_cast<int>(firstPoint), edge.flag});
  }
  mesh.setEdges(firstEdge, edges.data(), edges.size() / 3);
  appendFaces(part, static_cast<int>(firstEdge), mesh);
  appendSets(part, corners, mesh);
  appendNormals(part, corners, mesh);
}

// The points that hang together by edges, by their first.
DisjointSets partsOf(const MeshData& mesh) {
  DisjointSets parts(mesh.storedPoints().size());
  for (const MeshEdge& edge : mesh.edges()) parts.join(edge.start, edge.end);
  return parts;
}

}  // namespace

std::string polyUnite(HistoryParameters& node, MeshData& mesh) {
  const auto matrices = node.elements({"im", "inputMat"});
  std::map<int, MeshData> parts;
  const bool complete =
      node.forEachMesh({"ip", "inputPoly"}, [&](const ParameterPath& path, const MeshData& part) {
        if (path.size() == 1) parts[std::max(path.front().first, 0)] = part.clone();
      });
  if (!complete) return {};
  if (parts.empty()) return "no mesh is connected into it";
  MeshData made;
  for (auto& [index, part] : parts) {
    MMatrix matrix;
    const auto given = matrices.find(index);
    const std::string problem =
        given == matrices.end() ? std::string() : readMatrix(given->second, matrix);
    if (!problem.empty()) return "input " + std::to_string(index) + ": " + problem;
    transformMesh(part, matrix);
    append(part, made);
  }
  mesh = std::move(made);
  node.dropNumbers();
  return {};
}

std::string polySeparate(HistoryParameters& node, MeshData& mesh) {
  DisjointSets parts = partsOf(mesh);
  const auto partOf = [&](int face) {
    const auto corner = static_cast<std::size_t>(mesh.faceStart(face));
    return parts.leastOf(mesh.cornerVertices()[corner]);
  };
  std::vector<int> order;  // of the parts, by their first face
  std::vector<bool> seen(mesh.storedPoints().size(), false);
  for (int face = 0; face < mesh.faceCount(); ++face) {
    const int part = partOf(face);
    if (!seen[static_cast<std::size_t>(part)]) order.push_back(part);
    seen[static_cast<std::size_t>(part)] = true;
  }
  const auto wanted = static_cast<std::size_t>(node.outputIndex());
  if (wanted >= order.size())
    return "it has " + std::to_string(order.size()) + " parts, and part " +
           std::to_string(wanted + 1) + " is asked for";
  FaceRebuild faces = FaceRebuild::withPointsOf(mesh);
  for (int face = 0; face < mesh.faceCount(); ++face)
    if (partOf(face) == order[wanted]) faces.addFace(mesh, face);
  dropUnusedPoints(faces);
  node.dropNumbers();
  const std::string problem = rebuild(faces, mesh);
  dropUnusedUvs(mesh);
  return problem;
}

}  // namespace host
