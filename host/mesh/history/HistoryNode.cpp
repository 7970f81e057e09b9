#include "host/mesh/history/HistoryNode.h"

#include <algorithm>
#include <cmath>

#include "host/mesh/history/HistoryNodes.h"

namespace host {
const HistoryNodeType* findHistoryNodeType(std::string_view name) {
  const auto found =
      std::find_if(std::begin(kHistoryNodeTypes), std::end(kHistoryNodeTypes),
                   [name](const HistoryNodeType& type) { return type.name == name; });
  return found == std::end(kHistoryNodeTypes) ? nullptr : found;
}

int HistoryParameters::whole(const ParameterName& name, int otherwise, int least, int most) const {
  const double value = number(name, otherwise);
  return std::isfinite(value) ? static_cast<int>(std::clamp(value, 1.0 * least, 1.0 * most))
                              : otherwise;
}

}  // namespace host
