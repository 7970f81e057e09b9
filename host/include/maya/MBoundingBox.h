#ifndef MORVANE_MAYA_MBOUNDINGBOX_H_
#define MORVANE_MAYA_MBOUNDINGBOX_H_

#include <maya/MPoint.h>

// An axis-aligned box. A box without content has its corners and centre at the origin.
class MBoundingBox {
 public:
  MBoundingBox() = default;
  MBoundingBox(const MPoint& corner1, const MPoint& corner2);

  MPoint min() const { return min_; }
  MPoint max() const { return max_; }
  MPoint center() const;
  double width() const { return max_.x - min_.x; }
  double height() const { return max_.y - min_.y; }
  double depth() const { return max_.z - min_.z; }

  void clear() { *this = MBoundingBox(); }
  void expand(const MPoint& point);
  void expand(const MBoundingBox& box);
  // Becomes the axis-aligned box of this box's eight corners after `matrix`.
  void transformUsing(const MMatrix& matrix);
  bool contains(const MPoint& point) const;

 private:
  MPoint min_;
  MPoint max_;
  bool empty_ = true;
};

#endif  // MORVANE_MAYA_MBOUNDINGBOX_H_
