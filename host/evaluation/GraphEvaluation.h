#ifndef MORVANE_HOST_EVALUATION_GRAPHEVALUATION_H_
#define MORVANE_HOST_EVALUATION_GRAPHEVALUATION_H_

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "host/scene/ComputedValues.h"
#include "host/scene/Values.h"

namespace host {

class Scene;

// What numbers of the scene's files mean.
struct SceneRates {
  double framesPerSecond = 24.0;
  double length = 1.0;  // centimetres in a unit of length
  double angle = 1.0;   // degrees in a unit of angle
};

// Works out what nodes hand on along connections: animation curves, constraints, utility nodes
// (host/graph) and matrices. A value is worked out when it is asked for, and kept until something
// in the scene changes. A plug whose input cannot be worked out keeps the value that is set there.
//
// No chain of connections is too long: a node with an unknown input is put aside and asked again
// once the input is known.
class GraphEvaluation : public FlowingValues {
 public:
  // Makes itself the scene's until it ends.
  GraphEvaluation(Scene& scene, std::function<SceneRates()> rates);
  ~GraphEvaluation() override;
  GraphEvaluation(const GraphEvaluation&) = delete;
  GraphEvaluation& operator=(const GraphEvaluation&) = delete;

  AttributeValue valueOf(const Plug& plug) override;

  std::optional<EvaluationTrouble> troubleOf(const Plug& plug) override;
  void forget() override { known_.clear(); }

  const Scene& scene() const { return scene_; }
  SceneRates rates() const { return rates_(); }
  // Whether every value that the current node has asked for was known.
  bool isReady() const { return missing_.empty(); }

 private:
  using TroublePtr = std::shared_ptr<const EvaluationTrouble>;
  struct Known {
    AttributeValue value;
    TroublePtr trouble;
  };

  void forgetWhatChanged();
  void note(const TroublePtr& trouble);
  void note(const NodePtr& node, std::string reason);
  AttributeValue arriving(const Feed& feed, const Plug& destination);
  AttributeValue handedOut(const Plug& source);
  AttributeValue given(const Plug& source);
  Known run(const Plug& plug);
  void putAside(std::vector<Plug>& waiting);
  void compute(const Plug& plug);
  void computeByNode(const Plug& plug);

  Scene& scene_;
  std::function<SceneRates()> rates_;
  std::unordered_map<std::string, Known> known_;
  std::uint64_t changeCount_ = 0;  // of the scene, when `known_` was right

  bool isRunning_ = false;
  std::unordered_set<std::string> underway_;
  std::vector<Plug> missing_;
  TroublePtr trouble_;  // the first since it was last reset
};

}  // namespace host

#endif  // MORVANE_HOST_EVALUATION_GRAPHEVALUATION_H_
