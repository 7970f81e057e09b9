#include "host/graph/AnimCurve.h"

#include <algorithm>
#include <cmath>

namespace host {
namespace {

// A clamped key is joined by a straight line to a neighbour whose value differs by less than this.
constexpr double kNearlyEqual = 1e-3;
// A tangent that stands upright rises this steeply.
constexpr double kSteepest = 1e6;
// A cubic between two keys stays between their values while its slopes are at most this many times
// the straight line's: F. Fritsch and R. Carlson, "Monotone Piecewise Cubic Interpolation", 1980.
constexpr double kMonotone = 3.0;
constexpr int kMostBisections = 60;

double slopeOf(const Tangent& tangent) {
  if (tangent.x > 0.0) return std::clamp(tangent.y / tangent.x, -kSteepest, kSteepest);
  return tangent.y == 0.0 ? 0.0 : std::copysign(kSteepest, tangent.y);
}

double hermite(double from, double fromRise, double to, double toRise, double u) {
  const double u2 = u * u;
  const double u3 = u2 * u;
  // In this form nothing is lost between equal values.
  return from + (3.0 * u2 - 2.0 * u3) * (to - from) + (u3 - 2.0 * u2 + u) * fromRise +
         (u3 - u2) * toRise;
}

double bezier(double a, double b, double c, double d, double u) {
  const double v = 1.0 - u;
  return a + 3.0 * v * v * u * (b - a) + 3.0 * v * u * u * (c - a) + u * u * u * (d - a);
}

// A third of the tangent, shortened when it reaches beyond the other key, so that x only grows.
Tangent handleOf(const Tangent& tangent, double width) {
  const double x = std::max(tangent.x / 3.0, 0.0);
  if (x <= width) return {x, tangent.y / 3.0, true};
  return {width, tangent.y / 3.0 * (width / x), true};
}

// The parameter at which a Bezier curve from 0 to `width` with these inner points reaches x.
double parameterAt(double first, double second, double width, double x) {
  double low = 0.0;
  double high = 1.0;
  for (int i = 0; i < kMostBisections; ++i) {
    const double middle = 0.5 * (low + high);
    (bezier(0.0, first, second, width, middle) < x ? low : high) = middle;
  }
  return 0.5 * (low + high);
}

bool isFinite(const AnimKey& key) {
  return std::isfinite(key.x) && std::isfinite(key.y) && std::isfinite(key.in.x) &&
         std::isfinite(key.in.y) && std::isfinite(key.out.x) && std::isfinite(key.out.y);
}

}  // namespace

AnimCurve::AnimCurve(std::vector<AnimKey> keys, bool isWeighted, Infinity before, Infinity behind)
    : keys_(std::move(keys)), isWeighted_(isWeighted), before_(before), behind_(behind) {
  keys_.erase(
      std::remove_if(keys_.begin(), keys_.end(), [](const AnimKey& key) { return !isFinite(key); }),
      keys_.end());
  std::stable_sort(keys_.begin(), keys_.end(),
                   [](const AnimKey& a, const AnimKey& b) { return a.x < b.x; });
  const auto sameX = [](const AnimKey& a, const AnimKey& b) { return a.x == b.x; };
  keys_.erase(std::unique(keys_.begin(), keys_.end(), sameX), keys_.end());
  computeTangents();
}

double AnimCurve::secant(std::size_t key) const {
  return (keys_[key + 1].y - keys_[key].y) / (keys_[key + 1].x - keys_[key].x);
}

// The slope at a key as its neighbours give it; with both neighbours, that of the line between
// them.
double AnimCurve::slopeAt(std::size_t key, TangentType type, bool isOut) const {
  const bool isFirst = key == 0;
  const bool isLast = key + 1 == keys_.size();
  if ((isFirst && isLast) || type == TangentType::kFlat || type == TangentType::kStep ||
      type == TangentType::kStepNext || type == TangentType::kFixed) {
    return 0.0;
  }
  const bool isRounded = type == TangentType::kPlateau || type == TangentType::kAuto;
  if (isFirst || isLast) return isRounded ? 0.0 : secant(isFirst ? key : key - 1);
  const double before = secant(key - 1);
  const double behind = secant(key);
  const double near = isOut ? behind : before;
  if (type == TangentType::kLinear) return near;
  const AnimKey& neighbour = keys_[isOut ? key + 1 : key - 1];
  if (type == TangentType::kClamped && std::abs(neighbour.y - keys_[key].y) < kNearlyEqual)
    return near;
  const double middle =
      (keys_[key + 1].y - keys_[key - 1].y) / (keys_[key + 1].x - keys_[key - 1].x);
  if (!isRounded) return middle;
  if (!(before * behind > 0.0)) return 0.0;
  const double most = kMonotone * std::min(std::abs(before), std::abs(behind));
  return std::clamp(middle, -most, most);
}

void AnimCurve::computeTangents() {
  for (std::size_t i = 0; i < keys_.size(); ++i) {
    AnimKey& key = keys_[i];
    if (!key.in.isStored) {
      const double width = i > 0 ? key.x - keys_[i - 1].x : 1.0;
      key.in = {width, slopeAt(i, key.inType, false) * width, true};
    }
    if (!key.out.isStored) {
      const double width = i + 1 < keys_.size() ? keys_[i + 1].x - key.x : 1.0;
      key.out = {width, slopeAt(i, key.outType, true) * width, true};
    }
  }
}

double AnimCurve::valueAt(double x) const {
  if (keys_.empty() || !std::isfinite(x)) return keys_.empty() ? 0.0 : keys_.front().y;
  if (x < keys_.front().x) return valueBeyond(x, false);
  if (x > keys_.back().x) return valueBeyond(x, true);
  return valueWithin(x);
}

double AnimCurve::valueWithin(double x) const {
  const auto next = std::upper_bound(keys_.begin(), keys_.end(), x,
                                     [](double at, const AnimKey& key) { return at < key.x; });
  const AnimKey& from = *std::prev(next);
  return next == keys_.end() || from.x == x ? from.y : valueBetween(from, *next, x);
}

double AnimCurve::valueBetween(const AnimKey& from, const AnimKey& to, double x) const {
  if (from.outType == TangentType::kStep) return from.y;
  if (from.outType == TangentType::kStepNext) return to.y;
  const double width = to.x - from.x;
  if (!isWeighted_) {
    return hermite(from.y, slopeOf(from.out) * width, to.y, slopeOf(to.in) * width,
                   (x - from.x) / width);
  }
  const Tangent start = handleOf(from.out, width);
  const Tangent end = handleOf(to.in, width);
  const double u = parameterAt(start.x, width - end.x, width, x - from.x);
  return bezier(from.y, from.y + start.y, to.y - end.y, to.y, u);
}

double AnimCurve::valueBeyond(double x, bool isBehind) const {
  const AnimKey& first = keys_.front();
  const AnimKey& last = keys_.back();
  const AnimKey& end = isBehind ? last : first;
  const Infinity infinity = isBehind ? behind_ : before_;
  if (infinity == Infinity::kLinear) {
    const bool isStep = isBehind && last.outType == TangentType::kStep;
    return isStep ? end.y : end.y + (x - end.x) * slopeOf(isBehind ? last.out : first.in);
  }
  const double width = last.x - first.x;
  const double cycle = width > 0.0 ? std::floor((x - first.x) / width) : 0.0;
  if (width <= 0.0 || infinity == Infinity::kConstant) return end.y;
  const double within = std::clamp(x - cycle * width, first.x, last.x);
  if (infinity == Infinity::kOscillate && std::fmod(std::abs(cycle), 2.0) == 1.0)
    return valueWithin(first.x + last.x - within);
  const double rise = infinity == Infinity::kCycleRelative ? cycle * (last.y - first.y) : 0.0;
  return valueWithin(within) + rise;
}

}  // namespace host
