#ifndef MORVANE_MAYA_MINTARRAY_H_
#define MORVANE_MAYA_MINTARRAY_H_

#include <maya/MArrayOf.h>

class MIntArray : public MArrayOf<int> {
 public:
  using MArrayOf<int>::MArrayOf;
};

#endif  // MORVANE_MAYA_MINTARRAY_H_
