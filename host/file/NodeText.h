#ifndef MORVANE_HOST_FILE_NODETEXT_H_
#define MORVANE_HOST_FILE_NODETEXT_H_

#include <string>
#include <string_view>

#include "host/mesh/MeshData.h"
#include "host/scene/Node.h"
#include "host/state/SceneProject.h"
#include "host/state/SceneUnits.h"

namespace host {

// The name by which a scene file's statements find the node: default nodes begin with a colon.
std::string fileName(const NodePtr& node);

// Appends the statements that make a node (or select a default one) and set what is set on it, its
// numbers in the units. Nothing for a default node that is as every new scene has it.
void appendNode(std::string& out, const NodePtr& node, const SceneUnits& units,
                const SceneProject& project);

// Appends the setAttr statements of a mesh's geometry; a unit has `length` centimetres.
void appendMesh(std::string& out, const MeshData& mesh, double length);

}  // namespace host

#endif  // MORVANE_HOST_FILE_NODETEXT_H_
