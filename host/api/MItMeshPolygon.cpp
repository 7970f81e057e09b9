#include <maya/MItMeshPolygon.h>

#include <algorithm>

#include "host/api/MeshSpace.h"
#include "host/attribute/Component.h"
#include "host/mesh/MeshTransform.h"
#include "host/mesh/MeshUvAtPoint.h"
#include "host/scene/Node.h"

using host::MeshData;
using host::report;

MItMeshPolygon::MItMeshPolygon(const MObject& mesh, MStatus* status) {
  attach(mesh, MObject(), status);
}

MItMeshPolygon::MItMeshPolygon(const MDagPath& mesh, const MObject& component, MStatus* status)
    : path_(mesh) {
  path_.extendToShape();  // where that fails, so does attaching
  attach(path_.isValid() ? path_.node() : MObject(), component, status);
}

MItMeshPolygon::~MItMeshPolygon() = default;

void MItMeshPolygon::attach(const MObject& mesh, const MObject& component, MStatus* status) {
  if (!mesh.hasFn(MFn::kMesh) ||
      (!component.isNull() && !component.hasFn(MFn::kMeshPolygonComponent))) {
    report(status, MStatus::kInvalidParameter);
    return;
  }
  node_ = std::static_pointer_cast<host::Node>(mesh.hostObject());
  restricted_ = !component.isNull();
  if (restricted_ && data() != nullptr) {
    const auto& faces = static_cast<const host::Component&>(*component.hostObject());
    faces_ = faces.elements().toIndices(data()->faceCount());
  }
  report(status, MStatus::kSuccess);
}

const MeshData* MItMeshPolygon::data() const {
  return node_ && node_->isAlive() ? node_->mesh.get() : nullptr;
}

MStatus MItMeshPolygon::reset() {
  position_ = 0;
  return data() == nullptr ? MStatus::kFailure : MStatus::kSuccess;
}

MStatus MItMeshPolygon::next() {
  if (isDone()) return MStatus::kFailure;
  ++position_;
  return MStatus::kSuccess;
}

bool MItMeshPolygon::isDone(MStatus* status) const {
  report(status, data() == nullptr ? MStatus::kFailure : MStatus::kSuccess);
  return position_ >= static_cast<int>(count());
}

unsigned int MItMeshPolygon::count(MStatus* status) const {
  const MeshData* mesh = data();
  report(status, mesh == nullptr ? MStatus::kFailure : MStatus::kSuccess);
  if (mesh == nullptr) return 0;
  if (!restricted_) return static_cast<unsigned>(mesh->faceCount());
  return static_cast<unsigned>(faces_.size());
}

int MItMeshPolygon::current(MStatus* status) const {
  // The mesh may have changed under a restricted walk.
  const int face = isDone()      ? -1
                   : restricted_ ? faces_[static_cast<std::size_t>(position_)]
                                 : position_;
  const bool exists = face != -1 && face < data()->faceCount();
  report(status, exists ? MStatus::kSuccess : MStatus::kFailure);
  return exists ? face : -1;
}

int MItMeshPolygon::meshCorner(int corner, MStatus* status) const {
  const int face = current(status);
  if (face == -1) return -1;
  const bool exists = corner >= 0 && corner < data()->cornerCount(face);
  report(status, exists ? MStatus::kSuccess : MStatus::kInvalidParameter);
  return exists ? data()->faceStart(face) + corner : -1;
}

unsigned int MItMeshPolygon::index(MStatus* status) const {
  const int face = current(status);
  return face == -1 ? 0 : static_cast<unsigned>(face);
}

MStatus MItMeshPolygon::setIndex(int index, int& previous) {
  if (data() == nullptr) return MStatus::kFailure;
  int position = index;
  if (restricted_) {
    const auto found = std::lower_bound(faces_.begin(), faces_.end(), index);
    const bool exists = found != faces_.end() && *found == index;
    position = exists ? static_cast<int>(found - faces_.begin()) : -1;
  }
  if (position < 0 || position >= static_cast<int>(count())) return MStatus::kInvalidParameter;
  previous = current(nullptr);
  position_ = position;
  return MStatus::kSuccess;
}

