#ifndef MORVANE_HOST_GRAPH_ANIMCURVE_H_
#define MORVANE_HOST_GRAPH_ANIMCURVE_H_

#include <vector>

namespace host {

// How a curve runs beside a key, numbered as scene files do.
enum class TangentType {
  kFixed = 1,
  kLinear = 2,
  kFlat = 3,
  kStep = 5,
  kSpline = 9,
  kClamped = 10,
  kPlateau = 16,
  kStepNext = 17,
  kAuto = 18,
};

// How it runs before its first and behind its last key; the same.
enum class Infinity { kConstant = 0, kLinear = 1, kCycle = 3, kCycleRelative = 4, kOscillate = 5 };

// A direction with a length: of a weighted curve a third of it leads to the next control point.
struct Tangent {
  double x = 0.0;
  double y = 0.0;
  bool isStored = false;  // else it follows from the type and the neighbours
};

struct AnimKey {
  double x = 0.0;  // frames, or the driving value
  double y = 0.0;
  TangentType inType = TangentType::kAuto;
  TangentType outType = TangentType::kAuto;
  Tangent in;
  Tangent out;
};

// A function by keys: between two of them a cubic, which of an unweighted curve has a cubic
// Hermite's form, and of a weighted one is a Bezier curve in both x and y.
class AnimCurve {
 public:
  // Keys may stand in any order; those with numbers that are none are left out.
  AnimCurve(std::vector<AnimKey> keys, bool isWeighted, Infinity before, Infinity behind);

  // 0 for a curve without keys.
  double valueAt(double x) const;

 private:
  void computeTangents();
  double slopeAt(std::size_t key, TangentType type, bool isOut) const;
  double valueWithin(double x) const;
  double valueBetween(const AnimKey& from, const AnimKey& to, double x) const;
  double valueBeyond(double x, bool isBehind) const;
  double secant(std::size_t key) const;  // to the next one

  std::vector<AnimKey> keys_;
  bool isWeighted_;
  Infinity before_;
  Infinity behind_;
};

}  // namespace host

#endif  // MORVANE_HOST_GRAPH_ANIMCURVE_H_
