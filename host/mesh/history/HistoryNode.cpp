#include "host/mesh/history/HistoryNode.h"

#include <algorithm>
#include <cmath>

#include "host/mesh/history/HistoryNodes.h"

namespace host {
namespace {

using Input = HistoryNodeType::Input;
constexpr Input kNone = {nullptr, nullptr};
constexpr Input kGeometry = {"ig", "inputGeometry"};
constexpr Input kPolygons = {"ip", "inputPolymesh"};
constexpr Input kDeformed = {"ip[#].ig", "input[#].inputGeometry"};

const HistoryNodeType kTypes[] = {
    {"blendShape", kDeformed, blendShape},
    {"deleteComponent", kGeometry, deleteComponent},
    {"groupParts", kGeometry, nullptr},
    {"polyAutoProj", kPolygons, keepOlderUvs},
    {"polyBlindData", kPolygons, nullptr},
    {"polyColorPerVertex", kPolygons, polyColorPerVertex},
    {"polyCone", kNone, makePrimitive<kCone>},
    {"polyCopyUV", kPolygons, keepOlderUvs},
    {"polyCrease", kPolygons, nullptr},
    {"polyCreaseEdge", kPolygons, nullptr},
    {"polyCube", kNone, makePrimitive<kCube>},
    {"polyCylinder", kNone, makePrimitive<kCylinder>},
    {"polyCylProj", kPolygons, keepOlderUvs},
    {"polyExtrudeFace", kPolygons, polyExtrudeFace},
    {"polyFlipUV", kPolygons, keepOlderUvs},
    {"polyLayoutUV", kPolygons, keepOlderUvs},
    {"polyMapCut", kPolygons, keepOlderUvs},
    {"polyMapDel", kPolygons, polyMapDel},
    {"polyMapSew", kPolygons, keepOlderUvs},
    {"polyMapSewMove", kPolygons, keepOlderUvs},
    {"polyMoveUV", kPolygons, keepOlderUvs},
    {"polyNormal", kPolygons, polyNormal},
    {"polyNormalizeUV", kPolygons, keepOlderUvs},
    {"polyOptUvs", kPolygons, keepOlderUvs},
    {"polyPinUV", kPolygons, nullptr},
    {"polyPlanarProj", kPolygons, keepOlderUvs},
    {"polyPlane", kNone, makePrimitive<kPlane>},
    {"polyProj", kPolygons, keepOlderUvs},
    {"polyPyramid", kNone, makePrimitive<kPyramid>},
    {"polySeparate", kPolygons, polySeparate},
    {"polySoftEdge", kPolygons, polySoftEdge},
    {"polySphere", kNone, makePrimitive<kSphere>},
    {"polySphProj", kPolygons, keepOlderUvs},
    {"polyStraightenUVBorder", kPolygons, keepOlderUvs},
    {"polyTorus", kNone, makePrimitive<kTorus>},
    {"polyTriangulate", kPolygons, polyTriangulate},
    {"polyTweak", kPolygons, polyTweak},
    {"polyTweakUV", kPolygons, polyTweakUv},
    {"polyUnite", kNone, polyUnite},
    {"skinCluster", kDeformed, skinCluster},
    {"transformGeometry", kGeometry, transformGeometry},
    {"tweak", kDeformed, tweak},
};

}  // namespace

const HistoryNodeType* findHistoryNodeType(std::string_view name) {
  const auto found =
      std::find_if(std::begin(kTypes), std::end(kTypes),
                   [name](const HistoryNodeType& type) { return type.name == name; });
  return found == std::end(kTypes) ? nullptr : found;
}

int HistoryParameters::whole(const ParameterName& name, int otherwise, int least, int most) const {
  const double value = number(name, otherwise);
  return std::isfinite(value) ? static_cast<int>(std::clamp(value, 1.0 * least, 1.0 * most))
                              : otherwise;
}

}  // namespace host
