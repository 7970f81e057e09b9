#ifndef MORVANE_MAYA_MOBJECTARRAY_H_
#define MORVANE_MAYA_MOBJECTARRAY_H_

#include <maya/MArrayOf.h>
#include <maya/MObject.h>

class MObjectArray : public MArrayOf<MObject> {
 public:
  using MArrayOf<MObject>::MArrayOf;
};

#endif  // MORVANE_MAYA_MOBJECTARRAY_H_
