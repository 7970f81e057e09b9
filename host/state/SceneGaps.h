#ifndef MORVANE_HOST_STATE_SCENEGAPS_H_
#define MORVANE_HOST_STATE_SCENEGAPS_H_

#include <cstddef>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "host/scene/Node.h"

namespace host {

// What a node lacks here and would have in Maya, by way of a reference.
struct SceneGap {
  std::string text;  // "needs the referenced file a.ma (aRN), which ...": the node's name precedes
  std::string advice;  // what to do about it
};

// The gaps of the scene that is open.
class SceneGaps {
 public:
  // A node that has a gap already keeps that.
  void add(const std::vector<NodePtr>& nodes, const SceneGap& gap);
  const SceneGap* at(const Node& node) const;  // null when the node has none
  void clear() { bySerial_.clear(); }

 private:
  std::map<std::size_t, std::shared_ptr<const SceneGap>> bySerial_;
};

}  // namespace host

#endif  // MORVANE_HOST_STATE_SCENEGAPS_H_
