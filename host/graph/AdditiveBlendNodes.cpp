#include "host/graph/GraphNodes.h"

namespace host {
namespace {

#define BLEND_INPUTS(TYPE)                  \
  "inputA:ia:" TYPE " inputB:ib:" TYPE      \
  " weightA:wa:float=1 weightB:wb:float=1 " \
  "output:o:" TYPE "!"

// What an animation layer adds to the one below it.
std::string evaluate(GraphNode& node) {
  node.give("output", node.number("inputA") * node.number("weightA") +
                          node.number("inputB") * node.number("weightB"));
  return "";
}

}  // namespace

const GraphNodeType kAdditiveBlends[3] = {
    {"animBlendNodeAdditive", "dependNode", BLEND_INPUTS("double"), evaluate},
    {"animBlendNodeAdditiveDL", "dependNode", BLEND_INPUTS("doubleLinear"), evaluate},
    {"animBlendNodeAdditiveDA", "dependNode", BLEND_INPUTS("doubleAngle"), evaluate}};

}  // namespace host
