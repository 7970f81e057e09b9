#ifndef MORVANE_MAYA_MUINTARRAY_H_
#define MORVANE_MAYA_MUINTARRAY_H_

#include <maya/MArrayOf.h>

class MUintArray : public MArrayOf<unsigned int> {
 public:
  using MArrayOf<unsigned int>::MArrayOf;
};

#endif  // MORVANE_MAYA_MUINTARRAY_H_
