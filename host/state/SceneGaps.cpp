#include "host/state/SceneGaps.h"

namespace host {

void SceneGaps::add(const std::vector<NodePtr>& nodes, const SceneGap& gap) {
  const auto shared = std::make_shared<const SceneGap>(gap);
  for (const NodePtr& node : nodes) bySerial_.try_emplace(node->serial(), shared);
}

const SceneGap* SceneGaps::at(const Node& node) const {
  const auto found = bySerial_.find(node.serial());
  return found == bySerial_.end() ? nullptr : found->second.get();
}

}  // namespace host
