#ifndef MORVANE_HOST_MESH_MESHINDEX_H_
#define MORVANE_HOST_MESH_MESHINDEX_H_

#include <maya/MMatrix.h>

#include <memory>
#include <optional>

#include "host/mesh/MeshData.h"
#include "host/mesh/NearTree.h"

namespace host {

struct SurfacePoint {
  int face = -1;
  int triangle = -1;  // in the mesh's list
  Vec3 point;
  double distance = 0.0;
};

// Finds the point of a mesh's surface that is nearest to a point, both in the space that a matrix
// leads to. Built in time n log n over the triangles. The search tree is in single precision, with
// boxes rounded outward around coordinates that are relative to the mesh's centre and size; what is
// nearest is decided in double precision on the triangles themselves, so that neither distance from
// the origin nor size costs exactness. Triangles with a corner that is not a finite number are left
// out.
class SurfaceIndex {
 public:
  using MakeTree = std::unique_ptr<NearTree> (*)(std::vector<NearBox> boxes);
#ifdef MORVANE_HOST_EMBREE
  static constexpr MakeTree kDefaultTree = makeEmbreeTree;
#else
  static constexpr MakeTree kDefaultTree = makeBoxTree;
#endif
  // Refers to the triangles and corner vertices of `mesh`, which must outlive it unchanged.
  SurfaceIndex(const MeshData& mesh, const MMatrix& matrix, MakeTree makeTree = kDefaultTree);
  ~SurfaceIndex();
  SurfaceIndex(const SurfaceIndex&) = delete;
  SurfaceIndex& operator=(const SurfaceIndex&) = delete;

  // Of points that are equally near (to 1e-12 of the distances and sizes involved), one on the
  // earliest face. Nothing when the mesh has no surface or `from` is not a finite point.
  std::optional<SurfacePoint> closest(const Vec3& from) const;

 private:
  struct Tree;
  std::unique_ptr<Tree> tree_;
};

}  // namespace host

#endif  // MORVANE_HOST_MESH_MESHINDEX_H_
