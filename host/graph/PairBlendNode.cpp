#include "host/graph/GraphNodes.h"
#include "host/math/Quaternion.h"
#include "host/math/TransformParts.h"

namespace host {
namespace {

constexpr int kFirstOnly = 1;
constexpr int kSecondOnly = 2;

// How much of the second input counts.
double shareOf(GraphNode& node, const std::string& mode) {
  switch (node.whole(mode)) {
    case kFirstOnly:
      return 0.0;
    case kSecondOnly:
      return 1.0;
    default:
      return node.number("weight");
  }
}

void blend(GraphNode& node, const std::string& name, double share) {
  const double first = node.number("in" + name + "1");
  const double second = node.number("in" + name + "2");
  node.give("out" + name, first + (second - first) * share);
}

void blendTurns(GraphNode& node, double share) {
  const int order = rotateOrder(node.number("rotateOrder"));
  const Vec3 first = {node.number("inRotateX1"), node.number("inRotateY1"),
                      node.number("inRotateZ1")};
  const Vec3 second = {node.number("inRotateX2"), node.number("inRotateY2"),
                       node.number("inRotateZ2")};
  const Quaternion turned = slerp(Quaternion::of(rotationMatrix(first, order)),
                                  Quaternion::of(rotationMatrix(second, order)), share);
  node.giveTriple("outRotate", anglesOf(turned.toMatrix(), order));
}

std::string evaluate(GraphNode& node) {
  const std::string name(node.output().substr(std::string_view("out").size()));
  if (name.rfind("Translate", 0) == 0) {
    blend(node, name, shareOf(node, std::string("translate") + name.back() + "Mode"));
    return "";
  }
  const double share = shareOf(node, "rotateMode");
  if (node.whole("rotInterpolation") == 0)
    blend(node, name, share);
  else
    blendTurns(node, share);
  return "";
}

}  // namespace

const GraphNodeType kPairBlend = {
    "pairBlend", "dependNode",
    "inTranslate1:it1:double3{inTranslateX1:itx1:doubleLinear inTranslateY1:ity1:doubleLinear "
    "inTranslateZ1:itz1:doubleLinear} "
    "inTranslate2:it2:double3{inTranslateX2:itx2:doubleLinear inTranslateY2:ity2:doubleLinear "
    "inTranslateZ2:itz2:doubleLinear} "
    "inRotate1:ir1:double3{inRotateX1:irx1:doubleAngle inRotateY1:iry1:doubleAngle "
    "inRotateZ1:irz1:doubleAngle} "
    "inRotate2:ir2:double3{inRotateX2:irx2:doubleAngle inRotateY2:iry2:doubleAngle "
    "inRotateZ2:irz2:doubleAngle} "
    "weight:w:double=1 translateXMode:txm:enum translateYMode:tym:enum translateZMode:tzm:enum "
    "rotateMode:rm:enum rotateOrder:ro:enum rotInterpolation:ri:enum currentDriver:c:long "
    "outTranslate:ot:double3!{outTranslateX:otx:doubleLinear outTranslateY:oty:doubleLinear "
    "outTranslateZ:otz:doubleLinear} "
    "outRotate:or:double3!{outRotateX:orx:doubleAngle outRotateY:ory:doubleAngle "
    "outRotateZ:orz:doubleAngle}",
    evaluate};

}  // namespace host
