#include "host/mesh/history/PointMover.h"

#include <algorithm>

#include "host/mesh/MeshNormals.h"
#include "host/mesh/MeshTransform.h"
#include "host/mesh/history/HistoryTools.h"

namespace host {

PointMover::PointMover(const HistoryParameters& node, MeshData& mesh)
    : envelope_(node.number({"en", "envelope"}, 1.0)),
      points_(mesh.changePoints()),
      normals_(mesh.changeNormals()) {
  if (const auto affected = node.affectedVertices(mesh.pointCount())) {
    affected_.assign(points_.size(), false);
    for (const int vertex : *affected) affected_[static_cast<std::size_t>(vertex)] = true;
  }
  if (std::any_of(normals_.begin(), normals_.end(), isLocked)) {
    normals_ = storedNormalsByCorner(mesh);
    indexLockedCorners(mesh);
  }
}

void PointMover::indexLockedCorners(const MeshData& mesh) {
  const std::vector<int>& vertices = mesh.cornerVertices();
  firstCorner_.assign(points_.size() + 1, 0);
  for (std::size_t corner = 0; corner < vertices.size(); ++corner)
    firstCorner_[static_cast<std::size_t>(vertices[corner]) + 1] += isLocked(normals_[corner]);
  for (std::size_t i = 1; i < firstCorner_.size(); ++i) firstCorner_[i] += firstCorner_[i - 1];
  corners_.resize(static_cast<std::size_t>(firstCorner_.back()));
  std::vector<int> next(firstCorner_.begin(), firstCorner_.end() - 1);
  for (std::size_t corner = 0; corner < vertices.size(); ++corner) {
    if (isLocked(normals_[corner])) {
      int& at = next[static_cast<std::size_t>(vertices[corner])];
      corners_[static_cast<std::size_t>(at++)] = static_cast<int>(corner);
    }
  }
}

bool PointMover::mayMove(int vertex) const {
  return affected_.empty() || affected_[static_cast<std::size_t>(vertex)];
}

void PointMover::turnNormals(int vertex, const MMatrix& matrix) {
  const auto index = static_cast<std::size_t>(vertex);
  for (int i = firstCorner_[index]; i < firstCorner_[index + 1]; ++i) {
    MeshNormal& n = normals_[static_cast<std::size_t>(corners_[static_cast<std::size_t>(i)])];
    const Vec3 from = {n.x, n.y, n.z};
    const Vec3 turned = transformedNormal(from, matrix);
    const Vec3 result = envelope_ == 1.0 ? turned : normalized(from + (turned - from) * envelope_);
    n = {static_cast<float>(result.x), static_cast<float>(result.y), static_cast<float>(result.z)};
  }
}

void PointMover::move(int vertex, const MMatrix& matrix) {
  if (!mayMove(vertex)) return;
  Vec3& point = points_[static_cast<std::size_t>(vertex)];
  const Vec3 moved = transformed(point, matrix);
  point = envelope_ == 1.0 ? moved : point + (moved - point) * envelope_;
  if (!corners_.empty()) turnNormals(vertex, matrix);
}

void PointMover::offset(int vertex, const Vec3& offset) {
  if (mayMove(vertex)) {
    Vec3& point = points_[static_cast<std::size_t>(vertex)];
    point = point + offset * envelope_;
  }
}

std::vector<double> perVertex(const HistoryParameters& node, const ParameterName& name,
                              int vertices, double otherwise) {
  std::vector<double> result(static_cast<std::size_t>(vertices), otherwise);
  node.forEach(name, [&](const ParameterPath& path, const std::vector<double>& numbers) {
    const ParameterPart& range = path.back();
    for (std::size_t i = 0; range.first >= 0 && i < numbers.size(); ++i) {
      const std::size_t vertex = static_cast<std::size_t>(range.first) + i;
      if (vertex < result.size()) result[vertex] = numbers[i];
    }
  });
  return result;
}

}  // namespace host
