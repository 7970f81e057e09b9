#ifndef MORVANE_HOST_MESH_HISTORY_HISTORYNODES_H_
#define MORVANE_HOST_MESH_HISTORY_HISTORYNODES_H_

#include <string>

#include "host/mesh/history/HistoryNode.h"

// The functions that the table of history nodes names; each is HistoryNodeType::evaluate.
namespace host {

inline constexpr char kCube[] = "polyCube";
inline constexpr char kCylinder[] = "polyCylinder";
inline constexpr char kPlane[] = "polyPlane";
inline constexpr char kSphere[] = "polySphere";

std::string makePrimitiveNamed(const char* typeName, HistoryParameters& node, MeshData& mesh);
template <const char* kTypeName>
std::string makePrimitive(HistoryParameters& node, MeshData& mesh) {
  return makePrimitiveNamed(kTypeName, node, mesh);
}

// Moves points by the matrix `transform` (row vectors), inverted with `invertTransform`, and locked
// normals with them. A matrix that mirrors leaves the faces as they are, so that they then face
// inwards.
std::string transformGeometry(HistoryParameters& node, MeshData& mesh);

}  // namespace host

#endif  // MORVANE_HOST_MESH_HISTORY_HISTORYNODES_H_
