#include <maya/MBoundingBox.h>
#include <maya/MMatrix.h>

#include <algorithm>

MBoundingBox::MBoundingBox(const MPoint& corner1, const MPoint& corner2) {
  expand(corner1);
  expand(corner2);
}

MPoint MBoundingBox::center() const {
  return {0.5 * min_.x + 0.5 * max_.x, 0.5 * min_.y + 0.5 * max_.y, 0.5 * min_.z + 0.5 * max_.z};
}

void MBoundingBox::expand(const MPoint& point) {
  if (empty_) {
    min_ = max_ = MPoint(point.x, point.y, point.z);
    empty_ = false;
    return;
  }
  for (unsigned int axis = 0; axis < 3; ++axis) {
    min_[axis] = std::min(min_[axis], point[axis]);
    max_[axis] = std::max(max_[axis], point[axis]);
  }
}

void MBoundingBox::expand(const MBoundingBox& box) {
  if (box.empty_) return;
  expand(box.min_);
  expand(box.max_);
}

void MBoundingBox::transformUsing(const MMatrix& matrix) {
  if (empty_) return;
  MBoundingBox result;
  for (int corner = 0; corner < 8; ++corner) {
    const MPoint point((corner & 1) != 0 ? max_.x : min_.x, (corner & 2) != 0 ? max_.y : min_.y,
                       (corner & 4) != 0 ? max_.z : min_.z);
    result.expand(point * matrix);
  }
  *this = result;
}

bool MBoundingBox::contains(const MPoint& point) const {
  for (unsigned int axis = 0; axis < 3; ++axis)
    if (point[axis] < min_[axis] || point[axis] > max_[axis]) return false;
  return !empty_;
}
