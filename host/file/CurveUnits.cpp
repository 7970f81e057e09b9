#include "host/file/CurveUnits.h"

#include <string_view>

#include "host/evaluation/ArrayElements.h"

namespace host {
namespace {

// What keys are multiplied by, by the last two letters of the curve's type: what drives it (T,
// time, or U, a number), and what it gives (a length, an angle, a time or a number).
struct KeyFactors {
  double x = 1.0;
  double y = 1.0;
};

KeyFactors factorsOf(std::string_view type, const SceneUnits& from, const SceneRates& to) {
  const double time = to.framesPerSecond / from.framesPerSecond;
  KeyFactors factors;
  if (type[type.size() - 2] == 'T') factors.x = time;
  if (type.back() == 'L') factors.y = from.length / to.length;
  if (type.back() == 'A') factors.y = from.angle / to.angle;
  if (type.back() == 'T') factors.y = time;
  return factors;
}

}  // namespace

void takeSceneUnits(const std::vector<ForeignCurve>& curves, const SceneRates& scene) {
  for (const ForeignCurve& curve : curves) {
    const KeyFactors factors = factorsOf(curve.node->type().name(), curve.units, scene);
    if (factors.x == 1.0 && factors.y == 1.0) continue;
    auto keys = keptElements(*curve.node, "ktv", 2);
    for (auto& [index, key] : keys) key = {key[0] * factors.x, key[1] * factors.y};
    writeKeptElements(curve.node, "ktv", keys);
  }
}

}  // namespace host
