#include <maya/MMatrix.h>

#include "host/math/TransformParts.h"
#include "host/mesh/history/HistoryNodes.h"
#include "host/mesh/history/HistoryTools.h"
#include "host/mesh/history/PointMover.h"

namespace host {
namespace {

std::string readOptional(const std::vector<double>& numbers, MMatrix& matrix) {
  return numbers.empty() ? std::string() : readMatrix(numbers, matrix);
}

// The matrix by which bound points move: from the mesh's space into the world, there from where the
// handle was bound to where it is, and back.
std::string readMove(const HistoryParameters& node, MMatrix& move) {
  const std::vector<double> handle = node.numbers({"ma", "matrix"});
  if (handle.empty()) return "its handle is missing";
  MMatrix placed;
  MMatrix bound;
  MMatrix current;
  const auto geometries = node.elements({"gm", "geomMatrix"});
  const auto geometry = geometries.find(node.outputIndex());
  std::string problem;
  if (geometry != geometries.end()) problem = readMatrix(geometry->second, placed);
  if (problem.empty()) problem = readOptional(node.numbers({"pm", "bindPreMatrix"}), bound);
  if (problem.empty()) problem = readMatrix(handle, current);
  MMatrix back = placed;
  if (problem.empty()) problem = invert(back);
  move = placed * bound * current * back;
  return problem;
}

std::vector<double> readWeights(const HistoryParameters& node, int points) {
  std::vector<double> weights(static_cast<std::size_t>(points), 1.0);
  const auto take = [&](const ParameterPath& path, const std::vector<double>& numbers) {
    if (path.size() != 2 || path[0].first != node.outputIndex() || path[1].first < 0) return;
    const auto first = static_cast<std::size_t>(path[1].first);
    for (std::size_t i = 0; i < numbers.size() && first + i < weights.size(); ++i)
      weights[first + i] = numbers[i];
  };
  node.forEach({"wl", "weightList"}, take);
  return weights;
}

bool isTranslation(const MMatrix& matrix) {
  return matrix.isEquivalent(translationMatrix(translationOf(matrix)));
}

}  // namespace

std::string cluster(HistoryParameters& node, MeshData& mesh) {
  if (node.knownPoints() != kAllKnown) return kOtherNumbers;
  if (node.number({"rel", "relative"}, 0.0) != 0.0) return "its relative mode is not evaluated";
  MMatrix move;
  const std::string problem = readMove(node, move);
  if (!problem.empty()) return problem;
  const std::vector<double> weights = readWeights(node, mesh.pointCount());
  const bool slides = isTranslation(move);
  const bool isWhole = node.number({"en", "envelope"}, 1.0) == 1.0;
  PointMover mover(node, mesh);
  for (int vertex = 0; vertex < mesh.pointCount(); ++vertex) {
    const double weight = weights[static_cast<std::size_t>(vertex)];
    if (weight == 0.0) continue;
    if (slides)
      mover.move(vertex, translationMatrix(translationOf(move) * weight));
    else if (weight == 1.0 && isWhole)
      mover.move(vertex, move);
    else
      return "it turns or scales points by a part of its weight, which is not evaluated";
  }
  return {};
}

}  // namespace host
