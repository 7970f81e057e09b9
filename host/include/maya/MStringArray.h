#ifndef MORVANE_MAYA_MSTRINGARRAY_H_
#define MORVANE_MAYA_MSTRINGARRAY_H_

#include <maya/MArrayOf.h>
#include <maya/MString.h>

class MStringArray : public MArrayOf<MString> {
 public:
  using MArrayOf<MString>::MArrayOf;
};

#endif  // MORVANE_MAYA_MSTRINGARRAY_H_
