#ifndef MORVANE_MAYA_MFLOATARRAY_H_
#define MORVANE_MAYA_MFLOATARRAY_H_

#include <maya/MArrayOf.h>

class MFloatArray : public MArrayOf<float> {
 public:
  using MArrayOf<float>::MArrayOf;
};

#endif  // MORVANE_MAYA_MFLOATARRAY_H_
