#ifndef MORVANE_TILE_GOBLINEXTRACTION_H_
#define MORVANE_TILE_GOBLINEXTRACTION_H_

#include <maya/MDagPath.h>
#include <maya/MFnMesh.h>
#include <maya/MItDag.h>
#include <maya/MObject.h>

#include "geometry/TileMesh.h"
#include "tile/TileMessages.h"
#include "util/Matrix44.h"

// What both exporters do with a tile and the goblins below it.
namespace morvane {

// A mesh that is shown. The meshes from which history makes it stand beside it as intermediate
// ones.
bool isShownMesh(MObject node);

// Visits every shown mesh below a tile, depth first: the tile's own mesh, then the goblins.
class MeshWalk {
 public:
  explicit MeshWalk(MDagPath tile);

  bool isDone() const { return walk_.isDone(); }
  MObject mesh() const;
  MDagPath path() const;  // of the mesh
  void next();

 private:
  void skipToMesh();

  MItDag walk_;
};

// Computes the matrix from the tile's object space to tile space, from the points of the mesh
// directly below the tile, or of `firstMesh` when there is no mesh there. False when the mesh has
// no extent in x or z.
bool getTileMatrix(MDagPath tile, MObject firstMesh, Matrix44& matrix);
bool tileNormalisationMatrix(MFnMesh& mesh, Matrix44& matrix);

// Reads a goblin's mesh, triangulates and welds it. False when it has no triangle.
bool extractGoblin(MObject goblin, TileMessages& messages, WeldedMesh& welded);

// The local matrix of the goblin's one parent; the identity when it has several parents or none.
// False, with the identity, when that parent is not a transform; `parent` is then set.
bool getGoblinMatrix(MObject goblin, Matrix44& matrix, MObject& parent);

}  // namespace morvane

#endif  // MORVANE_TILE_GOBLINEXTRACTION_H_
