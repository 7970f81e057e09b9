#include "host/graph/GraphNodes.h"

namespace host {
namespace {

// The sum of the inputs by their weights; a weight that is not set is 1.
std::string evaluate(GraphNode& node) {
  double sum = 0.0;
  for (const int i : node.elements("input")) {
    const std::string index = "[" + std::to_string(i) + "]";
    sum += node.number("input" + index) * node.number("weight" + index);
  }
  node.give("output", sum);
  return "";
}

}  // namespace

const GraphNodeType kBlendWeighted = {
    "blendWeighted", "dependNode",
    "input:i:double[] weight:w:float[]=1 output:o:double! current:c:long", evaluate};

}  // namespace host
