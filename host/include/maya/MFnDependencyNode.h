#ifndef MORVANE_MAYA_MFNDEPENDENCYNODE_H_
#define MORVANE_MAYA_MFNDEPENDENCYNODE_H_

#include <maya/MFnBase.h>
#include <maya/MPlug.h>
#include <maya/MString.h>

#include <memory>

namespace host {
class Node;
}

// Operations on any node. On a deleted node, or attached to none, every call fails.
class MFnDependencyNode : public MFnBase {
 public:
  MFnDependencyNode() = default;
  explicit MFnDependencyNode(const MObject& object, MStatus* status = nullptr);
  MFn::Type type() const override;

  MString typeName(MStatus* status = nullptr) const;                // "lambert"
  MString name(MStatus* status = nullptr) const;                    // without its path
  MString setName(const MString& name, MStatus* status = nullptr);  // gives the name that it got
  bool isDefaultNode(MStatus* status = nullptr) const;
  bool isShared(MStatus* status = nullptr) const;

  bool hasAttribute(const MString& name, MStatus* status = nullptr) const;
  // An attribute or plug by long or short name, "translateX" or "t.tx", "instObjGroups[0]".
  MObject attribute(const MString& name, MStatus* status = nullptr) const;
  MPlug findPlug(const MString& name, MStatus* status = nullptr) const;
  MPlug findPlug(const MString& name, bool wantNetworkedPlug, MStatus* status = nullptr) const;
  MPlug findPlug(const MObject& attribute, bool wantNetworkedPlug, MStatus* status = nullptr) const;

 protected:
  // The attached node; null, with `status` a failure, when there is none or it was deleted.
  std::shared_ptr<host::Node> node(MStatus* status = nullptr) const;
};

#endif  // MORVANE_MAYA_MFNDEPENDENCYNODE_H_
