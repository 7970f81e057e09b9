// The part of MFnMesh that deals with UVs, colours and shading.

#include <maya/MFnMesh.h>

#include "host/api/MeshSpace.h"
#include "host/mesh/MeshData.h"
#include "host/scene/Node.h"
#include "host/scene/Shading.h"

using host::MeshData;
using host::MeshUvSet;
using host::report;

namespace {

// Setting a UV far past the end makes no list longer than this.
constexpr int kMostUvs = 100'000'000;

// The named or current set; the current one is made, as "map1", when the mesh has none at all.
MeshUvSet* uvSetForWriting(MeshData& mesh, const MString* name) {
  const host::SetName wanted(name);
  MeshUvSet* found = mesh.findUvSet(wanted.get());
  if (found != nullptr || wanted.get() != nullptr) return found;
  found = mesh.uvSet(0);
  found->name = "map1";
  mesh.setCurrentUvSetName("map1");
  return found;
}

const MeshUvSet* uvSetForReading(const MeshData& mesh, const MString* name) {
  return mesh.findUvSet(host::SetName(name).get());
}

bool isUv(const MeshUvSet& set, int id) {
  return id >= 0 && static_cast<std::size_t>(id) < set.uvs.size();
}

// Adds up colours in double precision, so that the mean of equal colours is that colour.
class ColourMean {
 public:
  void add(const host::MeshColour& c) {
    const float parts[4] = {c.r, c.g, c.b, c.a};
    for (int i = 0; i < 4; ++i) sums_[i] += parts[i];
    ++count_;
  }
  bool isEmpty() const { return count_ == 0; }
  MColor get() const { return {part(0), part(1), part(2), part(3)}; }

 private:
  float part(int i) const { return static_cast<float>(sums_[i] / count_); }

  double sums_[4] = {};
  int count_ = 0;
};

MObject faceComponent(const host::IndexSet& faces) {
  return MObject(std::make_shared<host::Component>(host::Component::Kind::kFace, faces));
}

}  // namespace

int MFnMesh::numUVs(MStatus* status) const {
  const MeshData* mesh = data(status);
  if (mesh == nullptr) return 0;
  const MeshUvSet* set = mesh->findUvSet();
  return set == nullptr ? 0 : static_cast<int>(set->uvs.size());
}

int MFnMesh::numUVs(const MString& uvSet, MStatus* status) const {
  const MeshData* mesh = data(status);
  if (mesh == nullptr) return 0;
  const MeshUvSet* set = uvSetForReading(*mesh, &uvSet);
  report(status, set == nullptr ? MStatus::kInvalidParameter : MStatus::kSuccess);
  return set == nullptr ? 0 : static_cast<int>(set->uvs.size());
}

MStatus MFnMesh::getUV(int uvId, float& u, float& v, const MString* uvSet) const {
  const MeshData* mesh = data();
  if (mesh == nullptr) return MStatus::kFailure;
  const MeshUvSet* set = uvSetForReading(*mesh, uvSet);
  if (set == nullptr || !isUv(*set, uvId)) return MStatus::kInvalidParameter;
  u = set->uvs[static_cast<std::size_t>(uvId)].u;
  v = set->uvs[static_cast<std::size_t>(uvId)].v;
  return MStatus::kSuccess;
}

MStatus MFnMesh::setUV(int uvId, float u, float v, const MString* uvSet) {
  MeshData* mesh = data();
  if (mesh == nullptr) return MStatus::kFailure;
  MeshUvSet* set = uvSetForWriting(*mesh, uvSet);
  if (set == nullptr || uvId < 0 || uvId >= kMostUvs) return MStatus::kInvalidParameter;
  const std::size_t id = static_cast<std::size_t>(uvId);
  if (id >= set->uvs.size()) set->uvs.resize(id + 1);
  set->uvs[id] = {u, v};
  return MStatus::kSuccess;
}

MStatus MFnMesh::setUVs(const MFloatArray& uArray, const MFloatArray& vArray,
                        const MString* uvSet) {
  MeshData* mesh = data();
  if (mesh == nullptr) return MStatus::kFailure;
  MeshUvSet* set = uvSetForWriting(*mesh, uvSet);
  if (set == nullptr || uArray.length() != vArray.length() || uArray.length() < set->uvs.size())
    return MStatus::kInvalidParameter;
  set->uvs.resize(uArray.length());
  for (unsigned i = 0; i < uArray.length(); ++i) set->uvs[i] = {uArray[i], vArray[i]};
  return MStatus::kSuccess;
}

