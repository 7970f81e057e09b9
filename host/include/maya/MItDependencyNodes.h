#ifndef MORVANE_MAYA_MITDEPENDENCYNODES_H_
#define MORVANE_MAYA_MITDEPENDENCYNODES_H_

#include <maya/MObject.h>
#include <maya/MStatus.h>

#include <cstddef>

// Walks every node of the scene that has a function set, in creation order; kInvalid admits all.
// Nodes created during the walk are met too, deleted ones are not.
class MItDependencyNodes {
 public:
  explicit MItDependencyNodes(MFn::Type filter = MFn::kInvalid, MStatus* status = nullptr);

  bool isDone(MStatus* status = nullptr) const;
  MStatus next();
  MStatus reset(MFn::Type filter = MFn::kInvalid);

  MObject item(MStatus* status = nullptr) const;
  MObject thisNode(MStatus* status = nullptr) const { return item(status); }

 private:
  void skipOthers();

  MFn::Type filter_;
  std::size_t serial_ = 0;  // of the current node, see host::Scene::nodeAtOrAfter
};

#endif  // MORVANE_MAYA_MITDEPENDENCYNODES_H_
