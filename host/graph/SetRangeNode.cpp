#include <algorithm>

#include "host/graph/GraphNodes.h"

namespace host {
namespace {

std::string evaluate(GraphNode& node) {
  const std::string end(1, node.output().back());
  const double oldMin = node.number("oldMin" + end);
  const double oldMax = node.number("oldMax" + end);
  const double min = node.number("min" + end);
  const double max = node.number("max" + end);
  if (oldMin == oldMax) return node.give(node.output(), min), "";
  const double value =
      std::clamp(node.number("value" + end), std::min(oldMin, oldMax), std::max(oldMin, oldMax));
  node.give(node.output(), min + (value - oldMin) / (oldMax - oldMin) * (max - min));
  return "";
}

}  // namespace

const GraphNodeType kSetRange = {
    "setRange", "shadingDependNode",
    "value:v:float3 min:n:float3 max:m:float3 oldMin:on:float3 oldMax:om:float3 outValue:o:float3!",
    evaluate};

}  // namespace host
