#ifndef MORVANE_MAYA_MDAGPATHARRAY_H_
#define MORVANE_MAYA_MDAGPATHARRAY_H_

#include <maya/MArrayOf.h>
#include <maya/MDagPath.h>

class MDagPathArray : public MArrayOf<MDagPath> {
 public:
  using MArrayOf<MDagPath>::MArrayOf;
};

#endif  // MORVANE_MAYA_MDAGPATHARRAY_H_
