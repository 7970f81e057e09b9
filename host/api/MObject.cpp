#include <maya/MObject.h>

#include "host/attribute/Object.h"

const MObject MObject::kNullObj;

bool MObject::hasFn(MFn::Type type) const {
  return object_ && object_->hasFn(type);
}

MFn::Type MObject::apiType() const {
  return object_ ? object_->apiType() : MFn::kInvalid;
}

const char* MObject::apiTypeStr() const {
  return host::nameOf(apiType());
}

bool MObject::operator==(const MObject& other) const {
  if (object_ == other.object_) return true;
  return object_ && other.object_ && object_->equals(*other.object_);
}
