#ifndef MORVANE_HOST_COMMANDS_MESHOBJECT_H_
#define MORVANE_HOST_COMMANDS_MESHOBJECT_H_

#include <string>

#include "host/mel/Command.h"
#include "host/mesh/MeshData.h"

namespace host::mel {

// Adds a transform of that name with a mesh below it, shaded like every new object, and selects it.
// The result is the transform's name; a failure names `command`.
CommandResult addMeshObject(const CommandContext& context, const std::string& command,
                            const std::string& name, MeshData mesh);

}  // namespace host::mel

#endif  // MORVANE_HOST_COMMANDS_MESHOBJECT_H_
