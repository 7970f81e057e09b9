#include "host/mesh/history/HistoryTools.h"

#include <algorithm>
#include <cmath>

#include "host/mesh/MeshTransform.h"

namespace host {

std::string readMatrix(const std::vector<double>& numbers, MMatrix& matrix) {
  if (numbers.size() != 16) return "its matrix has " + std::to_string(numbers.size()) + " numbers";
  if (!std::all_of(numbers.begin(), numbers.end(), [](double n) { return std::isfinite(n); }))
    return "its matrix holds what is not a number";
  std::copy(numbers.begin(), numbers.end(), &matrix.matrix[0][0]);
  return {};
}

void transformMesh(MeshData& mesh, const MMatrix& matrix) {
  for (Vec3& point : mesh.changePoints()) point = transformed(point, matrix);
  for (MeshNormal& normal : mesh.changeNormals()) {
    if (isLocked(normal)) {
      const Vec3 turned = transformedNormal({normal.x, normal.y, normal.z}, matrix);
      normal = {static_cast<float>(turned.x), static_cast<float>(turned.y),
                static_cast<float>(turned.z)};
    }
  }
}

bool isLocked(const MeshNormal& n) {
  return n.x != kUnlockedNormal || n.y != kUnlockedNormal || n.z != kUnlockedNormal;
}

std::string invert(MMatrix& matrix) {
  const MMatrix inverse = matrix.inverse();
  const double* numbers = &inverse.matrix[0][0];
  if (!std::all_of(numbers, numbers + 16, [](double n) { return std::isfinite(n); }) ||
      matrix.isSingular()) {
    return "its matrix has no inverse";
  }
  matrix = inverse;
  return {};
}

}  // namespace host
