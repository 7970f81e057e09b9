#include "geometry/TileMatrix.h"

#include <gtest/gtest.h>

#include <limits>

namespace morvane {
namespace {

void expectPoint(const Float3& actual, const Float3& expected) {
  EXPECT_FLOAT_EQ(actual.x, expected.x);
  EXPECT_FLOAT_EQ(actual.y, expected.y);
  EXPECT_FLOAT_EQ(actual.z, expected.z);
}

TEST(TileMatrix, MapsTheBoxOntoTileSpace) {
  const TileBounds bounds = tileBounds({{-2, 0.5F, 4}, {2, 0, 0}, {0, 1, -4}});
  expectPoint(bounds.min, {-2, 0, -4});
  expectPoint(bounds.max, {2, 1, 4});
  ASSERT_TRUE(hasTileExtent(bounds));
  const Matrix44 matrix = tileNormalisationMatrix(bounds);
  EXPECT_EQ(matrix(0, 0), 0.25F);
  EXPECT_EQ(matrix(1, 1), 0.1875F);
  EXPECT_EQ(matrix(2, 2), 0.125F);
  expectPoint(transformPoint({2, 1, 4}, matrix), {1, 0.1875F, 1});
  expectPoint(transformPoint({-2, 0, -4}, matrix), {0, 0, 0});
  Matrix44 inverse = matrix;
  inverse.invert();
  expectPoint(transformPoint({0.5F, 0.1875F, 0.5F}, inverse), {0, 1, 0});
}

TEST(TileMatrix, BoundsStartAtAMillion) {
  const TileBounds none = tileBounds({});
  expectPoint(none.min, {1e6F, 1e6F, 1e6F});
  expectPoint(none.max, {-1e6F, -1e6F, -1e6F});
  const TileBounds far = tileBounds({{2e6F, -2e6F, 0}, {3e6F, -3e6F, 1}});
  expectPoint(far.min, {1e6F, -3e6F, 0});
  expectPoint(far.max, {3e6F, -1e6F, 1});
}

TEST(TileMatrix, KnowsTilesWithoutExtent) {
  EXPECT_TRUE(hasTileExtent(tileBounds({{0, 0, 0}, {1, 0, 1}})));  // a flat tile has one
  EXPECT_FALSE(hasTileExtent(tileBounds({{5, 0, 0}, {5, 1, 1}})));
  EXPECT_FALSE(hasTileExtent(tileBounds({{0, 0, 5}, {1, 1, 5}})));
  EXPECT_FALSE(hasTileExtent(tileBounds({{0, 0, 0}, {1e-40F, 1, 1}})));
  const float infinity = std::numeric_limits<float>::infinity();
  EXPECT_FALSE(hasTileExtent(tileBounds({{0, 0, -infinity}, {1, 1, 1}})));
}

TEST(TileMatrix, ProductAppliesTheLeftFactorFirst) {
  Matrix44 move;
  move.setRow(3, 1, 2, 3);
  Matrix44 scale;
  scale.scaleColumns(2, 4, 8);
  expectPoint(transformPoint({1, 1, 1}, product(move, scale)), {4, 12, 32});
  expectPoint(transformPoint({1, 1, 1}, product(scale, move)), {3, 6, 11});
}

TEST(TileMatrix, FourthComponentIsKeptAndNotDividedBy) {
  Matrix44 matrix;
  matrix(0, 3) = 2;
  matrix(3, 3) = 5;
  matrix.setRow(3, 10, 0, 0);
  expectPoint(transformPoint({3, 0, 0}, matrix), {13, 0, 0});
  const Quat q = transformVector4({3, 1, 1, 0}, matrix);
  EXPECT_EQ(q.x, 3);
  EXPECT_EQ(q.w, 6);
}

}  // namespace
}  // namespace morvane
