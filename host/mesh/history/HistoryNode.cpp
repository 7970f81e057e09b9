#include "host/mesh/history/HistoryNode.h"

#include <algorithm>
#include <cmath>

#include "host/mesh/history/HistoryNodes.h"

namespace host {
namespace {

const HistoryNodeType kTypes[] = {
    {"groupParts", "ig", "inputGeometry", nullptr},
    {"polyCube", nullptr, nullptr, makePrimitive<kCube>},
    {"polyCylinder", nullptr, nullptr, makePrimitive<kCylinder>},
    {"polyPlane", nullptr, nullptr, makePrimitive<kPlane>},
    {"polySphere", nullptr, nullptr, makePrimitive<kSphere>},
    {"transformGeometry", "ig", "inputGeometry", transformGeometry},
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
