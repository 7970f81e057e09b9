#ifndef MORVANE_HOST_SCENE_MESHNORMALS_H_
#define MORVANE_HOST_SCENE_MESHNORMALS_H_

#include "host/scene/MeshData.h"

namespace host {

// The stored normal of a corner, kUnlockedNormal three times when it has none. Stored normals go by
// corner; a list that is as long as the points, and not as the corners, goes by vertex.
MeshNormal storedNormalAt(const MeshData& mesh, int corner);

// Locked corners have their stored normal, to the bit. The others have a computed one of length 1:
// of the faces around the vertex, those that smooth edges join share the sum of their face normals,
// each weighted by the face's angle at the vertex. A corner without area around it gets a zero
// vector. The list goes by vertex, and within a vertex by face; a normal that occurs there twice is
// listed once.
MeshNormals computeNormals(const MeshData& mesh);

}  // namespace host

#endif  // MORVANE_HOST_SCENE_MESHNORMALS_H_
