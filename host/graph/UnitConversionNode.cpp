#include "host/graph/GraphNodes.h"

namespace host {
namespace {

std::string evaluate(GraphNode& node) {
  node.give("output", node.number("input") * node.number("conversionFactor"));
  return "";
}

}  // namespace

const GraphNodeType kUnitConversion = {
    "unitConversion", "dependNode", "input:i:double conversionFactor:cf:double=1 output:o:double!",
    evaluate};

}  // namespace host
