#ifndef MORVANE_HOST_API_HANDLES_H_
#define MORVANE_HOST_API_HANDLES_H_

#include <maya/MDagPath.h>
#include <maya/MObject.h>

#include "host/scene/Dag.h"

namespace host {

// The living node that an API handle names; null for anything else.
inline NodePtr nodeOf(const MObject& object) {
  NodePtr node = std::dynamic_pointer_cast<Node>(object.hostObject());
  return node && node->isAlive() ? node : nullptr;
}

// The path of an API handle while it exists in the scene; null otherwise.
inline const DagPath* pathOf(const MDagPath& path) {
  const DagPath* hostPath = path.hostPath();
  return hostPath && hostPath->isAlive() ? hostPath : nullptr;
}

}  // namespace host

#endif  // MORVANE_HOST_API_HANDLES_H_
