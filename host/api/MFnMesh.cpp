#include <maya/MFnMesh.h>

#include "host/api/MeshSpace.h"
#include "host/mesh/MeshBuild.h"
#include "host/mesh/MeshIndex.h"
#include "host/mesh/MeshTransform.h"
#include "host/scene/Node.h"
#include "host/scene/Scene.h"

using host::MeshData;
using host::report;
using host::Vec3;

namespace {

bool isFace(const MeshData& mesh, int face) {
  return face >= 0 && face < mesh.faceCount();
}

// The node that a new mesh goes below; null, with `status` set, when there is none.
host::NodePtr findParent(const MObject& parent, MStatus* status) {
  host::Scene& scene = host::Scene::current();
  if (parent.isNull()) return scene.createNode(*host::NodeType::find("transform"));
  if (parent.hasFn(MFn::kTransform))
    return std::static_pointer_cast<host::Node>(parent.hostObject());
  report(status, MStatus::kInvalidParameter);
  return nullptr;
}

}  // namespace

MFnMesh::MFnMesh(const MObject& object, MStatus* status) {
  const MStatus result = MFnMesh::setObject(object);
  report(status, result.statusCode());
}

MFnMesh::MFnMesh(const MDagPath& path, MStatus* status) {
  const MStatus result = MFnMesh::setObject(path);
  report(status, result.statusCode());
}

MFn::Type MFnMesh::type() const {
  return MFn::kMesh;
}

MStatus MFnMesh::setObject(const MObject& object) {
  return MFnDagNode::setObject(object);
}

MStatus MFnMesh::setObject(const MDagPath& path) {
  MDagPath shape = path;
  shape.extendToShape();  // where that fails, so does attaching
  return MFnDagNode::setObject(shape);
}

MeshData* MFnMesh::data(MStatus* status) const {
  const std::shared_ptr<host::Node> attached = node(status);
  if (!attached) return nullptr;
  report(status, attached->mesh ? MStatus::kSuccess : MStatus::kFailure);
  return attached->mesh.get();
}

template <typename PointArray>
MObject MFnMesh::createFrom(int numVertices, int numPolygons, const PointArray& vertices,
                            const MIntArray& polygonCounts, const MIntArray& polygonConnects,
                            const MObject& parent, MStatus* status) {
  if (numVertices < 0 || static_cast<unsigned>(numVertices) != vertices.length() ||
      numPolygons < 0 || static_cast<unsigned>(numPolygons) != polygonCounts.length()) {
    report(status, MStatus::kInvalidParameter);
    return {};
  }
  host::MeshPolygons polygons;
  for (unsigned i = 0; i < vertices.length(); ++i)
    polygons.points.push_back({vertices[i].x, vertices[i].y, vertices[i].z});
  for (unsigned i = 0; i < polygonCounts.length(); ++i) polygons.counts.push_back(polygonCounts[i]);
  for (unsigned i = 0; i < polygonConnects.length(); ++i)
    polygons.connects.push_back(polygonConnects[i]);
  MeshData mesh;
  if (!host::buildMesh(polygons, mesh).empty()) {
    report(status, MStatus::kInvalidParameter);
    return {};
  }
  mesh.uvSet(0)->name = "map1";
  mesh.setCurrentUvSetName("map1");

  const host::NodePtr below = findParent(parent, status);
  if (!below) return {};
  const host::NodePtr shape =
      host::Scene::current().createNode(*host::NodeType::find("mesh"), {}, below);
  if (!shape) {
    report(status, MStatus::kFailure);
    return {};
  }
  *shape->mesh = std::move(mesh);
  const MStatus attached = setObject(MObject(shape));
  report(status, attached.statusCode());
  return MObject(parent.isNull() ? below : shape);
}

MObject MFnMesh::create(int numVertices, int numPolygons, const MPointArray& vertices,
                        const MIntArray& polygonCounts, const MIntArray& polygonConnects,
                        MObject parent, MStatus* status) {
  return createFrom(numVertices, numPolygons, vertices, polygonCounts, polygonConnects, parent,
                    status);
}

MObject MFnMesh::create(int numVertices, int numPolygons, const MFloatPointArray& vertices,
                        const MIntArray& polygonCounts, const MIntArray& polygonConnects,
                        MObject parent, MStatus* status) {
  return createFrom(numVertices, numPolygons, vertices, polygonCounts, polygonConnects, parent,
                    status);
}

int MFnMesh::numVertices(MStatus* status) const {
  const MeshData* mesh = data(status);
  return mesh == nullptr ? 0 : mesh->pointCount();
}

int MFnMesh::numPolygons(MStatus* status) const {
  const MeshData* mesh = data(status);
  return mesh == nullptr ? 0 : mesh->faceCount();
}

int MFnMesh::numFaceVertices(MStatus* status) const {
  const MeshData* mesh = data(status);
  return mesh == nullptr ? 0 : static_cast<int>(mesh->cornerVertices().size());
}

int MFnMesh::numNormals(MStatus* status) const {
  const MeshData* mesh = data(status);
  return mesh == nullptr ? 0 : static_cast<int>(mesh->normals().list.size());
}

