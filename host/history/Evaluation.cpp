#include "host/history/Evaluation.h"

#include <algorithm>

#include "host/history/NodeParameters.h"
#include "host/mesh/history/HistoryTools.h"
#include "host/mesh/history/PointMover.h"
#include "host/scene/Dag.h"
#include "host/scene/Values.h"

namespace host {
namespace {

// Longer histories are refused, because each node takes stack.
constexpr std::size_t kLongestHistory = 1000;

constexpr int kHasNoEffect = 1;  // of nodeState

// "ip[#].ig" for the output of index 3 is "ip[3].ig".
std::string inputPath(const char* pattern, const Plug& output) {
  std::string path = pattern;
  const std::size_t mark = path.find('#');
  if (mark != path.npos) path.replace(mark, 1, std::to_string(std::max(output.index(), 0)));
  return path;
}

std::optional<Plug> inputOf(const NodePtr& node, const HistoryNodeType& type, const Plug& output) {
  if (type.input.path == nullptr) return std::nullopt;
  return historySource(node, inputPath(type.input.path, output),
                       inputPath(type.input.longPath, output));
}

bool isWorldMesh(const Plug& plug) {
  return plug.node()->mesh != nullptr && plug.path().compare(0, 9, "worldMesh") == 0;
}

void moveToWorld(const Plug& worldMesh, MeshData& mesh) {
  const DagPath path =
      pathOfInstance(worldMesh.node(), static_cast<std::size_t>(std::max(worldMesh.index(), 0)));
  if (!path.isEmpty()) transformMesh(mesh, path.inclusiveMatrix());
}

// The node's own tweaks and UV set names stay: they apply to whatever mesh comes in.
void carryOver(const MeshData& own, MeshData& made) {
  for (const MeshTweak& tweak : own.tweaks())
    made.setTweaks(static_cast<std::size_t>(tweak.vertex), &tweak.offset.x, 1);
  if (!own.currentUvSetName().empty()) made.setCurrentUvSetName(own.currentUvSetName());
  if (!own.currentColourSetName().empty()) made.setCurrentColourSetName(own.currentColourSetName());
  for (const MeshUvSet& set : own.uvSets()) {
    MeshUvSet* target = set.name.empty() ? nullptr : made.uvSet(set.index);
    if (target != nullptr) target->name = set.name;
  }
}

// Whether the node's tweaks move points whose numbers differ from Maya's. Moves as small as a
// rounding error do not count.
bool movesUnknown(const MeshData& own, const MeshData& made, int knownPoints) {
  constexpr double kRounding = 1e-6;
  if (knownPoints == kAllKnown) return false;
  const double least = length(made.box().max - made.box().min) * kRounding;
  return std::any_of(own.tweaks().begin(), own.tweaks().end(), [&](const MeshTweak& tweak) {
    return tweak.vertex >= knownPoints && length(tweak.offset) > least;
  });
}

std::int64_t sizeOf(const MeshData& mesh) {
  return static_cast<std::int64_t>(mesh.storedPoints().size() + mesh.storedLoopEdges().size());
}

}  // namespace

bool Evaluation::hasHistory(const NodePtr& mesh) {
  const bool isMade = mesh->history != nullptr && mesh->history->isMade();
  return mesh->mesh != nullptr && (isMade || mesh->mesh->storedFaceStarts().size() <= 1) &&
         historySource(mesh, "i", "inMesh").has_value();
}

bool Evaluation::isFresh(const Node& mesh) const {
  auto changed = changed_.begin();
  for (const std::size_t input : mesh.history->inputs) {
    changed = std::lower_bound(changed, changed_.end(), input);
    if (changed != changed_.end() && *changed == input) return false;
  }
  return true;
}

bool Evaluation::stopAt(const NodePtr& node, const std::string& reason) {
  history_.stopNode = node->name();
  history_.stopType = node->type().name();
  history_.stopReason = reason;
  history_.stopAdvice = "delete the mesh's history in Maya";
  return false;
}

bool Evaluation::pay(const NodePtr& node, const MeshData& mesh) {
  left_ -= sizeOf(mesh);
  return left_ >= 0 || stopAt(node, "the histories before it made too many points");
}

MeshHistory Evaluation::evaluate(const NodePtr& mesh) {
  history_ = MeshHistory();
  const auto source = historySource(mesh, "i", "inMesh");
  MeshData made;
  underway_.insert(mesh.get());
  if (source && make(*source, isWorldMesh(*source), made)) {
    if (movesUnknown(*mesh->mesh, made, history_.knownPoints)) {
      stopAt(mesh, kOtherNumbers);
    } else if (made.problem().empty()) {
      carryOver(*mesh->mesh, made);
      *mesh->mesh = std::move(made);
    } else {
      stopAt(source->node(), "what it makes has no usable faces: " + made.problem());
    }
  }
  underway_.erase(mesh.get());
  history_.inputs.push_back(mesh->serial());
  std::sort(history_.inputs.begin(), history_.inputs.end());
  history_.inputs.erase(std::unique(history_.inputs.begin(), history_.inputs.end()),
                        history_.inputs.end());
  return history_;
}

bool Evaluation::make(const Plug& output, bool inWorldSpace, MeshData& mesh) {
  const NodePtr& node = output.node();
  if (underway_.size() >= kLongestHistory) return stopAt(node, "the history is too long");
  if (!underway_.insert(node.get()).second) return stopAt(node, "its history leads back to itself");
  history_.inputs.push_back(node->serial());
  const bool made = node->mesh != nullptr ? copyOfMeshNode(output, inWorldSpace, mesh)
                                          : makeByNode(node, output, mesh);
  underway_.erase(node.get());
  return made;
}

bool Evaluation::copyOfMeshNode(const Plug& output, bool inWorldSpace, MeshData& mesh) {
  const NodePtr& node = output.node();
  const bool isMade = node->history != nullptr && node->history->isMade();
  if (isMade) {
    history_.inputs.insert(history_.inputs.end(), node->history->inputs.begin(),
                           node->history->inputs.end());
  }
  if (hasHistory(node) && !(isMade && isFresh(*node))) {
    const auto source = historySource(node, "i", "inMesh");
    if (!make(*source, isWorldMesh(*source), mesh)) return false;
    carryOver(*node->mesh, mesh);
  } else if (node->mesh->storedFaceStarts().size() <= 1 || !node->mesh->problem().empty()) {
    return stopAt(node, "it has no geometry itself");
  } else {
    mesh = node->mesh->clone();
    if (!pay(node, mesh)) return false;
  }
  mesh.changePoints();
  if (inWorldSpace) moveToWorld(output, mesh);
  return true;
}

bool Evaluation::handOn(const NodePtr& node, const HistoryNodeType& type, const Plug& output,
                        MeshData& mesh) {
  const auto source = inputOf(node, type, output);
  if (type.input.path != nullptr && !source) return stopAt(node, "no mesh is connected into it");
  return !source || make(*source, false, mesh);
}

bool Evaluation::makeByNode(const NodePtr& node, const Plug& output, MeshData& mesh) {
  const HistoryNodeType* type = findHistoryNodeType(node->type().name());
  if (type == nullptr && node->type().name() == "reference") {
    stopAt(node, "the file that it refers to is not loaded");
    history_.stopAdvice = "tell where that file's folder is (--map, dirmap)";
    return false;
  }
  if (type == nullptr) return stopAt(node, "");
  if (!handOn(node, *type, output, mesh)) return false;
  const bool isMadeOfNothing = isPrimitive(type->name);
  if (isMadeOfNothing && primitivePointsLeft_ <= 0)
    return stopAt(node, "the primitives before it have too many points");
  const bool idle = type->input.path != nullptr && numberOf(node, "nodeState") == kHasNoEffect;
  if (type->evaluate == nullptr || idle) return true;
  const std::int64_t before = sizeOf(mesh);
  NodeParameters parameters(
      output, [this](const Plug& source) { return sideMesh(source); }, history_);
  history_.namesUnknown = false;
  std::string problem = type->evaluate(parameters, mesh);
  if (problem.empty() && history_.namesUnknown) problem = kOtherNumbers;
  if (!history_.isMade()) return false;
  if (!problem.empty()) return stopAt(node, problem);
  left_ += before;
  primitivePointsLeft_ -= isMadeOfNothing ? mesh.pointCount() : 0;
  return pay(node, mesh);
}

const MeshData* Evaluation::sideMesh(const Plug& source) {
  auto& kept = shared_[std::to_string(source.node()->serial()) + "." + source.path()];
  if (kept == nullptr) {
    MeshData mesh;
    if (!make(source, false, mesh)) return nullptr;
    kept = std::make_unique<MeshData>(std::move(mesh));
  }
  return kept.get();
}

}  // namespace host
