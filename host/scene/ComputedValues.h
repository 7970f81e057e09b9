#ifndef MORVANE_HOST_SCENE_COMPUTEDVALUES_H_
#define MORVANE_HOST_SCENE_COMPUTEDVALUES_H_

#include "host/attribute/AttributeValue.h"
#include "host/scene/Plug.h"

namespace host {

// The value of an attribute that follows from the scene instead of being set: matrices of DAG nodes
// (16 numbers, row by row), the corners, size and centre of their bounding boxes, and points and
// tweaks of meshes. Nothing for others.
AttributeValue computedValue(const Plug& plug);

// Works out what flows along connections (host/evaluation).
class FlowingValues {
 public:
  virtual ~FlowingValues() = default;

  // What arrives at a plug without children through a connection, or what a node of the graph hands
  // out there, in the unit of the plug's attribute. Nothing where neither is so, and where it
  // cannot be worked out.
  virtual AttributeValue valueOf(const Plug& plug) = 0;

  static FlowingValues& current();  // of the host that runs
};

}  // namespace host

#endif  // MORVANE_HOST_SCENE_COMPUTEDVALUES_H_
