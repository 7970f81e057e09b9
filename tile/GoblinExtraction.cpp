#include "tile/GoblinExtraction.h"

#include <maya/MFloatPointArray.h>
#include <maya/MFnDagNode.h>
#include <maya/MFnTransform.h>
#include <maya/MMatrix.h>

#include "geometry/TileMatrix.h"
#include "tile/MeshTables.h"

namespace morvane {
namespace {

Matrix44 toMatrix44(const MMatrix& matrix) {
  Matrix44 result;
  for (int row = 0; row < 4; ++row)
    for (int column = 0; column < 4; ++column)
      result(row, column) = static_cast<float>(matrix(row, column));
  return result;
}

// A path stands for a mesh only when that is its one shape.
MObject meshDirectlyBelow(MDagPath tile) {
  MFnDagNode transform(tile);
  for (unsigned int i = 0; i < transform.childCount(); ++i) {
    MObject child = transform.child(i);
    if (isShownMesh(child)) return child;
  }
  return MObject::kNullObj;
}

}  // namespace

bool isShownMesh(MObject node) {
  return node.hasFn(MFn::kMesh) && !MFnDagNode(node).isIntermediateObject();
}

MeshWalk::MeshWalk(MDagPath tile) : walk_(MItDag::kDepthFirst, MFn::kMesh) {
  walk_.reset(tile, MItDag::kDepthFirst, MFn::kMesh);
  skipToMesh();
}

MObject MeshWalk::mesh() const {
  return path().node();
}

MDagPath MeshWalk::path() const {
  MDagPath path;
  walk_.getPath(path);
  return path;
}

void MeshWalk::next() {
  walk_.next();
  skipToMesh();
}

// Hosts differ: a walk may start at its root even when the filter does not admit it.
void MeshWalk::skipToMesh() {
  while (!walk_.isDone() && !isShownMesh(mesh())) walk_.next();
}

bool getTileMatrix(MDagPath tile, MObject firstMesh, Matrix44& matrix) {
  MStatus attached;
  MFnMesh mesh(tile, &attached);
  if (attached == MStatus::kSuccess) return tileNormalisationMatrix(mesh, matrix);
  MObject ownMesh = meshDirectlyBelow(tile);
  MFnMesh otherMesh(ownMesh.isNull() ? firstMesh : ownMesh);
  return tileNormalisationMatrix(otherMesh, matrix);
}

bool tileNormalisationMatrix(MFnMesh& mesh, Matrix44& matrix) {
  MFloatPointArray points;
  mesh.getPoints(points, MSpace::kObject);
  std::vector<Float3> positions;
  positions.reserve(points.length());
  for (unsigned int i = 0; i < points.length(); ++i)
    positions.push_back({points[i].x, points[i].y, points[i].z});
  const TileBounds bounds = tileBounds(positions);
  if (!hasTileExtent(bounds)) return false;
  matrix = tileNormalisationMatrix(bounds);
  return true;
}

bool extractGoblin(MObject goblin, TileMessages& messages, WeldedMesh& welded) {
  const std::unique_ptr<TileMesh> mesh = buildTileMesh(getMeshTables(goblin, messages));
  if (!mesh) return false;
  welded = weldTileMesh(*mesh);
  return !welded.triangles.empty();
}

bool getGoblinMatrix(MObject goblin, Matrix44& matrix, MObject& parent) {
  matrix.setIdentity();
  const MFnDagNode dagNode(goblin);
  if (dagNode.parentCount() != 1) return true;
  parent = dagNode.parent(0);
  if (parent.apiType() != MFn::kTransform) return false;
  matrix = toMatrix44(MFnTransform(parent).transformationMatrix());
  return true;
}

}  // namespace morvane
