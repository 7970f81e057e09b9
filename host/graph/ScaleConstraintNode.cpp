#include "host/graph/ConstraintTools.h"
#include "host/graph/GraphNodes.h"

namespace host {
namespace {

// The targets' scales in the world, averaged by weights, as the constrained node's parent sees
// them.
std::string evaluate(GraphNode& node) {
  const std::vector<ConstraintTarget> targets = targetsOf(node);
  if (targets.empty()) return giveRest(node, "restScale", "constraintScale");
  const MMatrix toParent = node.matrix("constraintParentInverseMatrix");
  const double total = totalWeight(targets);
  Vec3 scale;
  for (const ConstraintTarget& target : targets) {
    const MMatrix frame = scaleMatrix(node.triple(target.path + "targetScale")) *
                          node.matrix(target.path + "targetParentMatrix");
    scale = scale + decompose(frame * toParent, 0).scale * (target.weight / total);
  }
  const Vec3 offset = node.triple("offset");
  node.giveTriple("constraintScale", {scale.x * offset.x, scale.y * offset.y, scale.z * offset.z});
  return "";
}

}  // namespace

const GraphNodeType kScaleConstraint = {
    "scaleConstraint", "constraint",
    "target:tg:compound[]{" TRIPLE("targetScale", "ts", "double", "=1")
        TARGET_END CONSTRAINED TRIPLE("offset", "o", "double", "=1") TRIPLE(
            "restScale", "rsts", "double",
            "=1") "targetScaleCompensate:tsc:bool "
                  "constraintScaleCompensate:csc:bool " OUTPUT_TRIPLE("constraintScale", "cs",
                                                                      "double"),
    evaluate};

}  // namespace host
