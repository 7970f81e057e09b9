#ifndef MORVANE_HOST_FILE_BINARYATTRIBUTES_H_
#define MORVANE_HOST_FILE_BINARYATTRIBUTES_H_

#include <string>

#include "host/binary/AttributeChunk.h"
#include "host/binary/ValueChunk.h"
#include "host/mel/Command.h"
#include "host/scene/Node.h"
#include "host/state/SceneUnits.h"

namespace host {

// Sets on a node what a chunk of a binary scene says of one of its attributes: into the mesh,
// under the attribute, or, where the host does not know that, as the words of the statement that
// would say the same. Numbers are taken in `units`. Gives what is wrong, else
// an empty text.
std::string storeValue(const NodePtr& node, BinaryValue value, const SceneUnits& units);

// The words of the addAttr that makes such an attribute.
mel::Words declarationWords(const AttributeDeclaration& declaration);

}  // namespace host

#endif  // MORVANE_HOST_FILE_BINARYATTRIBUTES_H_
