#ifndef MORVANE_MAYA_MDAGPATH_H_
#define MORVANE_MAYA_MDAGPATH_H_

#include <maya/MMatrix.h>
#include <maya/MObject.h>
#include <maya/MStatus.h>
#include <maya/MString.h>

#include <memory>

namespace host {
class DagPath;
}
class MDagPathArray;

// One way from the root of the DAG down to a node. An instanced node has several.
class MDagPath {
 public:
  MDagPath() = default;

  // The first of a node's paths, or all of them in instance order.
  static MStatus getAPathTo(const MObject& node, MDagPath& path);
  static MStatus getAllPathsTo(const MObject& node, MDagPathArray& paths);

  bool isValid(MStatus* status = nullptr) const;
  MString fullPathName(MStatus* status = nullptr) const;  // "|group1|pCube1"
  MString partialPathName(
      MStatus* status = nullptr) const;  // the shortest end of it that is unique

  MObject node(MStatus* status = nullptr) const;       // the last node
  MObject transform(MStatus* status = nullptr) const;  // the last transform on the path
  unsigned int length(MStatus* status = nullptr) const;
  unsigned int instanceNumber(MStatus* status = nullptr) const;
  bool isInstanced(MStatus* status = nullptr) const;

  // A transform's path with exactly one shape below also has the functions of that shape.
  // Intermediate shapes do not count.
  bool hasFn(MFn::Type type, MStatus* status = nullptr) const;
  MFn::Type apiType(MStatus* status = nullptr) const;

  unsigned int childCount(MStatus* status = nullptr) const;
  MObject child(unsigned int index, MStatus* status = nullptr) const;

  // Steps to the one shape below a transform; a path to a shape stays. With no shape or several it
  // fails and stays.
  MStatus extendToShape();
  MStatus push(const MObject& child);
  MStatus pop(unsigned int count = 1);

  // From the node's space, or its parent's, to the world.
  MMatrix inclusiveMatrix(MStatus* status = nullptr) const;
  MMatrix exclusiveMatrix(MStatus* status = nullptr) const;

  bool operator==(const MDagPath& other) const;
  bool operator!=(const MDagPath& other) const { return !(*this == other); }

  // For the host itself.
  explicit MDagPath(const host::DagPath& path);
  const host::DagPath* hostPath() const { return path_.get(); }  // null when invalid

 private:
  std::shared_ptr<const host::DagPath> path_;
};

#endif  // MORVANE_MAYA_MDAGPATH_H_
