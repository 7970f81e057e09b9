#ifndef MORVANE_HOST_MESH_HISTORY_HISTORYNODES_H_
#define MORVANE_HOST_MESH_HISTORY_HISTORYNODES_H_

#include <string>

#include "host/mesh/history/HistoryNode.h"

// Every type of history node that is evaluated, and the functions that do it: each is a
// HistoryNodeType::evaluate.
namespace host {

inline constexpr char kCone[] = "polyCone";
inline constexpr char kCube[] = "polyCube";
inline constexpr char kCylinder[] = "polyCylinder";
inline constexpr char kPlane[] = "polyPlane";
inline constexpr char kPyramid[] = "polyPyramid";
inline constexpr char kSphere[] = "polySphere";
inline constexpr char kTorus[] = "polyTorus";

std::string makePrimitiveNamed(const char* typeName, HistoryParameters& node, MeshData& mesh);
template <const char* kTypeName>
std::string makePrimitive(HistoryParameters& node, MeshData& mesh) {
  return makePrimitiveNamed(kTypeName, node, mesh);
}

// Moves points by the matrix `transform` (row vectors), inverted with `invertTransform`, and locked
// normals with them. A matrix that mirrors leaves the faces as they are, so that they then face
// inwards.
std::string transformGeometry(HistoryParameters& node, MeshData& mesh);

// Moves points by joints. The matrix of a joint is its current one times the inverse of the one at
// which it was bound. Points follow the weighted sum of matrices, dual quaternions, or a blend of
// both. Points without a weight stay. Dual quaternions ignore scale.
std::string skinCluster(HistoryParameters& node, MeshData& mesh);
// Adds the offsets of targets in proportion to their weights. Targets are stored or are connected
// meshes. Between two shapes of one target both count in proportion.
std::string blendShape(HistoryParameters& node, MeshData& mesh);
// Adds an offset to each point.
std::string tweak(HistoryParameters& node, MeshData& mesh);

// The same for a mesh that somebody changed point by point.
std::string polyTweak(HistoryParameters& node, MeshData& mesh);

// Moves points as a handle that was bound to them moves, in proportion to their weights as long as
// it neither turns nor scales.
std::string cluster(HistoryParameters& node, MeshData& mesh);

// Hands the mesh on and notes that its UVs are older.
std::string keepOlderUvs(HistoryParameters& node, MeshData& mesh);
// Hands the mesh on: UVs that are cut apart stay where they are.
std::string cutUvs(HistoryParameters& node, MeshData& mesh);
// Gives faces UVs by projection from a rectangle that the picture fills. For any other projection
// the UVs stay older ones.
std::string polyPlanarProj(HistoryParameters& node, MeshData& mesh);
// Adds an offset to each UV; not once UVs are older or have other numbers.
std::string polyTweakUv(HistoryParameters& node, MeshData& mesh);
// Takes the UVs from faces.
std::string polyMapDel(HistoryParameters& node, MeshData& mesh);
// Sets colours of vertices, and of corners.
std::string polyColorPerVertex(HistoryParameters& node, MeshData& mesh);

// Moves faces by translate, scale and, where the faces of a group look one way, along their normal,
// and puts walls between. Walls take the UVs of the edges that they stand on.
std::string polyExtrudeFace(HistoryParameters& node, MeshData& mesh);
// Merges points that are close to one another, in their middle, and removes faces that collapse.
// Refused when only some points of a group are close enough.
std::string polyMergeVert(HistoryParameters& node, MeshData& mesh);
// Joins all connected meshes into one, each moved by its matrix.
std::string polyUnite(HistoryParameters& node, MeshData& mesh);
// Hands on one of the connected parts, in the order of their first faces.
std::string polySeparate(HistoryParameters& node, MeshData& mesh);
// Removes faces, and points and UVs that no face needs any more.
std::string deleteComponent(HistoryParameters& node, MeshData& mesh);
// Turns faces round.
std::string polyNormal(HistoryParameters& node, MeshData& mesh);
// Cuts faces into the triangles that MeshData::triangles has.
std::string polyTriangulate(HistoryParameters& node, MeshData& mesh);
// Makes edges soft whose faces meet at less than an angle, others hard.
std::string polySoftEdge(HistoryParameters& node, MeshData& mesh);

inline constexpr HistoryNodeType::Input kNoInput = {nullptr, nullptr};
inline constexpr HistoryNodeType::Input kGeometry = {"ig", "inputGeometry"};
inline constexpr HistoryNodeType::Input kPolygons = {"ip", "inputPolymesh"};
inline constexpr HistoryNodeType::Input kDeformed = {"ip[#].ig", "input[#].inputGeometry"};

inline constexpr HistoryNodeType kHistoryNodeTypes[] = {
    {"blendShape", kDeformed, blendShape},
    {"cluster", kDeformed, cluster},
    {"deleteComponent", kGeometry, deleteComponent},
    {"groupParts", kGeometry, nullptr},
    {"polyAutoProj", kPolygons, keepOlderUvs},
    {"polyBlindData", kPolygons, nullptr},
    {"polyColorPerVertex", kPolygons, polyColorPerVertex},
    {"polyCone", kNoInput, makePrimitive<kCone>},
    {"polyCopyUV", kPolygons, keepOlderUvs},
    {"polyCrease", kPolygons, nullptr},
    {"polyCreaseEdge", kPolygons, nullptr},
    {"polyCube", kNoInput, makePrimitive<kCube>},
    {"polyCylinder", kNoInput, makePrimitive<kCylinder>},
    {"polyCylProj", kPolygons, keepOlderUvs},
    {"polyExtrudeFace", kPolygons, polyExtrudeFace},
    {"polyFlipUV", kPolygons, keepOlderUvs},
    {"polyLayoutUV", kPolygons, keepOlderUvs},
    {"polyMapCut", kPolygons, cutUvs},
    {"polyMapDel", kPolygons, polyMapDel},
    {"polyMapSew", kPolygons, keepOlderUvs},
    {"polyMapSewMove", kPolygons, keepOlderUvs},
    {"polyMergeVert", kPolygons, polyMergeVert},
    {"polyMoveUV", kPolygons, keepOlderUvs},
    {"polyNormal", kPolygons, polyNormal},
    {"polyNormalizeUV", kPolygons, keepOlderUvs},
    {"polyOptUvs", kPolygons, keepOlderUvs},
    {"polyPinUV", kPolygons, nullptr},
    {"polyPlanarProj", kPolygons, polyPlanarProj},
    {"polyPlane", kNoInput, makePrimitive<kPlane>},
    {"polyProj", kPolygons, keepOlderUvs},
    {"polyPyramid", kNoInput, makePrimitive<kPyramid>},
    {"polySeparate", kPolygons, polySeparate},
    {"polySoftEdge", kPolygons, polySoftEdge},
    {"polySphere", kNoInput, makePrimitive<kSphere>},
    {"polySphProj", kPolygons, keepOlderUvs},
    {"polyStraightenUVBorder", kPolygons, keepOlderUvs},
    {"polyTorus", kNoInput, makePrimitive<kTorus>},
    {"polyTriangulate", kPolygons, polyTriangulate},
    {"polyTweak", kPolygons, polyTweak},
    {"polyTweakUV", kPolygons, polyTweakUv},
    {"polyUnite", kNoInput, polyUnite},
    {"skinCluster", kDeformed, skinCluster},
    {"transformGeometry", kGeometry, transformGeometry},
    {"tweak", kDeformed, tweak},
};

}  // namespace host

#endif  // MORVANE_HOST_MESH_HISTORY_HISTORYNODES_H_
