#include <maya/MItSelectionList.h>

#include "host/api/Status.h"
#include "host/scene/Selection.h"

MItSelectionList::MItSelectionList(const MSelectionList& list, MFn::Type filter, MStatus* status)
    : list_(&list), filter_(filter) {
  host::report(status, true);
  skipOthers();
}

void MItSelectionList::skipOthers() {
  if (filter_ == MFn::kInvalid) return;
  MObject node;
  MDagPath path;
  for (; position_ < list_->length(); ++position_) {
    if (!list_->getDependNode(position_, node).error() && node.hasFn(filter_)) return;
    if (!list_->getDagPath(position_, path).error() && path.hasFn(filter_)) return;
  }
}

bool MItSelectionList::isDone(MStatus* status) const {
  host::report(status, true);
  return position_ >= list_->length();
}

MStatus MItSelectionList::next() {
  if (isDone()) return MStatus::kFailure;
  ++position_;
  skipOthers();
  return MStatus::kSuccess;
}

MStatus MItSelectionList::reset() {
  position_ = 0;
  skipOthers();
  return MStatus::kSuccess;
}

MStatus MItSelectionList::getDependNode(MObject& node) const {
  return list_->getDependNode(position_, node);
}

MStatus MItSelectionList::getDagPath(MDagPath& path) const {
  return list_->getDagPath(position_, path);
}

MStatus MItSelectionList::getDagPath(MDagPath& path, MObject& component) const {
  return list_->getDagPath(position_, path, component);
}

bool MItSelectionList::hasComponents(MStatus* status) const {
  MDagPath path;
  MObject component;
  const MStatus found = getDagPath(path, component);
  host::report(status, !found.error());
  return !component.isNull();
}
