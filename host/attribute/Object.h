#ifndef MORVANE_HOST_ATTRIBUTE_OBJECT_H_
#define MORVANE_HOST_ATTRIBUTE_OBJECT_H_

#include <maya/MFn.h>

#include <memory>

namespace host {

// Base of everything that the API can name: nodes, attributes, components, plug-ins.
class Object : public std::enable_shared_from_this<Object> {
 public:
  virtual ~Object() = default;

  virtual MFn::Type apiType() const = 0;

  // Whether the object is of `kind`, or of a kind below it. By default the ancestors of `apiType()`
  // decide.
  virtual bool hasFn(MFn::Type kind) const;

  // False once the node is deleted. Whoever still holds it may only call this and compare pointers.
  virtual bool isAlive() const { return true; }

  virtual bool equals(const Object& other) const { return this == &other; }

 protected:
  Object() = default;
  Object(const Object&) = delete;
  Object& operator=(const Object&) = delete;
};

using ObjectPtr = std::shared_ptr<Object>;

// The parent of `kind`; MFn::kInvalid for the topmost.
MFn::Type baseOf(MFn::Type kind);

// The name of a kind as in MFn: "kMesh".
const char* nameOf(MFn::Type kind);

}  // namespace host

#endif  // MORVANE_HOST_ATTRIBUTE_OBJECT_H_
