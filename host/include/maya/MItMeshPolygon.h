#ifndef MORVANE_MAYA_MITMESHPOLYGON_H_
#define MORVANE_MAYA_MITMESHPOLYGON_H_

#include <maya/MDagPath.h>
#include <maya/MIntArray.h>
#include <maya/MObject.h>
#include <maya/MPoint.h>
#include <maya/MSpace.h>
#include <maya/MStatus.h>
#include <maya/MString.h>
#include <maya/MTypes.h>

#include <memory>
#include <vector>

namespace host {
class MeshData;
class Node;
}  // namespace host

// Visits the polygons of a mesh in face order. Corners are counted from 0 within the polygon: those
// of its outer loop first, then those of its holes. Past the last polygon every call fails.
class MItMeshPolygon {
 public:
  explicit MItMeshPolygon(const MObject& mesh, MStatus* status = nullptr);
  // Only the faces of `component`; all of them when it is the null object. World space needs a
  // path.
  MItMeshPolygon(const MDagPath& mesh, const MObject& component = MObject::kNullObj,
                 MStatus* status = nullptr);
  ~MItMeshPolygon();

  MStatus reset();
  MStatus next();
  bool isDone(MStatus* status = nullptr) const;
  unsigned int count(MStatus* status = nullptr) const;

  unsigned int index(MStatus* status = nullptr) const;  // the polygon's number in the mesh
  // Goes to the polygon with this number in the mesh and says where this stood.
  MStatus setIndex(int index, int& previous);
  MObject currentItem(MStatus* status = nullptr) const;  // the polygon as a component
  MObject polygon(MStatus* status = nullptr) const { return currentItem(status); }

  unsigned int polygonVertexCount(MStatus* status = nullptr) const;
  unsigned int vertexIndex(int corner, MStatus* status = nullptr) const;
  MStatus getVertices(MIntArray& vertices) const;
  MPoint point(int corner, MSpace::Space space = MSpace::kObject, MStatus* status = nullptr) const;
  // The position of the corner's normal in `MFnMesh::getNormals`.
  unsigned int normalIndex(int corner, MStatus* status = nullptr) const;

  bool hasUVs(MStatus* status = nullptr) const;
  // A corner without a UV is a failure, and `uv` stays.
  MStatus getUVIndex(int corner, int& uv, const MString* uvSet = nullptr) const;
  MStatus numTriangles(int& count) const;
  // The UV at the point of the polygon that is nearest to `point`. A failure when the polygon has
  // no UVs.
  MStatus getUVAtPoint(MPoint& point, float2& uv, MSpace::Space space = MSpace::kObject,
                       const MString* uvSet = nullptr) const;

 private:
  void attach(const MObject& mesh, const MObject& component, MStatus* status);
  const host::MeshData* data() const;
  // The number of the polygon that this stands on; -1, and a failure, past the last.
  int current(MStatus* status) const;
  // The corner counted over the whole mesh; -1, and a failure, when there is no such corner.
  int meshCorner(int corner, MStatus* status) const;

  std::shared_ptr<host::Node> node_;
  MDagPath path_;
  bool restricted_ = false;
  std::vector<int> faces_;  // ascending; of a restricted walk only
  int position_ = 0;
};

#endif  // MORVANE_MAYA_MITMESHPOLYGON_H_
