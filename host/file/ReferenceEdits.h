#ifndef MORVANE_HOST_FILE_REFERENCEEDITS_H_
#define MORVANE_HOST_FILE_REFERENCEEDITS_H_

#include <string>
#include <vector>

#include "host/mel/Command.h"
#include "host/scene/Node.h"

namespace host {

// What a scene changes of the nodes of one file that it refers to, as the attribute "edits" of a
// reference node lists it.
struct ReferenceEdit {
  // As the file numbers them.
  enum Kind { kParent = 0, kAddAttr = 1, kSetAttr = 2, kDisconnectAttr = 3, kConnectAttr = 5 };
  // Of kConnectAttr: which end is the referenced node's, the other being a place holder; or both,
  // the place holders following.
  enum End { kIsBoth = 0, kIsSource = 3, kIsDestination = 4 };

  int kind = 0;
  int end = 0;
  std::string reference;              // the name of the reference node
  std::vector<std::string> operands;  // names, then flags or values as a statement has them
};

// Reads the words of `setAttr ".ed" -type "dataReferenceEdits" ...`. Edits of other kinds are
// passed over. Words that are not a list of edits give what stands before them.
std::vector<ReferenceEdit> parseReferenceEdits(const mel::Words& words);

struct UnappliedEdit {
  const ReferenceEdit* edit = nullptr;
  std::string reason;
};

// Applies the edits, in order, to the nodes that are there. A connection by way of a place holder
// becomes one of the two ends, of which a saved scene speaks as before (SceneInfo::standIns). Gives
// those that were not applied; to take away a connection that is not there counts as applied.
std::vector<UnappliedEdit> applyReferenceEdits(const std::vector<ReferenceEdit>& edits,
                                               mel::CommandContext& context);

// The nodes of the scene that look otherwise without the edit. For a node that is not there, the
// nearest one above it stands.
std::vector<NodePtr> nodesOf(const ReferenceEdit& edit, const mel::CommandContext& context);

}  // namespace host

#endif  // MORVANE_HOST_FILE_REFERENCEEDITS_H_
