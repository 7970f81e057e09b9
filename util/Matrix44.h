#ifndef MORVANE_UTIL_MATRIX44_H_
#define MORVANE_UTIL_MATRIX44_H_

namespace morvane {

// A 4 x 4 matrix of floats, row-major, in the host's row-vector convention: p' = p * M, translation
// in row 3. An affine matrix has column 3 equal to (0, 0, 0, 1). A new matrix is the identity.
class Matrix44 {
 public:
  float m[16] = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};

  float& operator()(int row, int column) { return m[4 * row + column]; }
  float operator()(int row, int column) const { return m[4 * row + column]; }

  void setIdentity();

  // Sets the first three elements of a row (0 to 3); column 3 keeps its value.
  void setRow(int row, float x, float y, float z);

  // Multiplies column j of the upper-left 3 x 3 block by the j-th factor; row 3 and column 3 keep
  // theirs.
  void scaleColumns(float x, float y, float z);

  // Replaces the matrix by its inverse and returns it. A singular affine matrix becomes the
  // identity; a singular matrix of any other kind (or one whose upper-left 2 x 2 block is singular)
  // is filled with infinities and not-a-number values.
  Matrix44& invert();

 private:
  void invertAffine();
  void invertGeneral();
};

}  // namespace morvane

#endif  // MORVANE_UTIL_MATRIX44_H_
