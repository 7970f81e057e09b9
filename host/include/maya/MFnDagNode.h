#ifndef MORVANE_MAYA_MFNDAGNODE_H_
#define MORVANE_MAYA_MFNDAGNODE_H_

#include <maya/MBoundingBox.h>
#include <maya/MDagPath.h>
#include <maya/MFnDependencyNode.h>
#include <maya/MMatrix.h>

class MDagPathArray;

// Operations on a node of the DAG, attached to the node or to one of its paths.
class MFnDagNode : public MFnDependencyNode {
 public:
  MFnDagNode() = default;
  explicit MFnDagNode(const MObject& object, MStatus* status = nullptr);
  explicit MFnDagNode(const MDagPath& path, MStatus* status = nullptr);
  MFn::Type type() const override;

  MStatus setObject(const MObject& object) override;
  virtual MStatus setObject(const MDagPath& path);

  // Parents count the root of the DAG (MFn::kWorld). Children come in creation order, intermediate
  // objects included.
  unsigned int parentCount(MStatus* status = nullptr) const;
  MObject parent(unsigned int index, MStatus* status = nullptr) const;
  unsigned int childCount(MStatus* status = nullptr) const;
  MObject child(unsigned int index, MStatus* status = nullptr) const;

  // The path that this is attached to.
  MDagPath dagPath(MStatus* status = nullptr) const;
  // The attached path, else the node's first; all of them in instance order.
  MStatus getPath(MDagPath& path) const;
  MStatus getAllPaths(MDagPathArray& paths) const;
  MString fullPathName(MStatus* status = nullptr) const;
  MString partialPathName(MStatus* status = nullptr) const;
  bool isInstanced(bool indirect = true, MStatus* status = nullptr) const;
  bool isIntermediateObject(MStatus* status = nullptr) const;

  // A shape's box in its own space; a transform's, around the shapes below it, in its parent's
  // space.
  MBoundingBox boundingBox(MStatus* status = nullptr) const;
  // From the node's space to its parent's; the identity for what is not a transform.
  MMatrix transformationMatrix(MStatus* status = nullptr) const;

 protected:
  MDagPath path_;  // invalid unless attached to a path
};

#endif  // MORVANE_MAYA_MFNDAGNODE_H_
