#ifndef MORVANE_MAYA_MVECTORARRAY_H_
#define MORVANE_MAYA_MVECTORARRAY_H_

#include <maya/MArrayOf.h>
#include <maya/MVector.h>

class MVectorArray : public MArrayOf<MVector> {
 public:
  using MArrayOf<MVector>::MArrayOf;
};

#endif  // MORVANE_MAYA_MVECTORARRAY_H_
