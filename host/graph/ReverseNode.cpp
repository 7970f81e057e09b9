#include "host/graph/GraphNodes.h"

namespace host {
namespace {

std::string evaluate(GraphNode& node) {
  const std::string end(1, node.output().back());
  node.give(node.output(), 1.0 - node.number("input" + end));
  return "";
}

}  // namespace

const GraphNodeType kReverse = {"reverse", "shadingDependNode", "input:i:float3 output:o:float3!",
                                evaluate};

}  // namespace host
