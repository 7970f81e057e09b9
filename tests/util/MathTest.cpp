#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <limits>

#include "util/ByteOrder.h"
#include "util/Matrix44.h"
#include "util/Quat.h"

namespace morvane {
namespace {

using Rows = std::array<float, 16>;

Matrix44 matrix(const Rows& rows) {
  Matrix44 result;
  std::copy(rows.begin(), rows.end(), result.m);
  return result;
}

TEST(Matrix44, TimesItsInverseIsTheIdentity) {
  const Rows cases[] = {{2, 1, 0.5f, 0, -1, 3, 2, 0, 0.25f, -2, 1, 0, 7, -8, 9, 1},
                        {2, 1, 0.5f, 1, -1, 3, 2, 0.5f, 0.25f, -2, 1, -1, 7, -8, 9, 3},
                        // Very small, which is not singular.
                        {1e-15f, 0, 0, 0, 0, 1e-15f, 0, 0, 0, 0, 1e-15f, 0, 0, 0, 0, 1}};
  for (const Rows& rows : cases) {
    const Matrix44 m = matrix(rows);
    Matrix44 inverse = m;
    EXPECT_EQ(&inverse.invert(), &inverse);
    for (int i = 0; i < 4; ++i) {
      for (int j = 0; j < 4; ++j) {
        float sum = 0;
        for (int k = 0; k < 4; ++k) sum += m(i, k) * inverse(k, j);
        EXPECT_NEAR(sum, i == j ? 1 : 0, 1e-5) << i << ' ' << j;
      }
    }
  }
}

// Translation and all.
TEST(Matrix44, SingularAffineBecomesTheIdentity) {
  Matrix44 m = matrix({1, 2, 3, 0, 2, 4, 6, 0, 0, 0, 1, 0, 5, 6, 7, 1});
  m.invert();
  for (int i = 0; i < 16; ++i) EXPECT_EQ(m.m[i], i % 5 == 0 ? 1 : 0) << i;
}

TEST(Matrix44, GeneralSingularGivesNoNumbers) {
  Matrix44 m = matrix({0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1, 0, 0, 0, 0, 2});
  EXPECT_FALSE(std::isfinite(m.invert()(0, 0)));
}

TEST(Quat, Normalises) {
  const float nan = std::numeric_limits<float>::quiet_NaN();
  const Quat cases[][2] = {{{0, 0, 0, 0}, {0, 0, 0, 1}},
                           {{nan, 0, 0, 1}, {0, 0, 0, 1}},
                           {{0, 0, 3, 4}, {0, 0, 0.6f, 0.8f}}};
  for (const auto& [from, to] : cases) {
    Quat q = from;
    EXPECT_EQ(&q.normalise(), &q);
    EXPECT_EQ(q.x, to.x);
    EXPECT_EQ(q.y, to.y);
    EXPECT_EQ(q.z, to.z);
    EXPECT_EQ(q.w, to.w);
  }
  EXPECT_EQ((Quat{1e30f, 0, 0, 0}).length(), double{1e30f});  // its square is not a float
}

TEST(ByteOrder, PlacesEveryByte) {
  std::uint8_t bytes[6] = {};
  storeBe32(bytes, 0x81020384u);
  EXPECT_EQ(loadLe32(bytes), 0x84030281u);
  EXPECT_EQ(loadBe16(bytes + 2), 0x0384);
  storeLe16(bytes + 4, 0xFE01);
  EXPECT_EQ(loadBe16(bytes + 4), 0x01FE);
  storeLeFloat(bytes, -1.5f);  // 0xBFC00000
  EXPECT_EQ(bytes[3], 0xBF);
  EXPECT_EQ(loadLeFloat(bytes), -1.5f);
}

}  // namespace
}  // namespace morvane
