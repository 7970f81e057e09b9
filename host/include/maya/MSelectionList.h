#ifndef MORVANE_MAYA_MSELECTIONLIST_H_
#define MORVANE_MAYA_MSELECTIONLIST_H_

#include <maya/MDagPath.h>
#include <maya/MObject.h>
#include <maya/MStatus.h>
#include <maya/MString.h>
#include <maya/MStringArray.h>

#include <memory>

namespace host {
class Selection;
}

// An ordered list of nodes, paths, and components of paths. A copy is independent.
class MSelectionList {
 public:
  MSelectionList();
  MSelectionList(const MSelectionList& other);
  MSelectionList& operator=(const MSelectionList& other);
  ~MSelectionList();

  // With `mergeWithExisting` an item that is there is not added again. A node of the DAG is added
  // by its first path.
  MStatus add(const MObject& object, bool mergeWithExisting = false);
  MStatus add(const MDagPath& path, const MObject& component = MObject::kNullObj,
              bool mergeWithExisting = false);
  // Names, paths, partial paths, `*` and `?`, and components such as "pCube1.f[0:3]". A failure
  // when nothing matches. `searchChildNamespaces` also finds plain names inside namespaces.
  MStatus add(const MString& pattern, bool searchChildNamespaces = false);

  unsigned int length(MStatus* status = nullptr) const;
  bool isEmpty(MStatus* status = nullptr) const { return length(status) == 0; }
  MStatus clear();
  MStatus remove(unsigned int index);

  // A failure for an index at or past the end; `getDagPath` also for a node outside the DAG.
  MStatus getDependNode(unsigned int index, MObject& node) const;
  MStatus getDagPath(unsigned int index, MDagPath& path) const;
  MStatus getDagPath(unsigned int index, MDagPath& path, MObject& component) const;
  MStatus getSelectionStrings(MStringArray& names) const;

  bool hasItem(const MObject& object, MStatus* status = nullptr) const;
  bool hasItem(const MDagPath& path, const MObject& component = MObject::kNullObj,
               MStatus* status = nullptr) const;

  // For the host itself.
  host::Selection& hostSelection() { return *items_; }
  const host::Selection& hostSelection() const { return *items_; }

 private:
  std::unique_ptr<host::Selection> items_;
};

#endif  // MORVANE_MAYA_MSELECTIONLIST_H_
