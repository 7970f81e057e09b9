#include <maya/MMatrix.h>

#include <algorithm>
#include <cmath>
#include <utility>

namespace {

constexpr double kIdentity[4][4] = {{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}};

// Gauss-Jordan elimination with row pivoting. Gives the determinant and, when that is not 0, leaves
// the inverse of `m` in `inverse`.
double invert(MMatrix m, MMatrix& inverse) {
  double determinant = 1.0;
  inverse.setToIdentity();
  for (unsigned int column = 0; column < 4; ++column) {
    unsigned int pivot = column;
    for (unsigned int row = column + 1; row < 4; ++row)
      if (std::fabs(m(row, column)) > std::fabs(m(pivot, column))) pivot = row;
    if (m(pivot, column) == 0.0) return 0.0;
    if (pivot != column) {
      std::swap(m.matrix[pivot], m.matrix[column]);
      std::swap(inverse.matrix[pivot], inverse.matrix[column]);
      determinant = -determinant;
    }
    const double divisor = m(column, column);
    determinant *= divisor;
    for (unsigned int c = 0; c < 4; ++c) {
      m(column, c) /= divisor;
      inverse(column, c) /= divisor;
    }
    for (unsigned int row = 0; row < 4; ++row) {
      const double factor = m(row, column);
      if (row == column || factor == 0.0) continue;
      for (unsigned int c = 0; c < 4; ++c) {
        m(row, c) -= factor * m(column, c);
        inverse(row, c) -= factor * inverse(column, c);
      }
    }
  }
  return determinant;
}

// Element by element, converted to double.
template <typename T>
void copyRows(const T from[4][4], double to[4][4]) {
  for (int r = 0; r < 4; ++r) std::copy(from[r], from[r] + 4, to[r]);
}

}  // namespace

const MMatrix MMatrix::identity;

MMatrix::MMatrix(const double m[4][4]) {
  copyRows(m, matrix);
}

MMatrix::MMatrix(const float m[4][4]) {
  copyRows(m, matrix);
}

MMatrix MMatrix::operator*(const MMatrix& other) const {
  MMatrix result;
  for (unsigned int r = 0; r < 4; ++r) {
    for (unsigned int c = 0; c < 4; ++c) {
      result(r, c) = matrix[r][0] * other(0, c) + matrix[r][1] * other(1, c) +
                     matrix[r][2] * other(2, c) + matrix[r][3] * other(3, c);
    }
  }
  return result;
}

MMatrix MMatrix::operator*(double s) const {
  MMatrix result = *this;
  for (auto& row : result.matrix)
    for (double& element : row) element *= s;
  return result;
}

MMatrix MMatrix::operator+(const MMatrix& other) const {
  MMatrix result = *this;
  for (unsigned int r = 0; r < 4; ++r)
    for (unsigned int c = 0; c < 4; ++c) result(r, c) += other(r, c);
  return result;
}

bool MMatrix::operator==(const MMatrix& other) const {
  return std::equal(&matrix[0][0], &matrix[0][0] + 16, &other.matrix[0][0]);
}

MMatrix& MMatrix::setToIdentity() {
  copyRows(kIdentity, matrix);
  return *this;
}

MMatrix MMatrix::transpose() const {
  MMatrix result;
  for (unsigned int r = 0; r < 4; ++r)
    for (unsigned int c = 0; c < 4; ++c) result(r, c) = matrix[c][r];
  return result;
}

double MMatrix::det4x4() const {
  MMatrix unused;
  return invert(*this, unused);
}

double MMatrix::det3x3() const {
  const auto& m = matrix;
  return m[0][0] * (m[1][1] * m[2][2] - m[1][2] * m[2][1]) -
         m[0][1] * (m[1][0] * m[2][2] - m[1][2] * m[2][0]) +
         m[0][2] * (m[1][0] * m[2][1] - m[1][1] * m[2][0]);
}

bool MMatrix::isSingular() const {
  return det4x4() == 0.0;
}

MMatrix MMatrix::inverse() const {
  MMatrix result;
  return invert(*this, result) == 0.0 ? identity : result;
}

bool MMatrix::isEquivalent(const MMatrix& other, double tolerance) const {
  return std::equal(&matrix[0][0], &matrix[0][0] + 16, &other.matrix[0][0],
                    [=](double a, double b) { return std::fabs(a - b) <= tolerance; });
}

std::ostream& operator<<(std::ostream& out, const MMatrix& m) {
  out << '[';
  for (unsigned int r = 0; r < 4; ++r) {
    out << (r == 0 ? "[" : ", [") << m(r, 0) << ", " << m(r, 1) << ", " << m(r, 2) << ", "
        << m(r, 3) << ']';
  }
  return out << ']';
}
