#ifndef MORVANE_MAYA_MCOLOR_H_
#define MORVANE_MAYA_MCOLOR_H_

#include <ostream>

// A colour with opacity. Components are not clamped.
class MColor {
 public:
  MColor() = default;
  MColor(float red, float green = 0.0f, float blue = 0.0f, float alpha = 1.0f)
      : r(red), g(green), b(blue), a(alpha) {}

  float& operator[](unsigned int i) { return i == 0 ? r : i == 1 ? g : i == 2 ? b : a; }
  float operator[](unsigned int i) const { return i == 0 ? r : i == 1 ? g : i == 2 ? b : a; }
  bool operator==(const MColor& other) const {
    return r == other.r && g == other.g && b == other.b && a == other.a;
  }
  bool operator!=(const MColor& other) const { return !(*this == other); }

  float r = 0.0f;
  float g = 0.0f;
  float b = 0.0f;
  float a = 1.0f;
};

inline std::ostream& operator<<(std::ostream& out, const MColor& c) {
  return out << '(' << c.r << ", " << c.g << ", " << c.b << ", " << c.a << ')';
}

#endif  // MORVANE_MAYA_MCOLOR_H_
