#ifndef MORVANE_MAYA_MOBJECT_H_
#define MORVANE_MAYA_MOBJECT_H_

#include <maya/MFn.h>

#include <memory>

namespace host {
class Object;
}

// Names something of the host's: a node, an attribute, a component, a plug-in, or nothing. Copies
// name the same thing. A deleted node stays comparable, but has no function set and fails every
// call.
class MObject {
 public:
  MObject() = default;

  bool isNull() const { return object_ == nullptr; }
  bool hasFn(MFn::Type type) const;
  MFn::Type apiType() const;       // kInvalid for nothing
  const char* apiTypeStr() const;  // the name of the type as in MFn, such as "kMesh"

  // The same node, or components with the same elements.
  bool operator==(const MObject& other) const;
  bool operator!=(const MObject& other) const { return !(*this == other); }
  bool operator!() const { return isNull(); }

  static const MObject kNullObj;

  // For the host itself.
  explicit MObject(std::shared_ptr<host::Object> object) : object_(std::move(object)) {}
  const std::shared_ptr<host::Object>& hostObject() const { return object_; }

 private:
  std::shared_ptr<host::Object> object_;
};

#endif  // MORVANE_MAYA_MOBJECT_H_
