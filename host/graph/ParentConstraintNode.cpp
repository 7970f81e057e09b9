#include "host/graph/ConstraintTools.h"
#include "host/graph/GraphNodes.h"

namespace host {
namespace {

// A target's frame in the world: it stands on the target's rotate pivot.
MMatrix frameOf(const GraphNode& node, const ConstraintTarget& target) {
  const Vec3 pivot = node.triple(target.path + "targetTranslate") +
                     node.triple(target.path + "targetRotatePivot") +
                     node.triple(target.path + "targetRotateTranslate");
  return scaleMatrix(node.triple(target.path + "targetScale")) * turnOf(node, target) *
         translationMatrix(pivot) * node.matrix(target.path + "targetParentMatrix");
}

std::string evaluate(GraphNode& node) {
  const std::vector<ConstraintTarget> targets = targetsOf(node);
  if (targets.empty()) {
    const std::string problem = giveRest(node, "restTranslate", "constraintTranslate");
    return problem.empty() ? giveRest(node, "restRotate", "constraintRotate") : problem;
  }
  const MMatrix toParent = node.matrix("constraintParentInverseMatrix");
  const double total = totalWeight(targets);
  TurnMix mix(node.whole("interpType"));
  Vec3 point;
  for (const ConstraintTarget& target : targets) {
    const MMatrix frame = frameOf(node, target);
    const Vec3 offset = node.triple(target.path + "targetOffsetTranslate");
    const MMatrix turn = rotationMatrix(node.triple(target.path + "targetOffsetRotate"), 0);
    point = point + pointThrough(offset, frame) * (target.weight / total);
    mix.add(turn * rotationPart(frame), target.weight);
  }
  givePoint(node, pointThrough(point, toParent));
  giveTurn(node, rotationPart(mix.result() * toParent));
  return "";
}

}  // namespace

const GraphNodeType kParentConstraint = {
    "parentConstraint", "constraint",
    "target:tg:compound[]{" TARGET_POINT TARGET_TURN TRIPLE("targetScale", "ts", "double", "=1")
        TRIPLE("targetOffsetTranslate", "tot", "doubleLinear", "")
            TRIPLE("targetOffsetRotate", "tor", "doubleAngle", "") TRIPLE(
                "targetInverseScale", "tis", "double",
                "=1") "targetScaleCompensate:tsc:bool " TARGET_END CONSTRAINED CONSTRAINED_POINT
                CONSTRAINED_TURN TRIPLE("lastTargetRotation", "lr", "doubleAngle", "")
                    TRIPLE("restTranslate", "rst", "doubleLinear", "")
                        OUTPUT_TRIPLE("constraintTranslate", "ct", "doubleLinear")
                            OUTPUT_TRIPLE("constraintRotate", "cr", "doubleAngle"),
    evaluate};

}  // namespace host
