#ifndef MORVANE_HOST_MATH_TRANSFORMPARTS_H_
#define MORVANE_HOST_MATH_TRANSFORMPARTS_H_

#include <maya/MMatrix.h>

#include "host/math/MeshVector.h"

namespace host {

// Matrices are for row vectors: of a product the left one is applied first. A rotate order is 0 to
// 5: xyz, yzx, zxy, xzy, yxz, zyx, the axis that turns first in front. Angles are degrees.

MMatrix translationMatrix(const Vec3& v);
MMatrix scaleMatrix(const Vec3& v);
MMatrix shearMatrix(const Vec3& xyXzYz);
MMatrix rotationMatrix(const Vec3& angles, int order);

// The angles of a rotation.
Vec3 anglesOf(const MMatrix& rotation, int order);

// The rotate order for an attribute's number; 0 when the number is not one of an order.
int rotateOrder(double number);

// What a matrix is made of: scale, then shear (xy, xz, yz), then rotation, then translation.
struct TransformParts {
  Vec3 translate;
  Vec3 rotate;
  Vec3 scale = {1.0, 1.0, 1.0};
  Vec3 shear;
};
TransformParts decompose(const MMatrix& matrix, int rotateOrder);

// The rotation that is left when scale and shear are taken out.
MMatrix rotationPart(const MMatrix& matrix);

Vec3 translationOf(const MMatrix& matrix);
// A point, or a direction, through a matrix.
Vec3 pointThrough(const Vec3& point, const MMatrix& matrix);
Vec3 directionThrough(const Vec3& direction, const MMatrix& matrix);

}  // namespace host

#endif  // MORVANE_HOST_MATH_TRANSFORMPARTS_H_
