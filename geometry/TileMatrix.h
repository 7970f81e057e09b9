#ifndef MORVANE_GEOMETRY_TILEMATRIX_H_
#define MORVANE_GEOMETRY_TILEMATRIX_H_

#include <vector>

#include "geometry/TileMesh.h"
#include "util/Matrix44.h"
#include "util/Quat.h"

// The mapping of a tile's bounding box onto tile space, and the matrix operations that carry
// goblins there and back. Points are row vectors: p' = p * M.
namespace morvane {

// Object-space bounding box. Starts as min 1000000, max -1000000: a box of no points stays so.
struct TileBounds {
  Float3 min{1000000.0F, 1000000.0F, 1000000.0F};
  Float3 max{-1000000.0F, -1000000.0F, -1000000.0F};
};

TileBounds tileBounds(const std::vector<Float3>& points);

// Whether x and z can be scaled to a length of 1. False when an extent is negative (no points),
// zero, or so small or large that a float cannot hold its reciprocal.
bool hasTileExtent(const TileBounds& bounds);

// Moves the box's minimum to the origin and scales x and z to [0, 1], y by the mean of their two
// factors. Needs hasTileExtent for a finite result.
Matrix44 tileNormalisationMatrix(const TileBounds& bounds);

Matrix44 product(const Matrix44& a, const Matrix44& b);

// The first three components of (p, 1) * M, without division by the fourth.
Float3 transformPoint(const Float3& p, const Matrix44& m);

Quat transformVector4(const Quat& q, const Matrix44& m);

}  // namespace morvane

#endif  // MORVANE_GEOMETRY_TILEMATRIX_H_
