#include <cmath>

#include "host/graph/GraphNodes.h"

namespace host {
namespace {

constexpr int kMultiply = 1;
constexpr int kDivide = 2;
constexpr int kPower = 3;

double combined(double a, double b, int operation) {
  switch (operation) {
    case kMultiply:
      return a * b;
    case kDivide:
      return a / b;
    case kPower:
      return std::pow(a, b);
    default:
      return a;
  }
}

std::string evaluate(GraphNode& node) {
  const char axis = node.output().back();
  const std::string end(1, axis);
  node.give(node.output(), combined(node.number("input1" + end), node.number("input2" + end),
                                    node.whole("operation")));
  return "";
}

}  // namespace

const GraphNodeType kMultiplyDivide = {"multiplyDivide", "shadingDependNode",
                                       "operation:op:enum=1 input1:i1:float3 input2:i2:float3=1 "
                                       "output:o:float3!",
                                       evaluate};

}  // namespace host
