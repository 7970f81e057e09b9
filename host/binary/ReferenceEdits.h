#ifndef MORVANE_HOST_BINARY_REFERENCEEDITS_H_
#define MORVANE_HOST_BINARY_REFERENCEEDITS_H_

#include "host/attribute/AttributeValue.h"
#include "host/binary/ByteCursor.h"

namespace host {

// How many texts follow the numbers of an edit, in files of both forms; 0 for a kind that is not
// known. Those of a connection (kind 5) depend on which of its ends are referenced nodes'.
int editOperandCount(int kind, int ends);

inline constexpr char kReferenceEditsType[] = "dataReferenceEdits";  // of the attribute, as written

// Reads what a reference node's REFE chunk holds behind the attribute's name and flags, as the
// words of the statement that says the same: the node's name, then for each file its name, how many
// edits there are, and these, each a kind and its operands. False for an edit of a kind that is not
// known, and when the chunk ends too early: then the cursor has failed.
bool readReferenceEdits(ByteCursor& in, KeptWords& kept);

}  // namespace host

#endif  // MORVANE_HOST_BINARY_REFERENCEEDITS_H_