namespace {

template <typename PointArray>
MStatus fillPoints(const MeshData* mesh, const std::optional<MMatrix>& matrix, bool moved,
                   PointArray& points) {
  if (mesh == nullptr) return MStatus::kFailure;
  if (!matrix) return MStatus::kInvalidParameter;
  const std::vector<Vec3>& source = mesh->points();
  points.setLength(static_cast<unsigned>(source.size()));
  for (unsigned i = 0; i < points.length(); ++i)
    points[i] = host::toPoint(moved ? host::transformed(source[i], *matrix) : source[i]);
  return MStatus::kSuccess;
}

}  // namespace

MStatus MFnMesh::getPoints(MPointArray& points, MSpace::Space space) const {
  return fillPoints(data(), host::matrixTo(space, path_), space == MSpace::kWorld, points);
}

MStatus MFnMesh::getPoints(MFloatPointArray& points, MSpace::Space space) const {
  return fillPoints(data(), host::matrixTo(space, path_), space == MSpace::kWorld, points);
}

MStatus MFnMesh::getPoint(int vertex, MPoint& point, MSpace::Space space) const {
  const MeshData* mesh = data();
  if (mesh == nullptr) return MStatus::kFailure;
  const std::optional<MMatrix> matrix = host::matrixTo(space, path_);
  if (!matrix || vertex < 0 || vertex >= mesh->pointCount()) return MStatus::kInvalidParameter;
  const Vec3& source = mesh->points()[static_cast<std::size_t>(vertex)];
  point = host::toPoint(space == MSpace::kWorld ? host::transformed(source, *matrix) : source);
  return MStatus::kSuccess;
}

MStatus MFnMesh::getNormals(MFloatVectorArray& normals, MSpace::Space space) const {
  const MeshData* mesh = data();
  if (mesh == nullptr) return MStatus::kFailure;
  const std::optional<MMatrix> matrix = host::matrixTo(space, path_);
  if (!matrix) return MStatus::kInvalidParameter;
  const std::vector<host::MeshNormal>& source = mesh->normals().list;
  normals.setLength(static_cast<unsigned>(source.size()));
  for (unsigned i = 0; i < normals.length(); ++i) {
    const host::MeshNormal& n = source[i];
    normals[i] = MFloatVector(n.x, n.y, n.z);
    if (space != MSpace::kWorld) continue;
    const Vec3 turned = host::transformedNormal({n.x, n.y, n.z}, *matrix);
    normals[i] = MFloatVector(MVector(turned.x, turned.y, turned.z));
  }
  return MStatus::kSuccess;
}

MStatus MFnMesh::setFaceVertexNormal(MVector& normal, int face, int vertex, MSpace::Space space,
                                     MDGModifier*) {
  MeshData* mesh = data();
  if (mesh == nullptr) return MStatus::kFailure;
  const std::optional<MMatrix> matrix = host::matrixTo(space, path_);
  if (!matrix || !isFace(*mesh, face)) return MStatus::kInvalidParameter;
  // Undoes what happens to a normal on its way to the world: the transposed matrix does that.
  MVector own = normal;
  if (space == MSpace::kWorld) own = (normal * matrix->transpose()).normal();
  const int begin = mesh->faceStart(face);
  for (int corner = begin; corner < begin + mesh->cornerCount(face); ++corner) {
    if (mesh->cornerVertices()[static_cast<std::size_t>(corner)] != vertex) continue;
    mesh->setCornerNormal(
        corner, {static_cast<float>(own.x), static_cast<float>(own.y), static_cast<float>(own.z)});
    return MStatus::kSuccess;
  }
  return MStatus::kInvalidParameter;
}

MStatus MFnMesh::getPolygonVertices(int polygon, MIntArray& vertices) const {
  const MeshData* mesh = data();
  if (mesh == nullptr) return MStatus::kFailure;
  if (!isFace(*mesh, polygon)) return MStatus::kInvalidParameter;
  vertices = MIntArray(mesh->cornerVertices().data() + mesh->faceStart(polygon),
                       static_cast<unsigned>(mesh->cornerCount(polygon)));
  return MStatus::kSuccess;
}

int MFnMesh::polygonVertexCount(int polygon, MStatus* status) const {
  const MeshData* mesh = data(status);
  if (mesh == nullptr) return 0;
  const bool exists = isFace(*mesh, polygon);
  report(status, exists ? MStatus::kSuccess : MStatus::kInvalidParameter);
  return exists ? mesh->cornerCount(polygon) : 0;
}

MStatus MFnMesh::getClosestPoint(const MPoint& toThisPoint, MPoint& closest, MSpace::Space space,
                                 int* closestPolygon) const {
  const MeshData* mesh = data();
  if (mesh == nullptr) return MStatus::kFailure;
  const std::optional<MMatrix> matrix = host::matrixTo(space, path_);
  const Vec3 from = host::toVec3(toThisPoint);
  if (!matrix || !host::isFinite(from)) return MStatus::kInvalidParameter;
  const std::optional<host::SurfacePoint> found = mesh->surfaceIndex(*matrix).closest(from);
  if (!found) return MStatus::kFailure;
  closest = host::toPoint(found->point);
  if (closestPolygon != nullptr) *closestPolygon = found->face;
  return MStatus::kSuccess;
}

MStatus MFnMesh::updateSurface() {
  return data() == nullptr ? MStatus::kFailure : MStatus::kSuccess;
}
