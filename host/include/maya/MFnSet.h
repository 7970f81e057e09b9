#ifndef MORVANE_MAYA_MFNSET_H_
#define MORVANE_MAYA_MFNSET_H_

#include <maya/MFnDependencyNode.h>
#include <maya/MSelectionList.h>

// Operations on a set, shading groups included.
class MFnSet : public MFnDependencyNode {
 public:
  MFnSet() = default;
  explicit MFnSet(const MObject& object, MStatus* status = nullptr);
  MFn::Type type() const override;

  // The members in the order they joined. Flattening puts a member set's members in its place.
  MStatus getMembers(MSelectionList& members, bool flatten) const;
  bool isMember(const MObject& object, MStatus* status = nullptr) const;
};

#endif  // MORVANE_MAYA_MFNSET_H_