MObject MItMeshPolygon::currentItem(MStatus* status) const {
  const int face = current(status);
  if (face == -1) return {};
  return MObject(std::make_shared<host::Component>(host::Component::Kind::kFace,
                                                   host::IndexSet({{face, face}})));
}

unsigned int MItMeshPolygon::polygonVertexCount(MStatus* status) const {
  const int face = current(status);
  return face == -1 ? 0 : static_cast<unsigned>(data()->cornerCount(face));
}

unsigned int MItMeshPolygon::vertexIndex(int corner, MStatus* status) const {
  const int at = meshCorner(corner, status);
  return at == -1 ? 0
                  : static_cast<unsigned>(data()->cornerVertices()[static_cast<std::size_t>(at)]);
}

MStatus MItMeshPolygon::getVertices(MIntArray& vertices) const {
  MStatus status;
  const int face = current(&status);
  if (face == -1) return status;
  vertices = MIntArray(data()->cornerVertices().data() + data()->faceStart(face),
                       static_cast<unsigned>(data()->cornerCount(face)));
  return status;
}

MPoint MItMeshPolygon::point(int corner, MSpace::Space space, MStatus* status) const {
  const int at = meshCorner(corner, status);
  if (at == -1) return {};
  const std::optional<MMatrix> matrix = host::matrixTo(space, path_);
  if (!matrix) {
    report(status, MStatus::kInvalidParameter);
    return {};
  }
  const int vertex = data()->cornerVertices()[static_cast<std::size_t>(at)];
  return host::toPoint(
      host::transformed(data()->points()[static_cast<std::size_t>(vertex)], *matrix));
}

unsigned int MItMeshPolygon::normalIndex(int corner, MStatus* status) const {
  const int at = meshCorner(corner, status);
  return at == -1 ? 0 : static_cast<unsigned>(data()->normals().ids[static_cast<std::size_t>(at)]);
}

bool MItMeshPolygon::hasUVs(MStatus* status) const {
  const int face = current(status);
  const host::MeshUvSet* set = face == -1 ? nullptr : data()->findUvSet();
  if (set == nullptr) return false;
  for (int i = 0; i < data()->cornerCount(face); ++i)
    if (MeshData::uvAt(*set, data()->faceStart(face) + i) == -1) return false;
  return true;
}

MStatus MItMeshPolygon::getUVIndex(int corner, int& uv, const MString* uvSet) const {
  MStatus status;
  const int at = meshCorner(corner, &status);
  if (at == -1) return status;
  const host::MeshUvSet* set = data()->findUvSet(host::SetName(uvSet).get());
  if (set == nullptr) return MStatus::kInvalidParameter;
  const int id = MeshData::uvAt(*set, at);
  if (id == -1) return MStatus::kFailure;
  uv = id;
  return MStatus::kSuccess;
}

MStatus MItMeshPolygon::numTriangles(int& count) const {
  MStatus status;
  const int face = current(&status);
  if (face == -1) return status;
  const std::vector<int>& firsts = data()->triangles().firstOfFace;
  const std::size_t at = static_cast<std::size_t>(face);
  count = firsts[at + 1] - firsts[at];
  return MStatus::kSuccess;
}

MStatus MItMeshPolygon::getUVAtPoint(MPoint& point, float2& uv, MSpace::Space space,
                                     const MString* uvSet) const {
  MStatus status;
  const int face = current(&status);
  if (face == -1) return status;
  const std::optional<MMatrix> matrix = host::matrixTo(space, path_);
  const host::MeshUvSet* set = data()->findUvSet(host::SetName(uvSet).get());
  const host::Vec3 at = host::toVec3(point);
  if (!matrix || !host::isFinite(at)) return MStatus::kInvalidParameter;
  if (set == nullptr) return uvSet == nullptr ? MStatus::kFailure : MStatus::kInvalidParameter;
  const std::optional<host::MeshUv> found = host::uvAtPoint(*data(), face, *set, *matrix, at);
  if (!found) return MStatus::kFailure;
  uv[0] = found->u;
  uv[1] = found->v;
  return MStatus::kSuccess;
}
