#include <maya/MFnDependencyNode.h>

#include "host/api/Handles.h"
#include "host/api/Status.h"
#include "host/scene/Scene.h"

MFnDependencyNode::MFnDependencyNode(const MObject& object, MStatus* status) {
  const MStatus attached = MFnDependencyNode::setObject(object);
  if (status) *status = attached;
}

MFn::Type MFnDependencyNode::type() const {
  return MFn::kDependencyNode;
}

std::shared_ptr<host::Node> MFnDependencyNode::node(MStatus* status) const {
  host::NodePtr attached = host::nodeOf(object_);
  host::report(status, attached != nullptr);
  return attached;
}

MString MFnDependencyNode::typeName(MStatus* status) const {
  const host::NodePtr attached = node(status);
  return attached ? MString(attached->type().name().c_str()) : MString();
}

MString MFnDependencyNode::name(MStatus* status) const {
  const host::NodePtr attached = node(status);
  return attached ? MString(attached->name().c_str()) : MString();
}

MString MFnDependencyNode::setName(const MString& name, MStatus* status) {
  const host::NodePtr attached = node(status);
  if (!attached) return MString();
  host::report(status, host::Scene::current().rename(attached, name.asChar()));
  return MString(attached->name().c_str());
}

bool MFnDependencyNode::isDefaultNode(MStatus* status) const {
  const host::NodePtr attached = node(status);
  return attached && attached->isDefault;
}

bool MFnDependencyNode::isShared(MStatus* status) const {
  const host::NodePtr attached = node(status);
  return attached && attached->isShared;
}

bool MFnDependencyNode::hasAttribute(const MString& name, MStatus* status) const {
  const host::NodePtr attached = node(status);
  return attached && attached->findAttribute(name.asChar());
}

MObject MFnDependencyNode::attribute(const MString& name, MStatus* status) const {
  const host::NodePtr attached = node(status);
  if (!attached) return MObject();
  const host::AttributePtr found = attached->findAttribute(name.asChar());
  host::report(status, found ? MStatus::kSuccess : MStatus::kInvalidParameter);
  return MObject(found);
}

MPlug MFnDependencyNode::findPlug(const MString& name, MStatus* status) const {
  const host::NodePtr attached = node(status);
  if (!attached) return MPlug();
  const auto plug = host::Plug::find(attached, name.asChar());
  host::report(status, plug ? MStatus::kSuccess : MStatus::kInvalidParameter);
  return plug ? MPlug(*plug) : MPlug();
}

MPlug MFnDependencyNode::findPlug(const MString& name, bool, MStatus* status) const {
  return findPlug(name, status);
}

MPlug MFnDependencyNode::findPlug(const MObject& attribute, bool, MStatus* status) const {
  const MPlug plug(object_, attribute);
  host::report(status, !plug.isNull());
  return plug;
}
