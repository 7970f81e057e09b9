#ifndef MORVANE_HOST_GRAPH_ANIMCURVE_H_
#define MORVANE_HOST_GRAPH_ANIMCURVE_H_

#include <vector>

namespace host {

// The shape of a curve on one side of a key; the numbers are those of scene files.
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

// How the curve continues before its first key and after its last; numbered likewise.
enum class Infinity { kConstant = 0, kLinear = 1, kCycle = 3, kCycleRelative = 4, kOscillate = 5 };

// A tangent: a direction with a length. In a weighted curve a third of it leads to the next control
// point.
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

// A function given by keys, with a cubic between two of them: in Hermite form for an unweighted
// curve, and a Bezier curve in both x and y for a weighted one.
class AnimCurve {
 public:
  // Keys may come in any order. Those with infinite or undefined numbers are dropped.
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
