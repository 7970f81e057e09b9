#ifndef MORVANE_HOST_API_MESHSPACE_H_
#define MORVANE_HOST_API_MESHSPACE_H_

#include <maya/MDagPath.h>
#include <maya/MMatrix.h>
#include <maya/MPoint.h>
#include <maya/MSpace.h>
#include <maya/MString.h>

#include <optional>
#include <string>

#include "host/api/Status.h"
#include "host/math/MeshVector.h"

// Between the API classes for meshes.
namespace host {

inline Vec3 toVec3(const MPoint& p) {
  return {p.x, p.y, p.z};
}
inline MPoint toPoint(const Vec3& p) {
  return {p.x, p.y, p.z};
}

// The matrix from a shape's own space to `space`; nothing for world space without a path.
inline std::optional<MMatrix> matrixTo(MSpace::Space space, const MDagPath& path) {
  if (space != MSpace::kWorld) return MMatrix();
  if (!path.isValid()) return std::nullopt;
  return path.inclusiveMatrix();
}

// A set name as the mesh takes it: none, and the empty one, mean the current set.
class SetName {
 public:
  explicit SetName(const MString* name) {
    if (name != nullptr && name->length() > 0) name_ = name->asChar();
  }
  const std::string* get() const { return name_ ? &*name_ : nullptr; }

 private:
  std::optional<std::string> name_;
};

}  // namespace host

#endif  // MORVANE_HOST_API_MESHSPACE_H_
