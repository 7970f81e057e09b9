#ifndef MORVANE_MAYA_MPOINTARRAY_H_
#define MORVANE_MAYA_MPOINTARRAY_H_

#include <maya/MArrayOf.h>
#include <maya/MPoint.h>

class MPointArray : public MArrayOf<MPoint> {
 public:
  using MArrayOf<MPoint>::MArrayOf;
  using MArrayOf<MPoint>::append;
  bool append(double x, double y, double z, double w = 1.0) { return append(MPoint(x, y, z, w)); }
};

#endif  // MORVANE_MAYA_MPOINTARRAY_H_
