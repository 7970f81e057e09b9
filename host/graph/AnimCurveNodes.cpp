#include <cmath>

#include "host/graph/AnimCurve.h"
#include "host/graph/GraphNodes.h"

namespace host {
namespace {

constexpr double kDegrees = 57.295779513082320876798;
constexpr double kMostTangentTypes = 100.0;

#define CURVE(INPUT, OUTPUT)                               \
  "input:i:" INPUT " output:o:" OUTPUT                     \
  "! tangentType:tan:enum=18 weightedTangents:wgt:bool=1 " \
  "preInfinity:pre:enum postInfinity:pst:enum"

using Elements = std::map<int, std::vector<double>>;

// The factor for the curve's numbers. Tangents are in seconds and in the host's internal units:
// centimetres, radians, seconds.
struct Scale {
  double keyY = 1.0;
  double tangentX = 1.0;
  double tangentY = 1.0;
};

bool isOfTime(std::string_view type) {
  return type[type.size() - 2] == 'T';
}

Scale scaleOf(const GraphNode& node, std::string_view type) {
  Scale scale;
  if (isOfTime(type)) scale.tangentX = node.framesPerSecond();
  switch (type.back()) {
    case 'A':
      scale.keyY = node.keptAngle();
      scale.tangentY = kDegrees;
      break;
    case 'L':
      scale.keyY = node.keptLength();
      break;
    case 'T':
      scale.tangentY = node.framesPerSecond();
      break;
    default:
      break;
  }
  return scale;
}

TangentType typeOf(const Elements& types, int index, int otherwise) {
  const auto found = types.find(index);
  const double number = found == types.end() ? otherwise : found->second.front();
  const int type = number >= 0.0 && number < kMostTangentTypes ? static_cast<int>(number) : 0;
  return type == 0 ? TangentType::kAuto : static_cast<TangentType>(type);
}

Tangent tangentOf(const Elements& xs, const Elements& ys, int index, const Scale& scale) {
  const auto x = xs.find(index);
  const auto y = ys.find(index);
  if (x == xs.end() || y == ys.end()) return Tangent();
  return {x->second.front() * scale.tangentX, y->second.front() * scale.tangentY, true};
}

// Whether the slope is known: it follows from the type, or the file states it.
bool isKnown(TangentType type, const Tangent& tangent) {
  switch (type) {
    case TangentType::kFixed:
    case TangentType::kLinear:
    case TangentType::kFlat:
    case TangentType::kStep:
    case TangentType::kSpline:
    case TangentType::kClamped:
    case TangentType::kPlateau:
    case TangentType::kStepNext:
    case TangentType::kAuto:
      return true;
  }
  return tangent.isStored;
}

Infinity infinityOf(const GraphNode& node, const char* path) {
  return static_cast<Infinity>(node.whole(path));
}

std::vector<AnimKey> keysOf(const GraphNode& node, const Scale& scale) {
  const int otherwise = node.whole("tangentType");
  const Elements inTypes = node.kept("kit", 1);
  const Elements outTypes = node.kept("kot", 1);
  const Elements inXs = node.kept("kix", 1);
  const Elements inYs = node.kept("kiy", 1);
  const Elements outXs = node.kept("kox", 1);
  const Elements outYs = node.kept("koy", 1);
  std::vector<AnimKey> keys;
  for (const auto& [index, pair] : node.kept("ktv", 2)) {
    AnimKey key;
    key.x = pair[0];
    key.y = pair[1] * scale.keyY;
    key.inType = typeOf(inTypes, index, otherwise);
    key.outType = typeOf(outTypes, index, otherwise);
    key.in = tangentOf(inXs, inYs, index, scale);
    key.out = tangentOf(outXs, outYs, index, scale);
    keys.push_back(key);
  }
  return keys;
}

std::string evaluate(GraphNode& node, std::string_view type) {
  const std::vector<AnimKey> keys = keysOf(node, scaleOf(node, type));
  for (const AnimKey& key : keys)
    if (!isKnown(key.inType, key.in) || !isKnown(key.outType, key.out))
      return "it has tangents of a kind that is not evaluated";
  const bool isTimed = isOfTime(type) && !node.isConnected("input");
  const double x = isTimed ? node.time() : node.number("input");
  const AnimCurve curve(keys, node.number("weightedTangents") != 0.0,
                        infinityOf(node, "preInfinity"), infinityOf(node, "postInfinity"));
  node.give("output", curve.valueAt(x));
  return "";
}

// The last letters of the type's name: what drives the curve (time or a number), and what it gives.
template <char kDriver, char kKind>
std::string evaluateAs(GraphNode& node) {
  const char letters[] = {kDriver, kKind};
  return evaluate(node, std::string_view(letters, 2));
}

}  // namespace

const GraphNodeType kAnimCurves[8] = {
    {"animCurveTA", "animCurve", CURVE("time", "doubleAngle"), evaluateAs<'T', 'A'>},
    {"animCurveTL", "animCurve", CURVE("time", "doubleLinear"), evaluateAs<'T', 'L'>},
    {"animCurveTT", "animCurve", CURVE("time", "time"), evaluateAs<'T', 'T'>},
    {"animCurveTU", "animCurve", CURVE("time", "double"), evaluateAs<'T', 'U'>},
    {"animCurveUA", "animCurve", CURVE("double", "doubleAngle"), evaluateAs<'U', 'A'>},
    {"animCurveUL", "animCurve", CURVE("double", "doubleLinear"), evaluateAs<'U', 'L'>},
    {"animCurveUT", "animCurve", CURVE("double", "time"), evaluateAs<'U', 'T'>},
    {"animCurveUU", "animCurve", CURVE("double", "double"), evaluateAs<'U', 'U'>}};

}  // namespace host
