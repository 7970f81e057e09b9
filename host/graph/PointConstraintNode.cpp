#include "host/graph/ConstraintTools.h"
#include "host/graph/GraphNodes.h"

namespace host {
namespace {

std::string evaluate(GraphNode& node) {
  const std::vector<ConstraintTarget> targets = targetsOf(node);
  if (targets.empty()) return giveRest(node, "restTranslate", "constraintTranslate");
  const double total = totalWeight(targets);
  Vec3 point;
  for (const ConstraintTarget& target : targets)
    point = point + pivotOf(node, target) * (target.weight / total);
  const Vec3 local = pointThrough(point, node.matrix("constraintParentInverseMatrix"));
  givePoint(node, local + node.triple("offset"));
  return "";
}

}  // namespace

const GraphNodeType kPointConstraint = {
    "pointConstraint", "constraint",
    "target:tg:compound[]{" TARGET_POINT TARGET_END CONSTRAINED CONSTRAINED_POINT TRIPLE(
        "offset", "o", "doubleLinear", "") TRIPLE("restTranslate", "rst", "doubleLinear", "")
        OUTPUT_TRIPLE("constraintTranslate", "ct", "doubleLinear"),
    evaluate};

}  // namespace host
