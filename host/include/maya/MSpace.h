#ifndef MORVANE_MAYA_MSPACE_H_
#define MORVANE_MAYA_MSPACE_H_

// Coordinate systems. A shape has no transformation of its own: for it kTransform, kPreTransform
// and kPostTransform are object space. World space needs a function set that is attached to a path.
class MSpace {
 public:
  enum Space {
    kInvalid,
    kTransform,
    kPreTransform,
    kPostTransform,
    kWorld,
    kObject = kPreTransform,
  };
};

#endif  // MORVANE_MAYA_MSPACE_H_
