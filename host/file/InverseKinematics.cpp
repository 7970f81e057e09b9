#include "host/file/InverseKinematics.h"

#include <unordered_set>
#include <vector>

#include "host/scene/Connections.h"
#include "host/scene/Node.h"

namespace host {
namespace {

bool isTimed(const Node& node) {
  const std::string& type = node.type().name();
  return type.compare(0, 10, "animCurveT") == 0 || type == "expression";
}

// By what is connected into it or stands above it, and what that depends on in turn.
bool dependsOnTime(const Node& start) {
  std::unordered_set<const Node*> seen;
  std::vector<const Node*> waiting = {&start};
  while (!waiting.empty()) {
    const Node* const node = waiting.back();
    waiting.pop_back();
    if (!seen.insert(node).second) continue;
    if (isTimed(*node)) return true;
    waiting.insert(waiting.end(), node->parents().begin(), node->parents().end());
    for (const ConnectionPtr& connection : node->connections.inOrder())
      waiting.push_back(connection->source.node().get());
  }
  return false;
}

}  // namespace

std::string noteOfHandles(const Scene& scene) {
  std::string first;
  int count = 0;
  for (const auto& [serial, node] : scene.nodes()) {
    if (node->type().name() != "ikHandle" || !dependsOnTime(*node)) continue;
    first = count++ == 0 ? node->name() : first;
  }
  if (count == 0) return {};
  return std::to_string(count) + (count == 1 ? " handle" : " handles") +
         " of inverse kinematics, first '" + first + "' (ikHandle), " +
         (count == 1 ? "is" : "are") + " not evaluated: joints turned so stay as they were saved";
}

}  // namespace host
