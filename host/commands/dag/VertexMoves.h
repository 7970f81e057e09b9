#ifndef MORVANE_HOST_COMMANDS_DAG_VERTEXMOVES_H_
#define MORVANE_HOST_COMMANDS_DAG_VERTEXMOVES_H_

#include <cstddef>
#include <string>
#include <vector>

#include "host/scene/Selection.h"

namespace host::mel {

// Where vertices of a mesh are to be moved.
struct VertexMove {
  std::vector<std::size_t> axes;  // which of x, y and z the numbers are for
  std::vector<double> numbers;    // one for each axis, or one for all
  bool inWorld = false;           // else in the mesh's own space
  bool isRelative = false;
};

// Moves the vertices that the item names, as tweaks of its mesh. Gives what is wrong, else an empty
// text; then nothing has moved.
std::string moveVertices(const SelectionItem& item, const VertexMove& move);

}  // namespace host::mel

#endif  // MORVANE_HOST_COMMANDS_DAG_VERTEXMOVES_H_
