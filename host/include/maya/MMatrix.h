#ifndef MORVANE_MAYA_MMATRIX_H_
#define MORVANE_MAYA_MMATRIX_H_

#include <ostream>

// A 4 × 4 matrix for row vectors: a point maps to (x, y, z, w) × matrix, row 3 holds the
// translation, and A * B applies A first.
class MMatrix {
 public:
  MMatrix() { setToIdentity(); }
  explicit MMatrix(const double m[4][4]);
  explicit MMatrix(const float m[4][4]);

  double* operator[](unsigned int row) { return matrix[row]; }
  const double* operator[](unsigned int row) const { return matrix[row]; }
  double& operator()(unsigned int row, unsigned int column) { return matrix[row][column]; }
  double operator()(unsigned int row, unsigned int column) const { return matrix[row][column]; }

  MMatrix operator*(const MMatrix& other) const;
  MMatrix& operator*=(const MMatrix& other) { return *this = *this * other; }
  MMatrix operator*(double s) const;
  MMatrix operator+(const MMatrix& other) const;
  bool operator==(const MMatrix& other) const;
  bool operator!=(const MMatrix& other) const { return !(*this == other); }

  MMatrix& setToIdentity();
  MMatrix transpose() const;
  double det4x4() const;
  double det3x3() const;
  bool isSingular() const;
  // The identity when the matrix is singular.
  MMatrix inverse() const;
  bool isEquivalent(const MMatrix& other, double tolerance = 1.0e-10) const;

  static const MMatrix identity;

  double matrix[4][4];
};

std::ostream& operator<<(std::ostream& out, const MMatrix& m);

#endif  // MORVANE_MAYA_MMATRIX_H_
