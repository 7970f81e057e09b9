#ifndef MORVANE_BENCH_SCENETEXT_H_
#define MORVANE_BENCH_SCENETEXT_H_

#include <string>

// Meshes as files hold them: grids of side x side quads, `size` units long, over rough ground, with
// texture coordinates.
namespace bench {

struct GridMesh {
  int side = 1;
  double size = 1;

  int vertices() const { return (side + 1) * (side + 1); }
};

// The statements of a transform at a place and its mesh `nameShape`, with the lines as long as in
// files of the host.
std::string sceneText(const GridMesh& mesh, const std::string& name, const std::string& parent,
                      double x, double z);

// The same mesh as an OBJ file.
std::string objText(const GridMesh& mesh);

}  // namespace bench

#endif  // MORVANE_BENCH_SCENETEXT_H_
