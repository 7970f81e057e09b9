#include <maya/MMatrix.h>

#include "host/mesh/MeshTransform.h"
#include "host/mesh/history/HistoryNodes.h"
#include "host/mesh/history/HistoryTools.h"

namespace host {

std::string transformGeometry(HistoryParameters& node, MeshData& mesh) {
  const std::vector<double> numbers = node.numbers({"txf", "transform"});
  if (numbers.empty()) return {};
  MMatrix matrix;
  std::string problem = readMatrix(numbers, matrix);
  if (problem.empty() && node.number({"itf", "invertTransform"}, 0.0) != 0.0)
    problem = invert(matrix);
  if (problem.empty()) transformMesh(mesh, matrix);
  return problem;
}

}  // namespace host
