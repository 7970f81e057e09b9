#ifndef MORVANE_MAYA_MDOUBLEARRAY_H_
#define MORVANE_MAYA_MDOUBLEARRAY_H_

#include <maya/MArrayOf.h>

class MDoubleArray : public MArrayOf<double> {
 public:
  using MArrayOf<double>::MArrayOf;
};

#endif  // MORVANE_MAYA_MDOUBLEARRAY_H_
