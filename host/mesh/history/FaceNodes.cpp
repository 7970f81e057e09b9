#include <algorithm>

#include "host/mesh/history/FaceRebuild.h"
#include "host/mesh/history/HistoryNodes.h"

namespace host {
namespace {

constexpr ParameterName kInputComponents = {"ics", "inputComponents"};

enum NormalMode { kReverse = 0, kReverseAndExtract = 3, kReverseAndPropagate = 4 };

std::vector<bool> chosenFaces(const HistoryParameters& node, const MeshData& mesh) {
  const auto faces = node.components(kInputComponents, ElementKind::kFace, mesh.faceCount());
  std::vector<bool> chosen(static_cast<std::size_t>(mesh.faceCount()), !faces.has_value());
  for (const int face : faces.value_or(std::vector<int>()))
    chosen[static_cast<std::size_t>(face)] = true;
  return chosen;
}

// The face the other way round, from the same corner on.
void addReversed(const MeshData& mesh, int face, FaceRebuild& faces) {
  faces.addFace(mesh, face);
  std::reverse(faces.corners.end() - (mesh.cornerCount(face) - 1), faces.corners.end());
}

}  // namespace

std::string deleteComponent(HistoryParameters& node, MeshData& mesh) {
  constexpr ParameterName kDeleted = {"dc", "deleteComponents"};
  for (const ElementKind kind : {ElementKind::kVertex, ElementKind::kEdge}) {
    const int count =
        kind == ElementKind::kVertex ? mesh.pointCount() : static_cast<int>(mesh.edges().size());
    if (!node.components(kDeleted, kind, count).value_or(std::vector<int>()).empty())
      return "it deletes edges or vertices, which is not evaluated";
  }
  const std::vector<int> gone =
      node.components(kDeleted, ElementKind::kFace, mesh.faceCount()).value_or(std::vector<int>());
  if (gone.empty()) return {};
  FaceRebuild faces = FaceRebuild::withPointsOf(mesh);
  auto next = gone.begin();
  for (int face = 0; face < mesh.faceCount(); ++face)
    if (next != gone.end() && *next == face)
      ++next;
    else
      faces.addFace(mesh, face);
  dropUnusedPoints(faces);
  node.dropNumbers();
  const std::string problem = rebuild(faces, mesh);
  dropUnusedUvs(mesh);
  return problem;
}

std::string polyNormal(HistoryParameters& node, MeshData& mesh) {
  const std::vector<bool> chosen = chosenFaces(node, mesh);
  const int mode = node.whole({"nm", "normalMode"}, kReverse, 0, 100);
  const bool all = std::find(chosen.begin(), chosen.end(), false) == chosen.end();
  if (mode != kReverse && !(all && (mode == kReverseAndExtract || mode == kReverseAndPropagate)))
    return "its mode " + std::to_string(mode) + " is not evaluated";
  FaceRebuild faces = FaceRebuild::withPointsOf(mesh);
  for (int face = 0; face < mesh.faceCount(); ++face) {
    chosen[static_cast<std::size_t>(face)] ? addReversed(mesh, face, faces)
                                           : faces.addFace(mesh, face);
  }
  return rebuild(faces, mesh);
}

std::string polyMapDel(HistoryParameters& node, MeshData& mesh) {
  const std::vector<bool> chosen = chosenFaces(node, mesh);
  const std::string name = node.text({"uvs", "uvSetName"});
  MeshUvSet* set = mesh.findUvSet(name.empty() ? nullptr : &name);
  for (int face = 0; set != nullptr && face < mesh.faceCount(); ++face) {
    if (!chosen[static_cast<std::size_t>(face)]) continue;
    const std::size_t end = static_cast<std::size_t>(mesh.faceStart(face) + mesh.cornerCount(face));
    for (auto i = static_cast<std::size_t>(mesh.faceStart(face)); i < end; ++i)
      if (i < set->ids.size()) set->ids[i] = -1;
  }
  dropUnusedUvs(mesh);
  return {};
}

std::string polyTriangulate(HistoryParameters& node, MeshData& mesh) {
  const std::vector<bool> chosen = chosenFaces(node, mesh);
  const MeshTriangles& triangles = mesh.triangles();
  FaceRebuild faces = FaceRebuild::withPointsOf(mesh);
  for (int face = 0; face < mesh.faceCount(); ++face) {
    const auto index = static_cast<std::size_t>(face);
    if (!chosen[index]) {
      faces.addFace(mesh, face);
      continue;
    }
    for (int i = triangles.firstOfFace[index]; i < triangles.firstOfFace[index + 1]; ++i) {
      faces.counts.push_back(3);
      for (const int corner : triangles.list[static_cast<std::size_t>(i)].corners)
        faces.corners.push_back({mesh.cornerVertices()[static_cast<std::size_t>(corner)], corner});
    }
  }
  node.dropNumbers();
  return rebuild(faces, mesh);
}

}  // namespace host
