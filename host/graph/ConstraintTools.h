#ifndef MORVANE_HOST_GRAPH_CONSTRAINTTOOLS_H_
#define MORVANE_HOST_GRAPH_CONSTRAINTTOOLS_H_

#include <optional>
#include <string>
#include <vector>

#include "host/graph/GraphNode.h"
#include "host/math/Quaternion.h"
#include "host/math/TransformParts.h"

namespace host {

// Attributes that several constraints have.
#define TRIPLE(NAME, SHORT, TYPE, VALUE)                                                         \
  NAME ":" SHORT ":double3{" NAME "X:" SHORT "x:" TYPE VALUE " " NAME "Y:" SHORT "y:" TYPE VALUE \
       " " NAME "Z:" SHORT "z:" TYPE VALUE "} "
#define OUTPUT_TRIPLE(NAME, SHORT, TYPE)                                                       \
  NAME ":" SHORT ":double3!{" NAME "X:" SHORT "x:" TYPE " " NAME "Y:" SHORT "y:" TYPE " " NAME \
       "Z:" SHORT "z:" TYPE "} "
#define TARGET_POINT                                     \
  TRIPLE("targetTranslate", "tt", "doubleLinear", "")    \
  TRIPLE("targetRotatePivot", "trp", "doubleLinear", "") \
  TRIPLE("targetRotateTranslate", "trt", "doubleLinear", "")
#define TARGET_TURN                               \
  TRIPLE("targetRotate", "tr", "doubleAngle", "") \
  "targetRotateOrder:tro:enum " TRIPLE("targetJointOrient", "tjo", "doubleAngle", "")
#define TARGET_END "targetParentMatrix:tpm:matrix targetWeight:tw:double=1} "
#define CONSTRAINED_POINT                                    \
  TRIPLE("constraintRotatePivot", "crp", "doubleLinear", "") \
  TRIPLE("constraintRotateTranslate", "crt", "doubleLinear", "")
#define CONSTRAINED_TURN                                                                      \
  "constraintRotateOrder:cro:enum " TRIPLE("constraintJointOrient", "cjo", "doubleAngle", "") \
      TRIPLE("restRotate", "rsrr", "doubleAngle", "") "interpType:int:enum=1 "
#define CONSTRAINED "constraintParentInverseMatrix:cpim:matrix enableRestPosition:erp:bool=1 "

// One of the things that a constraint follows.
struct ConstraintTarget {
  std::string path;  // "target[2]."
  double weight = 0.0;
};

// Those with a weight.
std::vector<ConstraintTarget> targetsOf(const GraphNode& node);
double totalWeight(const std::vector<ConstraintTarget>& targets);

// Where a target's rotate pivot is in the world.
Vec3 pivotOf(const GraphNode& node, const ConstraintTarget& target);
// How a target is turned in its parent's space.
MMatrix turnOf(const GraphNode& node, const ConstraintTarget& target);

// Rotations, mixed by weights. `interpolation` is as the attribute interpType has it.
class TurnMix {
 public:
  explicit TurnMix(int interpolation) : interpolation_(interpolation) {}
  void add(const MMatrix& rotation, double weight);
  MMatrix result() const { return mixed_.toMatrix(); }

 private:
  int interpolation_;
  double weight_ = 0.0;
  Quaternion mixed_;
};

// Hands out constraintRotate for a rotation in the space of the constrained node's parent.
void giveTurn(GraphNode& node, const MMatrix& rotation);
// Hands out constraintTranslate that brings the constrained rotate pivot to a point of that space.
void givePoint(GraphNode& node, const Vec3& pivot);

// The result of a constraint whose weights are all 0: its rest values, handed out as `output`.
std::string giveRest(GraphNode& node, const char* rest, const char* output);

}  // namespace host

#endif  // MORVANE_HOST_GRAPH_CONSTRAINTTOOLS_H_
