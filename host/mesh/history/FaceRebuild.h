#ifndef MORVANE_HOST_MESH_HISTORY_FACEREBUILD_H_
#define MORVANE_HOST_MESH_HISTORY_FACEREBUILD_H_

#include <string>
#include <vector>

#include "host/mesh/MeshData.h"

namespace host {

// A mesh made of the corners of another one.
struct FaceRebuild {
  struct Corner {
    int vertex = 0;  // of the new mesh
    int from = -1;  // the old corner whose UVs, colours and locked normal it takes; -1: it has none
  };
  std::vector<Vec3> points;
  std::vector<int> newVertexOf;  // by old vertex; -1: gone. Edges keep their order and flags by it
  std::vector<int> counts;       // of each face
  std::vector<Corner> corners;   // of all faces in turn

  // All points of the old mesh, no face.
  static FaceRebuild withPointsOf(const MeshData& mesh);
  // Adds a face as it is.
  void addFace(const MeshData& mesh, int face);
};

// Replaces `mesh`, from which the corners come. Edges that remain keep their order, and new ones,
// which are smooth, follow. Gives what is wrong: no face is left, or the mesh has holes in faces.
std::string rebuild(const FaceRebuild& faces, MeshData& mesh);

// Removes points that no face has and UVs that no corner has, and renumbers the rest.
void dropUnusedPoints(FaceRebuild& faces);
void dropUnusedUvs(MeshData& mesh);

}  // namespace host

#endif  // MORVANE_HOST_MESH_HISTORY_FACEREBUILD_H_
