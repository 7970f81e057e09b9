#ifndef MORVANE_HOST_SCENE_SCENECHANGES_H_
#define MORVANE_HOST_SCENE_SCENECHANGES_H_

#include <cstddef>
#include <utility>
#include <vector>

#include "host/scene/Node.h"

namespace host {

// Which nodes were given a value, a connection or another place in the DAG since they were last
// taken.
class SceneChanges {
 public:
  void note(const Node& node) {
    if (serials_.empty() || serials_.back() != node.serial()) serials_.push_back(node.serial());
  }
  bool isEmpty() const { return serials_.empty(); }
  std::vector<std::size_t> take() { return std::exchange(serials_, {}); }

 private:
  std::vector<std::size_t> serials_;
};

}  // namespace host

#endif  // MORVANE_HOST_SCENE_SCENECHANGES_H_
