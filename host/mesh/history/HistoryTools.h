#ifndef MORVANE_HOST_MESH_HISTORY_HISTORYTOOLS_H_
#define MORVANE_HOST_MESH_HISTORY_HISTORYTOOLS_H_

#include <maya/MMatrix.h>

#include <string>
#include <vector>

#include "host/mesh/MeshData.h"

namespace host {

// Sixteen finite numbers, row by row; gives what is wrong with others.
std::string readMatrix(const std::vector<double>& numbers, MMatrix& matrix);

// Moves the points by the matrix (row vectors), and locked normals with them.
void transformMesh(MeshData& mesh, const MMatrix& matrix);

bool isLocked(const MeshNormal& normal);

// Gives what is wrong with a matrix that has no inverse, and leaves that alone.
std::string invert(MMatrix& matrix);

}  // namespace host

#endif  // MORVANE_HOST_MESH_HISTORY_HISTORYTOOLS_H_
