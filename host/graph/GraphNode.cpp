#include "host/graph/GraphNode.h"

#include <algorithm>
#include <cmath>

#include "host/graph/GraphNodes.h"

namespace host {
namespace {

constexpr double kMostWhole = 1e6;

std::vector<GraphNodeType> allTypes() {
  std::vector<GraphNodeType> all = {
      kAimConstraint,
      kBlendWeighted,
      kChoice,
      kCondition,
      kMultiplyDivide,
      kOrientConstraint,
      kPairBlend,
      kParentConstraint,
      kPlusMinusAverage,
      kPointConstraint,
      kReverse,
      kScaleConstraint,
      kSetRange,
      kUnitConversion,
      {"expression", "dependNode",
       "input:in:double[] time:tim:time frame:f:double output:out:double![] expression:exp:string "
       "internalExpression:ixp:string unitOption:uo:enum animated:ani:long=1 object:obm:message",
       nullptr}};
  all.insert(all.end(), std::begin(kAnimCurves), std::end(kAnimCurves));
  all.insert(all.end(), std::begin(kAdditiveBlends), std::end(kAdditiveBlends));
  all.insert(all.end(), std::begin(kDoubleLinears), std::end(kDoubleLinears));
  all.insert(all.end(), std::begin(kMatrixNodes), std::end(kMatrixNodes));
  return all;
}

}  // namespace

const std::vector<GraphNodeType>& graphNodeTypes() {
  static const std::vector<GraphNodeType> all = allTypes();
  return all;
}

const GraphNodeType* findGraphNodeType(std::string_view name) {
  const auto& all = graphNodeTypes();
  const auto found = std::find_if(all.begin(), all.end(),
                                  [name](const GraphNodeType& type) { return type.name == name; });
  return found == all.end() ? nullptr : &*found;
}

Vec3 GraphNode::triple(std::string_view stem, std::string_view ends) const {
  // Below an element, a path has its compounds in it.
  const std::size_t dot = stem.rfind('.');
  const std::string_view name = dot == stem.npos ? stem : stem.substr(dot + 1);
  const std::string start =
      dot == stem.npos ? std::string(stem) : std::string(stem) + "." + std::string(name);
  return {number(start + ends[0]), number(start + ends[1]), number(start + ends[2])};
}

void GraphNode::giveTriple(std::string_view stem, const Vec3& value, std::string_view ends) {
  const std::string start(stem);
  give(start + ends[0], value.x);
  give(start + ends[1], value.y);
  give(start + ends[2], value.z);
}

int GraphNode::whole(std::string_view path) const {
  const double value = number(path);
  return std::abs(value) <= kMostWhole ? static_cast<int>(value) : 0;
}

}  // namespace host
