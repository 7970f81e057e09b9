#include "host/graph/GraphNodes.h"

namespace host {
namespace {

constexpr int kAdd = 1;
constexpr int kSubtract = 2;
constexpr int kAverage = 3;

// "output3Dx" is made of "input3D[i].input3Dx", "output1D" of "input1D[i]".
std::string evaluate(GraphNode& node) {
  const std::string rest(node.output().substr(std::string_view("output").size()));
  const std::string array = "input" + rest.substr(0, 2);
  const std::string child = rest.size() > 2 ? ".input" + rest : std::string();
  const std::vector<int> elements = node.elements(array);
  const int operation = node.whole("operation");
  double sum = 0.0;
  for (std::size_t i = 0; i < elements.size(); ++i) {
    const double each = node.number(array + "[" + std::to_string(elements[i]) + "]" + child);
    if (operation == kAdd || operation == kAverage || i == 0)
      sum += each;
    else if (operation == kSubtract)
      sum -= each;
  }
  if (operation == kAverage && !elements.empty()) sum /= static_cast<double>(elements.size());
  node.give(node.output(), sum);
  return "";
}

}  // namespace

const GraphNodeType kPlusMinusAverage = {
    "plusMinusAverage", "shadingDependNode",
    "operation:op:enum=1 input1D:i1:float[] "
    "input2D:i2:float2[]{input2Dx:i2x:float input2Dy:i2y:float} "
    "input3D:i3:float3[]{input3Dx:i3x:float input3Dy:i3y:float input3Dz:i3z:float} "
    "output1D:o1:float! output2D:o2:float2!{output2Dx:o2x:float output2Dy:o2y:float} "
    "output3D:o3:float3!{output3Dx:o3x:float output3Dy:o3y:float output3Dz:o3z:float}",
    evaluate};

}  // namespace host
