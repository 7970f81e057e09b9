#ifndef MORVANE_MAYA_MFNBASE_H_
#define MORVANE_MAYA_MFNBASE_H_

#include <maya/MObject.h>
#include <maya/MStatus.h>

// Base of the function sets: a set of operations, attached to one object.
class MFnBase {
 public:
  virtual ~MFnBase();
  virtual MFn::Type type() const;

  bool hasObj(MFn::Type kind) const;         // whether this function set serves that kind
  bool hasObj(const MObject& object) const;  // whether it can be attached to that object
  MObject object(MStatus* status = nullptr) const;

  // Attaches. An object without this function set is a failure, after which nothing is attached.
  virtual MStatus setObject(const MObject& object);

 protected:
  MFnBase() = default;

  MObject object_;
};

#endif  // MORVANE_MAYA_MFNBASE_H_
