#include "host/graph/ConstraintTools.h"

namespace host {
namespace {

constexpr int kLongest = 3;  // of interpType

}  // namespace

std::vector<ConstraintTarget> targetsOf(const GraphNode& node) {
  std::vector<ConstraintTarget> targets;
  for (const int i : node.elements("target")) {
    const std::string path = "target[" + std::to_string(i) + "].";
    const double weight = node.number(path + "targetWeight");
    if (weight > 0.0) targets.push_back({path, weight});
  }
  return targets;
}

double totalWeight(const std::vector<ConstraintTarget>& targets) {
  double total = 0.0;
  for (const ConstraintTarget& target : targets) total += target.weight;
  return total;
}

Vec3 pivotOf(const GraphNode& node, const ConstraintTarget& target) {
  const Vec3 point = node.triple(target.path + "targetTranslate") +
                     node.triple(target.path + "targetRotatePivot") +
                     node.triple(target.path + "targetRotateTranslate");
  return pointThrough(point, node.matrix(target.path + "targetParentMatrix"));
}

MMatrix turnOf(const GraphNode& node, const ConstraintTarget& target) {
  const int order = rotateOrder(node.number(target.path + "targetRotateOrder"));
  return rotationMatrix(node.triple(target.path + "targetRotate"), order) *
         rotationMatrix(node.triple(target.path + "targetJointOrient"), 0);
}

void TurnMix::add(const MMatrix& rotation, double weight) {
  weight_ += weight;
  const Quaternion next = Quaternion::of(rotation);
  mixed_ =
      weight_ == weight ? next : slerp(mixed_, next, weight / weight_, interpolation_ == kLongest);
}

void giveTurn(GraphNode& node, const MMatrix& rotation) {
  const MMatrix orient = rotationMatrix(node.triple("constraintJointOrient"), 0);
  node.giveTriple("constraintRotate", anglesOf(rotation * orient.transpose(),
                                               rotateOrder(node.number("constraintRotateOrder"))));
}

void givePoint(GraphNode& node, const Vec3& pivot) {
  node.giveTriple("constraintTranslate", pivot - node.triple("constraintRotatePivot") -
                                             node.triple("constraintRotateTranslate"));
}

std::string giveRest(GraphNode& node, const char* rest, const char* output) {
  if (node.number("enableRestPosition") == 0.0)
    return "its targets weigh nothing, and its rest values are switched off";
  node.giveTriple(output, node.triple(rest));
  return "";
}

}  // namespace host
