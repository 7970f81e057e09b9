#ifndef MORVANE_MAYA_MITSELECTIONLIST_H_
#define MORVANE_MAYA_MITSELECTIONLIST_H_

#include <maya/MSelectionList.h>

// Walks a list's items that have a function set, in order; kInvalid admits all. The list must
// outlive the walk and stay as it is.
class MItSelectionList {
 public:
  explicit MItSelectionList(const MSelectionList& list, MFn::Type filter = MFn::kInvalid,
                            MStatus* status = nullptr);

  bool isDone(MStatus* status = nullptr) const;
  MStatus next();
  MStatus reset();

  MStatus getDependNode(MObject& node) const;
  MStatus getDagPath(MDagPath& path) const;
  MStatus getDagPath(MDagPath& path, MObject& component) const;
  bool hasComponents(MStatus* status = nullptr) const;

 private:
  void skipOthers();

  const MSelectionList* list_;
  MFn::Type filter_;
  unsigned int position_ = 0;
};

#endif  // MORVANE_MAYA_MITSELECTIONLIST_H_
