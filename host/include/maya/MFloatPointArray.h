#ifndef MORVANE_MAYA_MFLOATPOINTARRAY_H_
#define MORVANE_MAYA_MFLOATPOINTARRAY_H_

#include <maya/MArrayOf.h>
#include <maya/MFloatPoint.h>

class MFloatPointArray : public MArrayOf<MFloatPoint> {
 public:
  using MArrayOf<MFloatPoint>::MArrayOf;
  using MArrayOf<MFloatPoint>::append;
  bool append(float x, float y, float z, float w = 1.0f) { return append(MFloatPoint(x, y, z, w)); }
};

#endif  // MORVANE_MAYA_MFLOATPOINTARRAY_H_
