#include <algorithm>

#include "host/graph/GraphNodes.h"

namespace host {
namespace {

std::string evaluate(GraphNode& node) {
  const int selector = std::max(node.whole("selector"), 0);
  if (node.isReady()) node.handOn("input[" + std::to_string(selector) + "]");
  return "";
}

}  // namespace

const GraphNodeType kChoice = {"choice", "dependNode",
                               "selector:s:long input:i:generic[] output:o:generic!", evaluate};

}  // namespace host