MStatus MFnMesh::assignUV(int polygon, int corner, int uvId, const MString* uvSet) {
  MeshData* mesh = data();
  if (mesh == nullptr) return MStatus::kFailure;
  MeshUvSet* set = uvSetForWriting(*mesh, uvSet);
  if (set == nullptr || !isUv(*set, uvId) || polygon < 0 || polygon >= mesh->faceCount() ||
      corner < 0 || corner >= mesh->cornerCount(polygon)) {
    return MStatus::kInvalidParameter;
  }
  set->ids.resize(mesh->cornerVertices().size(), -1);
  set->ids[static_cast<std::size_t>(mesh->faceStart(polygon) + corner)] = uvId;
  return MStatus::kSuccess;
}

MStatus MFnMesh::assignUVs(const MIntArray& uvCounts, const MIntArray& uvIds,
                           const MString* uvSet) {
  MeshData* mesh = data();
  if (mesh == nullptr) return MStatus::kFailure;
  MeshUvSet* set = uvSetForWriting(*mesh, uvSet);
  const unsigned faces = static_cast<unsigned>(mesh->faceCount());
  if (set == nullptr || uvCounts.length() != faces) return MStatus::kInvalidParameter;
  std::vector<int> ids(mesh->cornerVertices().size(), -1);
  unsigned next = 0;
  for (unsigned face = 0; face < faces; ++face) {
    const int count = uvCounts[face];
    if (count == 0) continue;
    if (count != mesh->cornerCount(static_cast<int>(face))) return MStatus::kInvalidParameter;
    if (static_cast<unsigned>(count) > uvIds.length() - next) return MStatus::kInvalidParameter;
    for (int i = 0; i < count; ++i, ++next) {
      if (!isUv(*set, uvIds[next])) return MStatus::kInvalidParameter;
      ids[static_cast<std::size_t>(mesh->faceStart(static_cast<int>(face)) + i)] = uvIds[next];
    }
  }
  if (next != uvIds.length()) return MStatus::kInvalidParameter;
  set->ids = std::move(ids);
  return MStatus::kSuccess;
}

MStatus MFnMesh::getVertexColors(MColorArray& colors, const MString* colorSet,
                                 const MColor* defaultUnsetColor) const {
  const MeshData* mesh = data();
  if (mesh == nullptr) return MStatus::kFailure;
  const host::MeshColourSet* set = mesh->findColourSet(host::SetName(colorSet).get());
  colors.clear();
  if (set == nullptr) {
    return host::SetName(colorSet).get() == nullptr ? MStatus::kSuccess
                                                    : MStatus::kInvalidParameter;
  }
  std::vector<ColourMean> means(static_cast<std::size_t>(mesh->pointCount()));
  const std::vector<int>& vertices = mesh->cornerVertices();
  for (std::size_t corner = 0; corner < vertices.size(); ++corner) {
    const int id = MeshData::colourAt(*set, static_cast<int>(corner));
    if (id != -1)
      means[static_cast<std::size_t>(vertices[corner])].add(
          set->colours[static_cast<std::size_t>(id)]);
  }
  const MColor unset =
      defaultUnsetColor == nullptr ? MColor(-1.0f, -1.0f, -1.0f, -1.0f) : *defaultUnsetColor;
  for (const ColourMean& mean : means) colors.append(mean.isEmpty() ? unset : mean.get());
  return MStatus::kSuccess;
}

MStatus MFnMesh::getConnectedSetsAndMembers(unsigned int instanceNumber, MObjectArray& sets,
                                            MObjectArray& components,
                                            bool renderableSetsOnly) const {
  const std::shared_ptr<host::Node> shape = node();
  if (!shape || !shape->mesh) return MStatus::kFailure;
  sets.clear();
  components.clear();
  for (const host::ShadingAssignment& assignment :
       host::assignmentsOf(shape, instanceNumber, renderableSetsOnly)) {
    sets.append(MObject(assignment.set));
    components.append(assignment.whole
                          ? MObject()
                          : faceComponent(assignment.faces.below(shape->mesh->faceCount())));
  }
  return MStatus::kSuccess;
}

MStatus MFnMesh::getConnectedShaders(unsigned int instanceNumber, MObjectArray& shaders,
                                     MIntArray& faceIndices) const {
  const std::shared_ptr<host::Node> shape = node();
  if (!shape || !shape->mesh) return MStatus::kFailure;
  const int faces = shape->mesh->faceCount();
  shaders.clear();
  faceIndices = MIntArray(static_cast<unsigned>(faces), -1);
  for (const host::ShadingAssignment& assignment :
       host::assignmentsOf(shape, instanceNumber, true)) {
    const int position = static_cast<int>(shaders.length());
    shaders.append(MObject(assignment.set));
    if (assignment.whole) faceIndices = MIntArray(static_cast<unsigned>(faces), position);
    for (const int face : assignment.faces.toIndices(faces))
      faceIndices[static_cast<unsigned>(face)] = position;
  }
  return MStatus::kSuccess;
}
