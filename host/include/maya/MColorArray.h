#ifndef MORVANE_MAYA_MCOLORARRAY_H_
#define MORVANE_MAYA_MCOLORARRAY_H_

#include <maya/MArrayOf.h>
#include <maya/MColor.h>

class MColorArray : public MArrayOf<MColor> {
 public:
  using MArrayOf<MColor>::MArrayOf;
  using MArrayOf<MColor>::append;
  bool append(float r, float g, float b, float a = 1.0f) { return append(MColor(r, g, b, a)); }
};

#endif  // MORVANE_MAYA_MCOLORARRAY_H_
