#include "host/graph/GraphNodes.h"

namespace host {
namespace {

#define LINEAR_INPUTS "input1:i1:doubleLinear input2:i2:doubleLinear output:o:doubleLinear!"

std::string add(GraphNode& node) {
  node.give("output", node.number("input1") + node.number("input2"));
  return "";
}

std::string multiply(GraphNode& node) {
  node.give("output", node.number("input1") * node.number("input2"));
  return "";
}

}  // namespace

const GraphNodeType kDoubleLinears[2] = {
    {"addDoubleLinear", "dependNode", LINEAR_INPUTS, add},
    {"multDoubleLinear", "dependNode", LINEAR_INPUTS, multiply}};

}  // namespace host
