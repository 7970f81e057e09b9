#include <maya/MDagPathArray.h>
#include <maya/MFnDagNode.h>

#include "host/api/Handles.h"
#include "host/api/Status.h"

MFnDagNode::MFnDagNode(const MObject& object, MStatus* status) {
  const MStatus attached = MFnDagNode::setObject(object);
  if (status) *status = attached;
}

MFnDagNode::MFnDagNode(const MDagPath& path, MStatus* status) {
  const MStatus attached = MFnDagNode::setObject(path);
  if (status) *status = attached;
}

MFn::Type MFnDagNode::type() const {
  return MFn::kDagNode;
}

MStatus MFnDagNode::setObject(const MObject& object) {
  path_ = MDagPath();
  return MFnBase::setObject(object);
}

MStatus MFnDagNode::setObject(const MDagPath& path) {
  const MStatus status = setObject(path.node());
  if (!status.error()) path_ = path;
  return status;
}

unsigned int MFnDagNode::parentCount(MStatus* status) const {
  const host::NodePtr attached = node(status);
  return attached ? static_cast<unsigned int>(attached->parents().size()) : 0;
}

MObject MFnDagNode::parent(unsigned int index, MStatus* status) const {
  const host::NodePtr attached = node(status);
  const bool exists = attached && index < attached->parents().size();
  host::report(status, exists);
  return exists ? MObject(attached->parents()[index]->pointer()) : MObject();
}

unsigned int MFnDagNode::childCount(MStatus* status) const {
  const host::NodePtr attached = node(status);
  return attached ? static_cast<unsigned int>(attached->children().size()) : 0;
}

MObject MFnDagNode::child(unsigned int index, MStatus* status) const {
  const host::NodePtr attached = node(status);
  const bool exists = attached && index < attached->children().size();
  host::report(status, exists);
  return exists ? MObject(attached->children()[index]) : MObject();
}

MDagPath MFnDagNode::dagPath(MStatus* status) const {
  host::report(status, path_.isValid());
  return path_;
}

MStatus MFnDagNode::getPath(MDagPath& path) const {
  if (!path_.isValid()) return MDagPath::getAPathTo(object_, path);
  path = path_;
  return MStatus::kSuccess;
}

MStatus MFnDagNode::getAllPaths(MDagPathArray& paths) const {
  return MDagPath::getAllPathsTo(object_, paths);
}

MString MFnDagNode::fullPathName(MStatus* status) const {
  MDagPath path;
  const MStatus found = getPath(path);
  host::report(status, found.statusCode());
  return found.error() ? MString() : path.fullPathName(status);
}

MString MFnDagNode::partialPathName(MStatus* status) const {
  MDagPath path;
  const MStatus found = getPath(path);
  host::report(status, found.statusCode());
  return found.error() ? MString() : path.partialPathName(status);
}

bool MFnDagNode::isInstanced(bool indirect, MStatus* status) const {
  const host::NodePtr attached = node(status);
  if (!attached) return false;
  return indirect ? attached->pathCount() > 1 : attached->parents().size() > 1;
}

bool MFnDagNode::isIntermediateObject(MStatus* status) const {
  const host::NodePtr attached = node(status);
  return attached && attached->isIntermediate();
}

MBoundingBox MFnDagNode::boundingBox(MStatus* status) const {
  const host::NodePtr attached = node(status);
  return attached ? host::boundingBox(attached) : MBoundingBox();
}

MMatrix MFnDagNode::transformationMatrix(MStatus* status) const {
  const host::NodePtr attached = node(status);
  return attached ? host::localMatrix(attached) : MMatrix();
}
