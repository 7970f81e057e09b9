#ifndef MORVANE_HOST_FILE_SCENEWRITER_H_
#define MORVANE_HOST_FILE_SCENEWRITER_H_

#include <string>
#include <unordered_set>
#include <vector>

#include "host/scene/Node.h"
#include "util/Status.h"

namespace host {

struct HostState;

// Writes the scene as a scene file that this host and the real one read. The target is replaced
// only once every byte is on disk. What is written depends on the scene alone, not on the file's
// name, so that saving, opening and saving again gives the same bytes. Fails as
// morvane::FileReplacer does, and with kBadArgument for the name of a binary scene.
morvane::Status writeScene(HostState& state, const std::string& path);

// As above, only these nodes with all that is below and above them, and what shades them.
morvane::Status writeNodes(HostState& state, const std::string& path,
                           const std::vector<NodePtr>& nodes);

}  // namespace host

#endif  // MORVANE_HOST_FILE_SCENEWRITER_H_
