#ifndef MORVANE_HOST_MESH_MESHNORMALS_H_
#define MORVANE_HOST_MESH_MESHNORMALS_H_

#include <vector>

#include "host/mesh/MeshData.h"

namespace host {

// The stored normal of every corner, kUnlockedNormal three times where there is none. Scenes hold
// one for each corner, or, when there are exactly as many, one for each group of corners at a
// vertex whose faces smooth edges join, in the order in which the faces come to the groups. In any
// other number they go by corner.
std::vector<MeshNormal> storedNormalsByCorner(const MeshData& mesh);

// Locked corners have their stored normal, to the bit. The others have a computed one of length 1:
// of the faces around the vertex, those that smooth edges join share the sum of their face normals,
// each weighted by the face's angle at the vertex. A corner without area around it gets a zero
// vector. The list goes by vertex, and within a vertex by face; a normal that occurs there twice is
// listed once.
MeshNormals computeNormals(const MeshData& mesh);

}  // namespace host

#endif  // MORVANE_HOST_MESH_MESHNORMALS_H_
