#ifndef MORVANE_HOST_BINARY_REFERENCEEDITS_H_
#define MORVANE_HOST_BINARY_REFERENCEEDITS_H_

#include "host/attribute/AttributeValue.h"
#include "host/binary/ByteCursor.h"

namespace host {

// How many texts follow the numbers of an edit, in files of both forms; 0 for an unknown kind. For
// a connection (kind 5) it depends on which of its ends are on referenced nodes.
int editOperandCount(int kind, int ends);

inline constexpr char kReferenceEditsType[] = "dataReferenceEdits";  // of the attribute, as written

// Reads a reference node's REFE chunk and gives the words of the ASCII statement that says the
// same: the node's name, then for each file its name, the number of edits, and the edits, each a
// kind and its operands. The cursor stands behind the attribute's name and flags. False for an edit
// of an unknown kind, and when the chunk ends too early (the cursor has failed then).
bool readReferenceEdits(ByteCursor& in, KeptWords& kept);

}  // namespace host

#endif  // MORVANE_HOST_BINARY_REFERENCEEDITS_H_
