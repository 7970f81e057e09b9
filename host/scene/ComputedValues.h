#ifndef MORVANE_HOST_SCENE_COMPUTEDVALUES_H_
#define MORVANE_HOST_SCENE_COMPUTEDVALUES_H_

#include <optional>
#include <string>

#include "host/attribute/AttributeValue.h"
#include "host/scene/Plug.h"

namespace host {

// The value of an attribute that follows from the scene instead of being set: matrices of DAG nodes
// (16 numbers, row by row), the corners, size and centre of their bounding boxes, and points and
// tweaks of meshes. Nothing for others.
AttributeValue computedValue(const Plug& plug);

// What keeps a value from being worked out.
struct EvaluationTrouble {
  NodePtr node;        // which cannot be
  std::string reason;  // in words that follow "but "; empty when the node's type is not evaluated
};

// Works out what flows along connections (host/evaluation).
class FlowingValues {
 public:
  virtual ~FlowingValues() = default;

  // What arrives at a plug without children through a connection, or what a node of the graph hands
  // out there, in the unit of the plug's attribute. Nothing where neither is so, and where it
  // cannot be worked out.
  virtual AttributeValue valueOf(const Plug& plug) = 0;

  // What keeps the value of a plug, or of a child of it, from being worked out.
  virtual std::optional<EvaluationTrouble> troubleOf(const Plug& plug) = 0;

  // For values that were changed behind the scene's back.
  virtual void forget() = 0;
};

}  // namespace host

#endif  // MORVANE_HOST_SCENE_COMPUTEDVALUES_H_
