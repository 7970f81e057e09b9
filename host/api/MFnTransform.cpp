#include <maya/MFnTransform.h>

#include "host/api/Handles.h"
#include "host/api/Status.h"
#include "host/scene/Scene.h"

MFnTransform::MFnTransform(const MObject& object, MStatus* status) {
  const MStatus attached = MFnDagNode::setObject(object);
  if (status) *status = attached;
}

MFnTransform::MFnTransform(const MDagPath& path, MStatus* status) {
  const MStatus attached = MFnDagNode::setObject(path);
  if (status) *status = attached;
}

MFn::Type MFnTransform::type() const {
  return MFn::kTransform;
}

MObject MFnTransform::create(const MObject& parent, MStatus* status) {
  const host::NodePtr above = host::nodeOf(parent);
  host::NodePtr made;
  if (above || parent.isNull())
    made = host::Scene::current().createNode(*host::NodeType::find("transform"), {}, above);
  host::report(status, made != nullptr);
  if (made) setObject(MObject(made));
  return MObject(made);
}
