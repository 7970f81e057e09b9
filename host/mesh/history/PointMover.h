#ifndef MORVANE_HOST_MESH_HISTORY_POINTMOVER_H_
#define MORVANE_HOST_MESH_HISTORY_POINTMOVER_H_

#include <maya/MMatrix.h>

#include <vector>

#include "host/mesh/history/HistoryNode.h"

namespace host {

// What is wrong with a node that names points by numbers other than Maya's.
inline constexpr char kOtherNumbers[] =
    "it names elements that a node before it made, which have other numbers here";

// Moves the points that a deformer may move, as far as its envelope says.
class PointMover {
 public:
  // `node` and `mesh` outlive it.
  PointMover(const HistoryParameters& node, MeshData& mesh);

  // Moves the point to where the matrix (row vectors) takes it, and turns the locked normals of its
  // corners along.
  void move(int vertex, const MMatrix& matrix);
  void offset(int vertex, const Vec3& offset);

 private:
  bool mayMove(int vertex) const;
  void turnNormals(int vertex, const MMatrix& matrix);
  void indexLockedCorners(const MeshData& mesh);

  double envelope_;
  std::vector<Vec3>& points_;
  std::vector<MeshNormal>& normals_;
  std::vector<bool> affected_;  // empty: all
  // The corners of vertex v that have a locked normal are corners_[firstCorner_[v]...]; both are
  // empty when no normal is locked.
  std::vector<int> firstCorner_;
  std::vector<int> corners_;
};

// A number for each vertex from an array attribute, `otherwise` where nothing is set.
std::vector<double> perVertex(const HistoryParameters& node, const ParameterName& name,
                              int vertices, double otherwise);

}  // namespace host

#endif  // MORVANE_HOST_MESH_HISTORY_POINTMOVER_H_
