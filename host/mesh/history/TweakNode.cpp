#include <algorithm>

#include "host/mesh/history/HistoryNodes.h"
#include "host/mesh/history/PointMover.h"

namespace host {

std::string tweak(HistoryParameters& node, MeshData& mesh) {
  if (node.number({"rtw", "relativeTweak"}, 1.0) == 0.0)
    return "it replaces points instead of moving them, which is not evaluated";
  PointMover mover(node, mesh);
  const auto points = static_cast<std::size_t>(mesh.pointCount());
  node.forEach({"vl", "vlist"}, [&](const ParameterPath& path, const std::vector<double>& numbers) {
    const bool isOwn = path.size() == 2 && std::max(path[0].first, 0) == node.outputIndex() &&
                       (path[1].name == "vt" || path[1].name == "vertex") && path[1].first >= 0;
    const std::size_t first = isOwn ? static_cast<std::size_t>(path[1].first) : points;
    for (std::size_t i = 0; 3 * i + 2 < numbers.size() && first + i < points; ++i) {
      mover.offset(static_cast<int>(first + i),
                   {numbers[3 * i], numbers[3 * i + 1], numbers[3 * i + 2]});
    }
  });
  return {};
}

}  // namespace host
