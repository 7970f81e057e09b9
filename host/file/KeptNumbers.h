#ifndef MORVANE_HOST_FILE_KEPTNUMBERS_H_
#define MORVANE_HOST_FILE_KEPTNUMBERS_H_

#include <string_view>

#include "host/scene/Node.h"
#include "host/state/SceneUnits.h"

namespace host {

// Takes a long `setAttr ".path" NUMBERS`, without flags, for an attribute that the node only keeps,
// such as the weights of a skin. The numbers stay one text, with single blanks between. False, with
// nothing changed, for any other statement, which must run as a command.
bool keepNumbers(const NodePtr& node, std::string_view statement, const SceneUnits& units);

}  // namespace host

#endif  // MORVANE_HOST_FILE_KEPTNUMBERS_H_
