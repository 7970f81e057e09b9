#include "host/history/History.h"

#include <algorithm>

#include "host/history/Evaluation.h"
#include "host/scene/Node.h"
#include "host/scene/Scene.h"

namespace host {

void evaluateHistories(const HistoryReport& report) {
  Scene::current().changes.take();
  Evaluation evaluation;
  for (const auto& [serial, node] : Scene::current().nodes()) {
    if (node->history == nullptr && Evaluation::hasHistory(node)) {
      node->history = std::make_unique<MeshHistory>(evaluation.evaluate(node));
      report(node, *node->history);
    }
  }
}

void refreshHistories(const HistoryReport& report) {
  if (Scene::current().changes.isEmpty()) return;
  std::vector<std::size_t> changed = Scene::current().changes.take();
  std::sort(changed.begin(), changed.end());
  Evaluation evaluation(changed);
  for (const auto& [serial, node] : Scene::current().nodes()) {
    const bool isNew =
        node->history == nullptr && std::binary_search(changed.begin(), changed.end(), serial);
    if ((isNew || (node->history != nullptr && !evaluation.isFresh(*node))) &&
        Evaluation::hasHistory(node)) {
      MeshHistory history = evaluation.evaluate(node);
      report(node, history);
      if (history.isMade() || node->history == nullptr || !node->history->isMade())
        node->history = std::make_unique<MeshHistory>(std::move(history));
    }
  }
}

std::optional<Unevaluated> unevaluatedBy(const NodePtr& mesh) {
  if (mesh->history == nullptr || mesh->history->isMade()) return std::nullopt;
  return Unevaluated{mesh->history->stopNode, mesh->history->stopType, mesh->history->stopReason,
                     mesh->history->stopAdvice};
}

}  // namespace host
