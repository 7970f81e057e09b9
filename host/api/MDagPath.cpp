#include <maya/MDagPath.h>
#include <maya/MDagPathArray.h>

#include "host/api/Handles.h"
#include "host/api/Status.h"
#include "host/scene/Scene.h"

namespace {

// The last node of the path; the world for the empty path; null when the path no longer exists.
host::NodePtr endOf(const MDagPath& path, MStatus* status) {
  const host::DagPath* hostPath = host::pathOf(path);
  host::report(status, hostPath != nullptr);
  if (!hostPath) return nullptr;
  return hostPath->isEmpty() ? host::Scene::current().world() : hostPath->node();
}

// The one shape below a transform. A path to the transform stands for it as well.
host::NodePtr onlyShapeBelow(const host::NodePtr& node) {
  if (!node->isTransform()) return nullptr;
  const std::vector<host::NodePtr> shapes = host::shapesBelow(*node);
  return shapes.size() == 1 ? shapes.front() : nullptr;
}

}  // namespace

MDagPath::MDagPath(const host::DagPath& path)
    : path_(std::make_shared<const host::DagPath>(path)) {}

MStatus MDagPath::getAPathTo(const MObject& node, MDagPath& path) {
  const host::NodePtr hostNode = host::nodeOf(node);
  if (!hostNode || !hostNode->isDag()) return MStatus::kInvalidParameter;
  path = MDagPath(host::firstPath(hostNode));
  return MStatus::kSuccess;
}

MStatus MDagPath::getAllPathsTo(const MObject& node, MDagPathArray& paths) {
  paths.clear();
  const host::NodePtr hostNode = host::nodeOf(node);
  if (!hostNode || !hostNode->isDag()) return MStatus::kInvalidParameter;
  for (const host::DagPath& path : host::allPaths(hostNode)) paths.append(MDagPath(path));
  return MStatus::kSuccess;
}

bool MDagPath::isValid(MStatus* status) const {
  host::report(status, true);
  return host::pathOf(*this) != nullptr;
}

MString MDagPath::fullPathName(MStatus* status) const {
  if (!endOf(*this, status)) return MString();
  return path_->isEmpty() ? MString() : MString(path_->fullName().c_str());
}

MString MDagPath::partialPathName(MStatus* status) const {
  if (!endOf(*this, status) || path_->isEmpty()) return MString();
  return MString(path_->partialName().c_str());
}

MObject MDagPath::node(MStatus* status) const {
  return MObject(endOf(*this, status));
}

MObject MDagPath::transform(MStatus* status) const {
  if (!endOf(*this, status)) return MObject();
  const auto& nodes = path_->nodes();
  for (auto node = nodes.rbegin(); node != nodes.rend(); ++node)
    if ((*node)->isTransform()) return MObject(*node);
  host::report(status, false);
  return MObject();
}

unsigned int MDagPath::length(MStatus* status) const {
  return endOf(*this, status) ? static_cast<unsigned int>(path_->nodes().size()) : 0;
}

unsigned int MDagPath::instanceNumber(MStatus* status) const {
  return endOf(*this, status) ? path_->instanceNumber() : 0;
}

bool MDagPath::isInstanced(MStatus* status) const {
  const host::NodePtr end = endOf(*this, status);
  return end && end->pathCount() > 1;
}

bool MDagPath::hasFn(MFn::Type type, MStatus* status) const {
  const host::NodePtr end = endOf(*this, status);
  if (!end || end->hasFn(type)) return end != nullptr;
  const host::NodePtr shape = onlyShapeBelow(end);
  return shape && shape->hasFn(type);
}

MFn::Type MDagPath::apiType(MStatus* status) const {
  return node(status).apiType();
}

unsigned int MDagPath::childCount(MStatus* status) const {
  const host::NodePtr end = endOf(*this, status);
  return end ? static_cast<unsigned int>(end->children().size()) : 0;
}

MObject MDagPath::child(unsigned int index, MStatus* status) const {
  const host::NodePtr end = endOf(*this, status);
  const bool exists = end && index < end->children().size();
  host::report(status, exists);
  return exists ? MObject(end->children()[index]) : MObject();
}

MStatus MDagPath::extendToShape() {
  const host::NodePtr end = endOf(*this, nullptr);
  if (!end) return MStatus::kFailure;
  if (end->isShape()) return MStatus::kSuccess;
  const host::NodePtr shape = onlyShapeBelow(end);
  return shape ? push(MObject(shape)) : MStatus(MStatus::kFailure);
}

MStatus MDagPath::push(const MObject& child) {
  const host::DagPath* path = host::pathOf(*this);
  const host::NodePtr node = host::nodeOf(child);
  if (!path || !node) return MStatus::kFailure;
  const MDagPath extended(path->extendedBy(node));
  if (!extended.isValid()) return MStatus::kInvalidParameter;
  *this = extended;
  return MStatus::kSuccess;
}

MStatus MDagPath::pop(unsigned int count) {
  const host::DagPath* path = host::pathOf(*this);
  if (!path || count > path->nodes().size()) return MStatus::kFailure;
  std::vector<host::NodePtr> nodes = path->nodes();
  nodes.resize(nodes.size() - count);
  *this = MDagPath(host::DagPath(std::move(nodes)));
  return MStatus::kSuccess;
}

MMatrix MDagPath::inclusiveMatrix(MStatus* status) const {
  return endOf(*this, status) ? path_->inclusiveMatrix() : MMatrix();
}

MMatrix MDagPath::exclusiveMatrix(MStatus* status) const {
  return endOf(*this, status) ? path_->exclusiveMatrix() : MMatrix();
}

bool MDagPath::operator==(const MDagPath& other) const {
  if (!path_ || !other.path_) return path_ == other.path_;
  return *path_ == *other.path_;
}
