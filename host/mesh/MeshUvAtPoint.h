#ifndef MORVANE_HOST_MESH_MESHUVATPOINT_H_
#define MORVANE_HOST_MESH_MESHUVATPOINT_H_

#include <maya/MMatrix.h>

#include <optional>

#include "host/mesh/MeshData.h"

namespace host {

// The UV at the point of the face that is nearest to `point`, both in the space that `matrix` leads
// to, mixed from the corners of the triangle that the point is on. Nothing when one of these has no
// UV.
std::optional<MeshUv> uvAtPoint(const MeshData& mesh, int face, const MeshUvSet& set,
                                const MMatrix& matrix, const Vec3& point);

}  // namespace host

#endif  // MORVANE_HOST_MESH_MESHUVATPOINT_H_
