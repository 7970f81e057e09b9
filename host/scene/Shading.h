#ifndef MORVANE_HOST_SCENE_SHADING_H_
#define MORVANE_HOST_SCENE_SHADING_H_

#include <vector>

#include "host/attribute/Component.h"
#include "host/scene/Node.h"

namespace host {

// What one set holds of one instance of a shape.
struct ShadingAssignment {
  NodePtr set;
  bool whole = true;  // all faces; `faces` is then empty
  IndexSet faces;     // may name more faces than the mesh has: use toIndices(faceCount)
};

// The sets that an instance of a shape is connected to, each once, by connection order of the first
// connection; with `renderableOnly` shading groups alone.
std::vector<ShadingAssignment> assignmentsOf(const NodePtr& shape, unsigned instance,
                                             bool renderableOnly);

// The node at the other end of a shading group's surfaceShader; null when there is none.
NodePtr surfaceShaderOf(const NodePtr& shadingGroup);

}  // namespace host

#endif  // MORVANE_HOST_SCENE_SHADING_H_
