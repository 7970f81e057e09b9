#include "util/Matrix44.h"

namespace morvane {

namespace {

// Intermediate values are doubles: the determinant of a small tile's matrix must not vanish.
struct Block22 {
  double a, b, c, d;  // rows (a b), (c d)
};

Block22 operator*(const Block22& l, const Block22& r) {
  return {l.a * r.a + l.b * r.c, l.a * r.b + l.b * r.d, l.c * r.a + l.d * r.c,
          l.c * r.b + l.d * r.d};
}

Block22 operator+(const Block22& l, const Block22& r) {
  return {l.a + r.a, l.b + r.b, l.c + r.c, l.d + r.d};
}

Block22 operator-(const Block22& l, const Block22& r) {
  return {l.a - r.a, l.b - r.b, l.c - r.c, l.d - r.d};
}

Block22 operator-(const Block22& x) {
  return {-x.a, -x.b, -x.c, -x.d};
}

Block22 inverse(const Block22& x) {
  const double k = 1 / (x.a * x.d - x.b * x.c);
  return {x.d * k, -x.b * k, -x.c * k, x.a * k};
}

Block22 blockOf(const Matrix44& m, int row, int column) {
  return {m(row, column), m(row, column + 1), m(row + 1, column), m(row + 1, column + 1)};
}

void setBlock(Matrix44& m, int row, int column, const Block22& x) {
  m(row, column) = static_cast<float>(x.a);
  m(row, column + 1) = static_cast<float>(x.b);
  m(row + 1, column) = static_cast<float>(x.c);
  m(row + 1, column + 1) = static_cast<float>(x.d);
}

}  // namespace

void Matrix44::setIdentity() {
  *this = Matrix44();
}

void Matrix44::setRow(int row, float x, float y, float z) {
  float* const to = m + 4 * row;
  to[0] = x;
  to[1] = y;
  to[2] = z;
}

void Matrix44::scaleColumns(float x, float y, float z) {
  for (int row = 0; row < 3; ++row) {
    m[4 * row] *= x;
    m[4 * row + 1] *= y;
    m[4 * row + 2] *= z;
  }
}

Matrix44& Matrix44::invert() {
  const bool affine = m[3] == 0 && m[7] == 0 && m[11] == 0 && m[15] == 1;
  if (affine)
    invertAffine();
  else
    invertGeneral();
  return *this;
}

void Matrix44::invertAffine() {
  const double a00 = m[0], a01 = m[1], a02 = m[2];
  const double a10 = m[4], a11 = m[5], a12 = m[6];
  const double a20 = m[8], a21 = m[9], a22 = m[10];
  const double c0 = a11 * a22 - a21 * a12;
  const double c1 = a21 * a02 - a01 * a22;
  const double c2 = a01 * a12 - a11 * a02;
  const double determinant = a00 * c0 + a10 * c1 + a20 * c2;
  const double t[3] = {m[12], m[13], m[14]};
  setIdentity();
  if (determinant == 0) return;
  const double adjugate[3][3] = {
      {c0, c1, c2},
      {a12 * a20 - a22 * a10, a22 * a00 - a02 * a20, a02 * a10 - a12 * a00},
      {a10 * a21 - a20 * a11, a20 * a01 - a00 * a21, a00 * a11 - a10 * a01}};
  for (int j = 0; j < 3; ++j) {
    double moved = 0;
    for (int i = 0; i < 3; ++i) {
      const double element = adjugate[i][j] / determinant;
      m[4 * i + j] = static_cast<float>(element);
      moved += t[i] * element;
    }
    m[12 + j] = static_cast<float>(-moved);
  }
}

// Blockwise: with blocks P Q over R S and D = (S - R P' Q)', the inverse is
// (P' + P' Q D R P', -P' Q D) over (-D R P', D), where ' marks an inverse.
void Matrix44::invertGeneral() {
  const Block22 q = blockOf(*this, 0, 2);
  const Block22 r = blockOf(*this, 2, 0);
  const Block22 p = inverse(blockOf(*this, 0, 0));
  const Block22 rp = r * p;
  const Block22 d = inverse(blockOf(*this, 2, 2) - rp * q);
  const Block22 pqd = p * q * d;
  setBlock(*this, 0, 0, p + pqd * rp);
  setBlock(*this, 0, 2, -pqd);
  setBlock(*this, 2, 0, -(d * rp));
  setBlock(*this, 2, 2, d);
}

}  // namespace morvane
