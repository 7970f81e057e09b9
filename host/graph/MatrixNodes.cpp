#include "host/graph/GraphNodes.h"
#include "host/math/Quaternion.h"
#include "host/math/TransformParts.h"

namespace host {
namespace {

std::string multiply(GraphNode& node) {
  MMatrix product;
  for (const int i : node.elements("matrixIn"))
    product *= node.matrix("matrixIn[" + std::to_string(i) + "]");
  node.give("matrixSum", product);
  return "";
}

std::string decomposeInput(GraphNode& node) {
  const MMatrix input = node.matrix("inputMatrix");
  const int order = rotateOrder(node.number("inputRotateOrder"));
  const TransformParts parts = decompose(input, order);
  const Quaternion turn = Quaternion::of(rotationMatrix(parts.rotate, order));
  node.giveTriple("outputTranslate", parts.translate);
  node.giveTriple("outputRotate", parts.rotate);
  node.giveTriple("outputScale", parts.scale);
  node.giveTriple("outputShear", parts.shear);
  node.giveTriple("outputQuat", {turn.x, turn.y, turn.z});
  node.give("outputQuatW", turn.w);
  return "";
}

std::string compose(GraphNode& node) {
  const int order = rotateOrder(node.number("inputRotateOrder"));
  const Quaternion given = {node.number("inputQuatW"), node.number("inputQuatX"),
                            node.number("inputQuatY"), node.number("inputQuatZ")};
  const bool usesAngles = node.number("useEulerRotation") != 0.0;
  const MMatrix turn = usesAngles ? rotationMatrix(node.triple("inputRotate"), order)
                                  : given.normalized().toMatrix();
  node.give("outputMatrix", scaleMatrix(node.triple("inputScale")) *
                                shearMatrix(node.triple("inputShear")) * turn *
                                translationMatrix(node.triple("inputTranslate")));
  return "";
}

}  // namespace

const GraphNodeType kMatrixNodes[3] = {
    {"multMatrix", "dependNode", "matrixIn:i:matrix[] matrixSum:o:matrix!", multiply},
    {"decomposeMatrix", "dependNode",
     "inputMatrix:imat:matrix inputRotateOrder:ro:enum "
     "outputTranslate:ot:double3!{outputTranslateX:otx:doubleLinear "
     "outputTranslateY:oty:doubleLinear outputTranslateZ:otz:doubleLinear} "
     "outputRotate:or:double3!{outputRotateX:orx:doubleAngle outputRotateY:ory:doubleAngle "
     "outputRotateZ:orz:doubleAngle} outputScale:os:double3! outputShear:osh:double3! "
     "outputQuat:oq:double4!",
     decomposeInput},
    {"composeMatrix", "dependNode",
     "inputTranslate:it:double3{inputTranslateX:itx:doubleLinear inputTranslateY:ity:doubleLinear "
     "inputTranslateZ:itz:doubleLinear} "
     "inputRotate:ir:double3{inputRotateX:irx:doubleAngle inputRotateY:iry:doubleAngle "
     "inputRotateZ:irz:doubleAngle} inputScale:is:double3=1 inputShear:ish:double3 "
     "inputQuat:iq:double4{inputQuatX:iqx:double inputQuatY:iqy:double inputQuatZ:iqz:double "
     "inputQuatW:iqw:double=1} inputRotateOrder:ro:enum useEulerRotation:uer:bool=1 "
     "outputMatrix:omat:matrix!",
     compose}};

}  // namespace host
