#include <algorithm>

#include "host/mesh/history/HistoryNodes.h"
#include "host/mesh/history/PointMover.h"

namespace host {

std::string tweak(HistoryParameters& node, MeshData& mesh) {
  if (node.number({"rtw", "relativeTweak"}, 1.0) == 0.0)
    return "it replaces points instead of moving them, which is not evaluated";
  std::string problem;
  PointMover mover(node, mesh);
  const auto points = static_cast<std::size_t>(mesh.pointCount());
  node.forEach({"vl", "vlist"}, [&](const ParameterPath& path, const std::vector<double>& numbers) {
    const bool isOwn = path.size() == 2 && std::max(path[0].first, 0) == node.outputIndex() &&
                       (path[1].name == "vt" || path[1].name == "vertex") && path[1].first >= 0;
    const std::size_t first = isOwn ? static_cast<std::size_t>(path[1].first) : points;
    for (std::size_t i = 0; 3 * i + 2 < numbers.size() && first + i < points; ++i) {
      if (first + i >= static_cast<std::size_t>(node.knownPoints())) problem = kOtherNumbers;
      mover.offset(static_cast<int>(first + i),
                   {numbers[3 * i], numbers[3 * i + 1], numbers[3 * i + 2]});
    }
  });
  return problem;
}

std::string polyTweak(HistoryParameters& node, MeshData& mesh) {
  std::vector<Vec3>& points = mesh.changePoints();
  std::string problem;
  node.forEach({"tk", "tweak"}, [&](const ParameterPath& path, const std::vector<double>& numbers) {
    const bool isOwn = path.size() == 1 && path[0].first >= 0;
    for (std::size_t i = 0; isOwn && 3 * i + 2 < numbers.size(); ++i) {
      const std::size_t point = static_cast<std::size_t>(path[0].first) + i;
      const Vec3 offset = {numbers[3 * i], numbers[3 * i + 1], numbers[3 * i + 2]};
      if (point >= points.size() || offset == Vec3()) continue;
      if (point >= static_cast<std::size_t>(node.knownPoints())) problem = kOtherNumbers;
      points[point] = points[point] + offset;
    }
  });
  return problem;
}

}  // namespace host
