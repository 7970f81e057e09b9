#ifndef MORVANE_HOST_SCENE_MESHHISTORY_H_
#define MORVANE_HOST_SCENE_MESHHISTORY_H_

#include <cstddef>
#include <limits>
#include <string>
#include <vector>

namespace host {

// What became of the nodes that make a mesh.
struct MeshHistory {
  // The node that kept the mesh from being made; empty when it was made.
  std::string stopNode;
  std::string stopType;
  std::string stopReason;  // what is wrong with it; empty when its type is not evaluated
  std::string stopAdvice;  // what to do about it

  // Remarks about its nodes, each a sentence that begins with the node's name.
  std::vector<std::string> notes;
  bool hasOlderUvs = false;  // a node that would have changed UVs handed them on as they were
  bool hasUvNumbers = true;  // UVs have the numbers that Maya gives them

  // The first faces, points and edges, up to these counts, have Maya's numbers; `namesUnknown` is
  // set when a node refers to one of the others.
  int knownFaces = std::numeric_limits<int>::max();
  int knownPoints = std::numeric_limits<int>::max();
  int knownEdges = std::numeric_limits<int>::max();
  bool namesUnknown = false;

  // The serials of all nodes that the mesh depends on, in ascending order.
  std::vector<std::size_t> inputs;

  bool isMade() const { return stopNode.empty(); }
};

}  // namespace host

#endif  // MORVANE_HOST_SCENE_MESHHISTORY_H_
