#include "host/graph/ConstraintTools.h"
#include "host/graph/GraphNodes.h"

namespace host {
namespace {

enum WorldUp { kSceneUp, kObjectUp, kObjectRotationUp, kVectorUp, kNoUp };  // worldUpType

// Rows: a direction, the part of another that stands upright on it, and the one upright on both.
// The identity where there are no two directions.
MMatrix frameAlong(const Vec3& direction, const Vec3& up) {
  const Vec3 x = normalized(direction);
  const Vec3 z = normalized(cross(x, up));
  if (length(x) == 0.0 || length(z) == 0.0) return MMatrix();
  const Vec3 y = cross(z, x);
  MMatrix m;
  const Vec3 rows[] = {x, y, z};
  for (unsigned i = 0; i < 3; ++i) {
    m[i][0] = rows[i].x;
    m[i][1] = rows[i].y;
    m[i][2] = rows[i].z;
  }
  return m;
}

// Some direction that is not along the given one.
Vec3 anyBeside(const Vec3& v) {
  return v.x * v.x < 0.5 * dot(v, v) ? Vec3{1.0, 0.0, 0.0} : Vec3{0.0, 1.0, 0.0};
}

Vec3 worldUpOf(const GraphNode& node, const Vec3& position) {
  const MMatrix object = node.matrix("worldUpMatrix");
  switch (node.whole("worldUpType")) {
    case kObjectUp:
      return translationOf(object) - position;
    case kObjectRotationUp:
      return directionThrough(node.triple("worldUpVector"), object);
    case kVectorUp:
      return node.triple("worldUpVector");
    default:
      return {0.0, 1.0, 0.0};
  }
}

// The least turn from one direction to another.
MMatrix shortestTurn(const Vec3& from, const Vec3& to) {
  const Vec3 axis = cross(from, to);
  const double cosine = dot(from, to);
  if (length(axis) < 1e-12 && cosine < 0.0) {
    const Vec3 half = normalized(cross(from, anyBeside(from)));
    return Quaternion{0.0, half.x, half.y, half.z}.toMatrix();
  }
  return Quaternion{1.0 + cosine, axis.x, axis.y, axis.z}.normalized().toMatrix();
}

// All in the space of the constrained node's parent.
std::string evaluate(GraphNode& node) {
  const std::vector<ConstraintTarget> targets = targetsOf(node);
  if (targets.empty()) return giveRest(node, "restRotate", "constraintRotate");
  const MMatrix toParent = node.matrix("constraintParentInverseMatrix");
  const double total = totalWeight(targets);
  Vec3 point;
  for (const ConstraintTarget& target : targets)
    point = point + pivotOf(node, target) * (target.weight / total);
  const Vec3 own = node.triple("constraintTranslate") + node.triple("constraintRotatePivot") +
                   node.triple("constraintRotateTranslate");
  const Vec3 aim = normalized(node.triple("aimVector"));
  const Vec3 direction = normalized(pointThrough(point, toParent) - own);
  if (length(aim) == 0.0 || length(direction) == 0.0)
    return "there is no direction from it to its target";
  const Vec3 position = pointThrough(own, toParent.inverse());
  Vec3 up = directionThrough(worldUpOf(node, position), toParent);
  if (length(cross(direction, up)) < 1e-12 * length(up) || length(up) == 0.0)
    up = anyBeside(direction);
  const MMatrix from = frameAlong(aim, node.triple("upVector"));
  const MMatrix turn = node.whole("worldUpType") == kNoUp
                           ? shortestTurn(aim, direction)
                           : from.transpose() * frameAlong(direction, up);
  giveTurn(node, rotationMatrix(node.triple("offset"), 0) * turn);
  return "";
}

}  // namespace

const GraphNodeType kAimConstraint = {
    "aimConstraint", "constraint",
    "target:tg:compound[]{" TARGET_POINT TARGET_END CONSTRAINED CONSTRAINED_POINT CONSTRAINED_TURN
    TRIPLE("constraintTranslate", "ct", "doubleLinear", "")
    TRIPLE("offset", "o", "doubleAngle", "")
    "aimVector:a:double3{aimVectorX:ax:double=1 aimVectorY:ay:double aimVectorZ:az:double} "
    "upVector:u:double3{upVectorX:ux:double upVectorY:uy:double=1 upVectorZ:uz:double} "
    "worldUpVector:wu:double3{worldUpVectorX:wux:double worldUpVectorY:wuy:double=1 "
    "worldUpVectorZ:wuz:double} worldUpMatrix:wum:matrix worldUpType:wut:enum=3 "
    OUTPUT_TRIPLE("constraintVector", "cv", "double")
    OUTPUT_TRIPLE("constraintRotate", "cr", "doubleAngle"),
    evaluate};

}  // namespace host
