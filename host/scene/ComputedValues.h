#ifndef MORVANE_HOST_SCENE_COMPUTEDVALUES_H_
#define MORVANE_HOST_SCENE_COMPUTEDVALUES_H_

#include "host/scene/AttributeValue.h"
#include "host/scene/Plug.h"

namespace host {

// The value of an attribute that follows from the scene instead of being set: matrices of DAG nodes
// (16 numbers, row by row), the corners, size and centre of their bounding boxes, and points and
// tweaks of meshes. Nothing for others.
AttributeValue computedValue(const Plug& plug);

}  // namespace host

#endif  // MORVANE_HOST_SCENE_COMPUTEDVALUES_H_
