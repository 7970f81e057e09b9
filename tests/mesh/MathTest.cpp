#include <maya/MFloatPoint.h>
#include <maya/MMatrix.h>
#include <maya/MPoint.h>

#include <gtest/gtest.h>

namespace {

const double kRows[4][4] = {{0, 2, 0, 0}, {-1, 0, 0, 0}, {0.5, 0, 4, 0}, {10, 20, 30, 1}};

TEST(Math, PointsMoveAndVectorsTurn) {
  const MMatrix matrix(kRows);
  EXPECT_EQ(MPoint(1, 2, 3) * matrix, MPoint(1 * 0 - 2 + 1.5 + 10, 2 + 20, 12 + 30));
  EXPECT_EQ(MVector(1, 2, 3) * matrix, MVector(-0.5, 2, 12));
  EXPECT_EQ(MVector(1, 0, 0) ^ MVector(0, 1, 0), MVector(0, 0, 1));
  EXPECT_EQ(MPoint(1, 2, 3).distanceTo(MPoint(1, 5, 7)), 5.0);
  EXPECT_EQ(MVector(3, 0, 4).normal(), MVector(0.6, 0, 0.8));
  EXPECT_EQ(MVector().normal(), MVector());
  MPoint homogeneous(2, 4, 6, 2);
  EXPECT_EQ(homogeneous.cartesianize(), MPoint(1, 2, 3));
  EXPECT_EQ(MFloatPoint(MPoint(0.1, 0, 0)).x, 0.1f);
}

TEST(Math, InverseUndoesAndSingularMatricesHaveNone) {
  const MMatrix matrix(kRows);
  EXPECT_TRUE((matrix * matrix.inverse()).isEquivalent(MMatrix::identity, 1e-14));
  EXPECT_DOUBLE_EQ(matrix.det4x4(), 8.0);
  EXPECT_DOUBLE_EQ(matrix.det3x3(), 8.0);
  EXPECT_EQ(matrix.transpose()(1, 0), 2.0);
  MMatrix other;
  other(3, 1) = 5;  // applied second
  EXPECT_EQ(MPoint(0, 0, 0) * (matrix * other), MPoint(10, 25, 30));
  MMatrix flat;
  flat(1, 1) = 0;
  EXPECT_TRUE(flat.isSingular());
  EXPECT_EQ(flat.inverse(), MMatrix::identity);
}

}  // namespace
