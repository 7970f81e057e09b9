#include "host/graph/GraphNodes.h"

namespace host {
namespace {

enum Operation { kEqual, kNotEqual, kGreater, kGreaterOrEqual, kLess, kLessOrEqual };

bool holds(double first, double second, int operation) {
  switch (operation) {
    case kEqual:
      return first == second;
    case kNotEqual:
      return first != second;
    case kGreater:
      return first > second;
    case kGreaterOrEqual:
      return first >= second;
    case kLess:
      return first < second;
    case kLessOrEqual:
      return first <= second;
    default:
      return false;
  }
}

std::string evaluate(GraphNode& node) {
  const std::string end(1, node.output().back());
  const bool isTrue =
      holds(node.number("firstTerm"), node.number("secondTerm"), node.whole("operation"));
  if (node.isReady())
    node.give(node.output(), node.number((isTrue ? "colorIfTrue" : "colorIfFalse") + end));
  return "";
}

}  // namespace

const GraphNodeType kCondition = {"condition", "shadingDependNode",
                                  "operation:op:enum firstTerm:ft:float secondTerm:st:float "
                                  "colorIfTrue:ct:color colorIfFalse:cf:color=1 outColor:oc:color!",
                                  evaluate};

}  // namespace host
