#include "goblin/SurfaceSampling.h"

#include <maya/MBoundingBox.h>
#include <maya/MDagPath.h>
#include <maya/MFnDagNode.h>
#include <maya/MFnMesh.h>
#include <maya/MIntArray.h>
#include <maya/MItMeshPolygon.h>
#include <maya/MMatrix.h>
#include <maya/MPoint.h>
#include <maya/MString.h>

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace morvane {

namespace {

MDagPath firstPath(const MSelectionList& list, unsigned index) {
  MObject node;
  list.getDependNode(index, node);
  MDagPath path;
  MFnDagNode(node).getPath(path);
  return path;
}

// A candidate may be named by its transform.
MDagPath shapePath(MDagPath path) {
  MDagPath shape(path);
  return shape.extendToShape() == MStatus::kSuccess ? shape : path;
}

double outside(double value, double low, double high) {
  return std::max({low - value, value - high, 0.0});
}

// A lower bound of the distance to any surface in the box. A candidate whose bound is over the best
// distance so far is skipped without a look at its surface.
double leastDistance(const MPoint& query, const MPoint& low, const MPoint& high) {
  const double distance =
      std::hypot(outside(query.x, low.x, high.x), outside(query.y, low.y, high.y),
                 outside(query.z, low.z, high.z));
  // The box is rounded, so a point on its border might seem to be outside.
  const double reach = std::max({std::fabs(query.x), std::fabs(query.y), std::fabs(query.z),
                                 std::fabs(low.x), std::fabs(low.y), std::fabs(low.z)});
  return distance - 1e-6 * (reach + distance);
}

void sampleVertices(const MDagPath& geometry, MObject& evaluated, MFnMesh& goblin) {
  MItMeshPolygon surface(geometry, evaluated);
  MPoint point;
  for (int v = 0; v < goblin.numVertices(); ++v) {
    MStatus status = goblin.getPoint(v, point, MSpace::kWorld);
    if (!status) std::printf("getPoint error: %d\n", status ? 1 : 0);
    float2 uv = {0.0F, 0.0F};
    status = surface.getUVAtPoint(point, uv, MSpace::kWorld);
    if (!status) {
      std::printf("getUVAtPoint error: %d\n", status ? 1 : 0);
      if (v < goblin.numUVs()) continue;
      uv[0] = uv[1] = 0.0F;
    }
    goblin.setUV(v, uv[0], uv[1]);
  }
}

void assignVertexUVs(MFnMesh& goblin) {
  MIntArray vertices;
  for (int face = 0; face < goblin.numPolygons(); ++face) {
    goblin.getPolygonVertices(face, vertices);
    for (unsigned corner = 0; corner < vertices.length(); ++corner)
      goblin.assignUV(face, static_cast<int>(corner), vertices[corner]);
  }
}

}  // namespace

GeometrySearch::GeometrySearch(const MSelectionList& candidates) {
  for (unsigned i = 0; i < candidates.length(); ++i) {
    const MDagPath shape = shapePath(firstPath(candidates, i));
    MBoundingBox box = MFnDagNode(shape).boundingBox();
    box.transformUsing(shape.inclusiveMatrix());
    candidates_.push_back({shape, box.min(), box.max()});
  }
}

void GeometrySearch::findClosest(const MObject& goblin, unsigned& index, int& polygon) const {
  const MPoint query = MFnDagNode(goblin).boundingBox().center();
  double best = -1.0;  // no distance yet
  for (std::size_t i = 0; i < candidates_.size(); ++i) {
    const Candidate& candidate = candidates_[i];
    if (best != -1.0 && leastDistance(query, candidate.low, candidate.high) >= best) continue;
    MStatus status;
    MFnMesh mesh(candidate.shape, &status);
    if (!status) continue;
    MPoint nearest;
    int nearestPolygon = 0;
    if (!mesh.getClosestPoint(query, nearest, MSpace::kWorld, &nearestPolygon)) continue;
    const double distance = query.distanceTo(nearest);
    if (best != -1.0 && !(distance < best)) continue;
    best = distance;
    index = static_cast<unsigned>(i);
    polygon = nearestPolygon;
  }
}

MStatus findClosestGeometry(const MObject& goblin, const MSelectionList& candidates,
                            unsigned& index, int& polygon) {
  GeometrySearch(candidates).findClosest(goblin, index, polygon);
  return MStatus::kSuccess;
}

MStatus sampleGoblinUVs(const MObject& goblin, const MSelectionList& candidates, unsigned index,
                        int polygon) {
  const MDagPath geometry = firstPath(candidates, index);
  const MDagPath shape = shapePath(geometry);
  MObject allPolygons = MObject::kNullObj;
  MItMeshPolygon polygons(shape, allPolygons);
  int previous = 0;
  polygons.setIndex(polygon, previous);
  int triangles = 0;
  polygons.numTriangles(triangles);
  std::printf("%s   %u   %d   %d\n", geometry.fullPathName().asChar(), index, polygon, triangles);

  MObject evaluated = polygons.currentItem();
  MDagPath goblinPath;
  MFnDagNode(goblin).getPath(goblinPath);
  MFnMesh mesh(goblinPath);
  sampleVertices(shape, evaluated, mesh);
  assignVertexUVs(mesh);
  mesh.updateSurface();
  return MStatus::kSuccess;
}

}  // namespace morvane
