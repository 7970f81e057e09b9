#include "host/history/History.h"

#include "host/history/Evaluation.h"
#include "host/scene/Node.h"
#include "host/scene/Scene.h"

namespace host {

void evaluateHistories(const HistoryReport& report) {
  Evaluation evaluation;
  for (const auto& [serial, node] : Scene::current().nodes()) {
    if (node->history == nullptr && Evaluation::hasHistory(node)) {
      node->history = std::make_unique<MeshHistory>(evaluation.evaluate(node));
      report(node, *node->history);
    }
  }
}

std::optional<Unevaluated> unevaluatedBy(const NodePtr& mesh) {
  if (mesh->history == nullptr || mesh->history->isMade()) {
    return std::nullopt;
  }
  return Unevaluated{mesh->history->stopNode, mesh->history->stopType, mesh->history->stopReason};
}

}  // namespace host
