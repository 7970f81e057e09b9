#ifndef MORVANE_HOST_EVALUATION_NODEACCESS_H_
#define MORVANE_HOST_EVALUATION_NODEACCESS_H_

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/evaluation/CurrentTime.h"
#include "host/evaluation/GraphEvaluation.h"
#include "host/graph/GraphNode.h"

namespace host {

// Gives the types of host/graph access to a node of the scene.
class NodeAccess : public GraphNode {
 public:
  // For working out `output`.
  NodeAccess(const GraphEvaluation& evaluation, const Plug& output)
      : evaluation_(evaluation), output_(output) {}

  double number(std::string_view path) const override;
  MMatrix matrix(std::string_view path) const override;
  std::vector<int> elements(std::string_view array) const override;
  std::map<int, std::vector<double>> kept(std::string_view shortName, int width) const override;
  bool isConnected(std::string_view path) const override;
  bool isReady() const override { return evaluation_.isReady(); }
  double time() const override { return currentTime(evaluation_.scene()); }
  double framesPerSecond() const override { return evaluation_.rates().framesPerSecond; }
  double keptLength() const override { return evaluation_.rates().length; }
  double keptAngle() const override { return evaluation_.rates().angle; }
  std::string_view output() const override { return output_.path(); }
  void give(std::string_view path, double value) override;
  void give(std::string_view path, const MMatrix& value) override;
  void handOn(std::string_view input) override;

  // What was handed out, by path.
  const std::map<std::string, AttributeValue>& outputs() const { return outputs_; }

 private:
  const GraphEvaluation& evaluation_;
  const Plug& output_;
  std::map<std::string, AttributeValue> outputs_;
};

}  // namespace host

#endif  // MORVANE_HOST_EVALUATION_NODEACCESS_H_
