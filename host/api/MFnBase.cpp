#include <maya/MFnBase.h>

#include "host/api/Status.h"
#include "host/attribute/Object.h"

MFnBase::~MFnBase() = default;

MFn::Type MFnBase::type() const {
  return MFn::kBase;
}

bool MFnBase::hasObj(MFn::Type kind) const {
  for (; kind != MFn::kInvalid; kind = host::baseOf(kind))
    if (kind == type()) return true;
  return false;
}

bool MFnBase::hasObj(const MObject& object) const {
  return object.hasFn(type());
}

MObject MFnBase::object(MStatus* status) const {
  host::report(status, !object_.isNull());
  return object_;
}

MStatus MFnBase::setObject(const MObject& object) {
  const bool fits = hasObj(object);
  object_ = fits ? object : MObject();
  return fits ? MStatus::kSuccess : MStatus::kInvalidParameter;
}
