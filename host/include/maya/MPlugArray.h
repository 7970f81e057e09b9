#ifndef MORVANE_MAYA_MPLUGARRAY_H_
#define MORVANE_MAYA_MPLUGARRAY_H_

#include <maya/MArrayOf.h>
#include <maya/MPlug.h>

class MPlugArray : public MArrayOf<MPlug> {
 public:
  using MArrayOf<MPlug>::MArrayOf;
};

#endif  // MORVANE_MAYA_MPLUGARRAY_H_
