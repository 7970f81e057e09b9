#ifndef MORVANE_HOST_FILE_REFERENCEEDITS_H_
#define MORVANE_HOST_FILE_REFERENCEEDITS_H_

#include <string>
#include <vector>

#include "host/mel/Command.h"
#include "host/scene/Node.h"

namespace host {

// A change that a scene makes to nodes of a file it refers to, as the attribute "edits" of a
// reference node lists it.
struct ReferenceEdit {
  // As the file numbers them.
  enum Kind { kParent = 0, kAddAttr = 1, kSetAttr = 2, kDisconnectAttr = 3, kConnectAttr = 5 };
  // For kConnectAttr: which end is on a referenced node while a place holder stands for the other;
  // or both, and the place holders follow.
  enum End { kIsBoth = 0, kIsSource = 3, kIsDestination = 4 };

  int kind = 0;
  int end = 0;
  std::string reference;              // the name of the reference node
  std::vector<std::string> operands;  // names, then flags or values as a statement has them
};

// Reads the words of `setAttr ".ed" -type "dataReferenceEdits" ...`. Edits of other kinds are
// skipped. A malformed list gives the edits before the fault.
std::vector<ReferenceEdit> parseReferenceEdits(const mel::Words& words);

struct UnappliedEdit {
  const ReferenceEdit* edit = nullptr;
  std::string reason;
};

// Applies the edits, in order, to the nodes that are there. A connection through a place holder
// becomes one between the two ends; a saved scene still names the place holder
// (SceneInfo::standIns). Gives the edits that were not applied. Removing a connection that is not
// there counts as applied.
std::vector<UnappliedEdit> applyReferenceEdits(const std::vector<ReferenceEdit>& edits,
                                               mel::CommandContext& context);

// The nodes of the scene that look different without the edit. A missing node is replaced by the
// nearest one above it.
std::vector<NodePtr> nodesOf(const ReferenceEdit& edit, const mel::CommandContext& context);

}  // namespace host

#endif  // MORVANE_HOST_FILE_REFERENCEEDITS_H_
