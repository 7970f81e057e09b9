#ifndef MORVANE_HOST_HISTORY_HISTORY_H_
#define MORVANE_HOST_HISTORY_HISTORY_H_

#include <functional>
#include <optional>
#include <string>

#include "host/scene/MeshHistory.h"
#include "host/scene/Plug.h"

namespace host {

class Scene;

// Makes the shape of every mesh whose file leaves it to its history, unless that was tried before,
// and calls `report` with the outcome.
using HistoryReport = std::function<void(const NodePtr& mesh, const MeshHistory& history)>;
void evaluateHistories(Scene& scene, const HistoryReport& report);

// Makes a mesh again when something changed that its history depends on, or when it was given a
// history. A mesh that cannot be made again keeps its shape. Calls `report` with each outcome.
// Costs nothing when nothing changed.
void refreshHistories(Scene& scene, const HistoryReport& report);

// What keeps a mesh from being evaluated.
struct Unevaluated {
  std::string node;    // the node of its history that does, by its name
  std::string type;    // that node's type
  std::string reason;  // what is wrong with it; empty when its type is not evaluated at all
  std::string advice;  // what to do about it
};

// Nothing for a mesh that has its shape, be it from its file or from its history.
std::optional<Unevaluated> unevaluatedBy(const NodePtr& mesh);

}  // namespace host

#endif  // MORVANE_HOST_HISTORY_HISTORY_H_
