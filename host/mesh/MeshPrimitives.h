#ifndef MORVANE_HOST_MESH_MESHPRIMITIVES_H_
#define MORVANE_HOST_MESH_MESHPRIMITIVES_H_

#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "host/mesh/MeshData.h"

namespace host {

// A number that is set on the node, by the attribute's short and long name; nothing for the type's
// default. A component of the axis has names of its own ("axx", "axisX").
using PrimitiveParameter =
    std::function<std::optional<double>(std::string_view shortName, std::string_view longName)>;

// The most points of one primitive, and of all primitives of a scene file together: about half a
// gigabyte each.
constexpr int kMostPrimitivePoints = 2'000'000;

// Whether nodes of this type are made by evaluatePrimitive: polyPlane, polyCube, polySphere,
// polyCylinder, polyCone, polyPyramid, polyTorus.
bool isPrimitive(std::string_view typeName);

// Replaces the points, edges, faces and UVs of `mesh` by those of the primitive; its tweaks and the
// names of its UV sets stay. Gives what is wrong, and then leaves `mesh` alone: another type, or
// more points than a primitive may have. Subdivisions below what the shape needs count as that.
//
// Points, faces and UVs come in the order that users of the host know. With Y as the axis: a plane
// goes in rows from +z to −z, each from −x to +x; a cube in rows up its front, along its top, down
// its back and along its bottom, then inside its right and its left side; a sphere in rings from
// the bottom, then the bottom and the top pole; a cylinder in rings from the bottom, then the rings
// inside its caps and their centres; a cone in rings from the bottom, then the tip; a torus in
// rings that begin inside and go up. Rings start one step from +x towards −z. UVs: none when
// createUVs is 0; the plane and the sphere fill the unit square; cube and cylinder are unfolded,
// the cube in proportion to its size.
std::string evaluatePrimitive(std::string_view typeName, const PrimitiveParameter& parameter,
                              MeshData& mesh);

}  // namespace host

#endif  // MORVANE_HOST_MESH_MESHPRIMITIVES_H_
