#ifndef MORVANE_HOST_HISTORY_EVALUATION_H_
#define MORVANE_HOST_HISTORY_EVALUATION_H_

#include <cstdint>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "host/mesh/MeshPrimitives.h"
#include "host/mesh/history/HistoryNode.h"
#include "host/scene/MeshHistory.h"
#include "host/scene/Plug.h"

namespace host {

// The most that all histories of one evaluation may make together, in points and face corners. The
// next node is refused then, because a few words of a file can ask for any amount.
constexpr std::int64_t kMostMadeElements = 64'000'000;

// Makes the meshes that histories describe. A mesh that several consumers share is made once in an
// evaluation.
class Evaluation {
 public:
  // Whether the mesh node's shape comes from what is connected into it and not from its file.
  static bool hasHistory(const NodePtr& mesh);

  // `changed` holds the serials of nodes that changed after meshes had been made.
  explicit Evaluation(std::vector<std::size_t> changed = {}) : changed_(std::move(changed)) {}

  // Whether a mesh that was made before depends on none of the changed nodes.
  bool isFresh(const Node& mesh) const;

  // Fills the mesh of a node that has a history; leaves it as it is when that fails.
  MeshHistory evaluate(const NodePtr& mesh);

 private:
  bool make(const Plug& output, bool inWorldSpace, MeshData& mesh);
  bool makeByNode(const NodePtr& node, const Plug& output, MeshData& mesh);
  bool copyOfMeshNode(const Plug& output, bool inWorldSpace, MeshData& mesh);
  bool handOn(const NodePtr& node, const HistoryNodeType& type, const Plug& output, MeshData& mesh);
  const MeshData* sideMesh(const Plug& source);
  bool pay(const NodePtr& node, const MeshData& mesh);
  bool stopAt(const NodePtr& node, const std::string& reason);

  std::vector<std::size_t> changed_;  // in ascending order
  MeshHistory history_;
  std::set<const void*> underway_;
  std::map<std::string, std::unique_ptr<MeshData>> shared_;
  std::int64_t left_ = kMostMadeElements;
  std::int64_t primitivePointsLeft_ = kMostPrimitivePoints;
};

}  // namespace host

#endif  // MORVANE_HOST_HISTORY_EVALUATION_H_
