#ifndef MORVANE_MAYA_MFNMESH_H_
#define MORVANE_MAYA_MFNMESH_H_

#include <maya/MColorArray.h>
#include <maya/MFloatArray.h>
#include <maya/MFloatPointArray.h>
#include <maya/MFloatVectorArray.h>
#include <maya/MFnDagNode.h>
#include <maya/MIntArray.h>
#include <maya/MObjectArray.h>
#include <maya/MPointArray.h>
#include <maya/MSpace.h>
#include <maya/MTypes.h>

namespace host {
class MeshData;
}
class MDGModifier;

// Operations on a polygon mesh, attached to a mesh node, to its path, or to the path of a transform
// with exactly one shape below. World space needs a path. Where a UV or colour set can be named,
// none means the current set. Points are those that the mesh shows: tweaks included.
//
// A failed call leaves the mesh as it was. Indices out of range, arrays that do not fit and points
// that are not finite numbers are kInvalidParameter; a mesh that has not what is asked for is
// kFailure.
class MFnMesh : public MFnDagNode {
 public:
  MFnMesh() = default;
  explicit MFnMesh(const MObject& object, MStatus* status = nullptr);
  explicit MFnMesh(const MDagPath& path, MStatus* status = nullptr);
  MFn::Type type() const override;
  MStatus setObject(const MObject& object) override;
  MStatus setObject(const MDagPath& path) override;

  // Makes a mesh of `numPolygons` polygons with `polygonCounts[i]` corners each, whose vertices
  // `polygonConnects` lists in turn, and attaches to it. All edges are smooth. It becomes the child
  // of `parent`; without one, of a new transform, which is then the result. An empty UV set "map1"
  // comes with it. Refused: no polygon, counts that do not match the arrays, fewer than 3 corners,
  // vertices that do not exist.
  MObject create(int numVertices, int numPolygons, const MPointArray& vertices,
                 const MIntArray& polygonCounts, const MIntArray& polygonConnects,
                 MObject parent = MObject::kNullObj, MStatus* status = nullptr);
  MObject create(int numVertices, int numPolygons, const MFloatPointArray& vertices,
                 const MIntArray& polygonCounts, const MIntArray& polygonConnects,
                 MObject parent = MObject::kNullObj, MStatus* status = nullptr);

  int numVertices(MStatus* status = nullptr) const;
  int numPolygons(MStatus* status = nullptr) const;
  int numFaceVertices(MStatus* status = nullptr) const;
  int numNormals(MStatus* status = nullptr) const;
  int numUVs(MStatus* status = nullptr) const;
  int numUVs(const MString& uvSet, MStatus* status = nullptr) const;

  MStatus getPoints(MPointArray& points, MSpace::Space space = MSpace::kObject) const;
  MStatus getPoints(MFloatPointArray& points, MSpace::Space space = MSpace::kObject) const;
  MStatus getPoint(int vertex, MPoint& point, MSpace::Space space = MSpace::kObject) const;

  // The normal list that `MItMeshPolygon::normalIndex` addresses: each distinct normal of a vertex
  // once.
  MStatus getNormals(MFloatVectorArray& normals, MSpace::Space space = MSpace::kObject) const;
  // Locks the normal of one corner: the corner of `face` at `vertex`, a vertex of the mesh.
  MStatus setFaceVertexNormal(MVector& normal, int face, int vertex,
                              MSpace::Space space = MSpace::kObject,
                              MDGModifier* modifier = nullptr);

  MStatus getPolygonVertices(int polygon, MIntArray& vertices) const;
  int polygonVertexCount(int polygon, MStatus* status = nullptr) const;

  MStatus getUV(int uvId, float& u, float& v, const MString* uvSet = nullptr) const;
  // A `uvId` past the last UV lengthens the list, with (0, 0) in between.
  MStatus setUV(int uvId, float u, float v, const MString* uvSet = nullptr);
  // Sets the first UVs; the arrays are of one length, and not shorter than the list.
  MStatus setUVs(const MFloatArray& uArray, const MFloatArray& vArray,
                 const MString* uvSet = nullptr);
  MStatus assignUV(int polygon, int corner, int uvId, const MString* uvSet = nullptr);
  // One count a polygon, either as many ids as it has corners or 0, which takes its UVs away.
  MStatus assignUVs(const MIntArray& uvCounts, const MIntArray& uvIds,
                    const MString* uvSet = nullptr);

  // A colour a vertex: the mean of those its corners have, or `defaultUnsetColor` (all -1 without
  // one) where none has any. Empty, and a success, for a mesh without colours.
  MStatus getVertexColors(MColorArray& colors, const MString* colorSet = nullptr,
                          const MColor* defaultUnsetColor = nullptr) const;

  // The point of the surface that is nearest to `toThisPoint`, both in `space`, and the face it is
  // on; of several equally near, one on the face with the lowest number.
  MStatus getClosestPoint(const MPoint& toThisPoint, MPoint& closest,
                          MSpace::Space space = MSpace::kObject,
                          int* closestPolygon = nullptr) const;

  // The sets that an instance is connected to, each with its faces; a set that holds the whole
  // instance has the null object.
  MStatus getConnectedSetsAndMembers(unsigned int instanceNumber, MObjectArray& sets,
                                     MObjectArray& components, bool renderableSetsOnly) const;
  // The shading groups of an instance, and for each face the position of its own among them, -1 for
  // none.
  MStatus getConnectedShaders(unsigned int instanceNumber, MObjectArray& shaders,
                              MIntArray& faceIndices) const;

  MStatus updateSurface();

 private:
  template <typename PointArray>
  MObject createFrom(int numVertices, int numPolygons, const PointArray& vertices,
                     const MIntArray& polygonCounts, const MIntArray& polygonConnects,
                     const MObject& parent, MStatus* status);
  // The attached mesh; null, with `status` a failure, when there is none.
  host::MeshData* data(MStatus* status = nullptr) const;
};

#endif  // MORVANE_MAYA_MFNMESH_H_
