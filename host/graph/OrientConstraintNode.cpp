#include "host/graph/ConstraintTools.h"
#include "host/graph/GraphNodes.h"

namespace host {
namespace {

std::string evaluate(GraphNode& node) {
  const std::vector<ConstraintTarget> targets = targetsOf(node);
  if (targets.empty()) return giveRest(node, "restRotate", "constraintRotate");
  const MMatrix toParent = node.matrix("constraintParentInverseMatrix");
  TurnMix mix(node.whole("interpType"));
  for (const ConstraintTarget& target : targets) {
    const MMatrix world = turnOf(node, target) * node.matrix(target.path + "targetParentMatrix");
    mix.add(rotationPart(world), target.weight);
  }
  const MMatrix offset = rotationMatrix(node.triple("offset"), 0);
  giveTurn(node, rotationPart(offset * mix.result() * toParent));
  return "";
}

}  // namespace

const GraphNodeType kOrientConstraint = {
    "orientConstraint", "constraint",
    "target:tg:compound[]{" TARGET_TURN TARGET_END CONSTRAINED CONSTRAINED_TURN TRIPLE(
        "offset", "o", "doubleAngle", "") TRIPLE("lastTargetRotation", "lr", "doubleAngle", "")
        TRIPLE("inverseScale", "is", "double", "=1") "scaleCompensate:sc:bool=1 " OUTPUT_TRIPLE(
            "constraintRotate", "cr", "doubleAngle"),
    evaluate};

}  // namespace host
