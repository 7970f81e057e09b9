#ifndef MORVANE_MAYA_MFLOATVECTORARRAY_H_
#define MORVANE_MAYA_MFLOATVECTORARRAY_H_

#include <maya/MArrayOf.h>
#include <maya/MFloatVector.h>

class MFloatVectorArray : public MArrayOf<MFloatVector> {
 public:
  using MArrayOf<MFloatVector>::MArrayOf;
};

#endif  // MORVANE_MAYA_MFLOATVECTORARRAY_H_
