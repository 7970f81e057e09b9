#ifndef MORVANE_MAYA_MFNTRANSFORM_H_
#define MORVANE_MAYA_MFNTRANSFORM_H_

#include <maya/MFnDagNode.h>
#include <maya/MSpace.h>
#include <maya/MVector.h>

// Operations on a transform. Its matrix is MFnDagNode's `transformationMatrix`.
class MFnTransform : public MFnDagNode {
 public:
  MFnTransform() = default;
  explicit MFnTransform(const MObject& object, MStatus* status = nullptr);
  explicit MFnTransform(const MDagPath& path, MStatus* status = nullptr);
  MFn::Type type() const override;

  // Makes a transform with the host's default name below `parent`, or at the top, and attaches to
  // it.
  MObject create(const MObject& parent = MObject::kNullObj, MStatus* status = nullptr);
};

#endif  // MORVANE_MAYA_MFNTRANSFORM_H_
