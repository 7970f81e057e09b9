#include <maya/MItDag.h>

#include "host/api/Handles.h"
#include "host/api/Status.h"
#include "host/scene/Scene.h"

MItDag::MItDag(TraversalType traversal, MFn::Type filter, MStatus* status)
    : root_(host::DagPath()), traversal_(traversal), filter_(filter) {
  host::report(status, reset() == MStatus::kSuccess);
}

MStatus MItDag::reset() {
  pending_.clear();
  pruned_ = false;
  if (!root_.isValid()) return MStatus::kFailure;
  pending_.push_back({root_, 0});
  return MStatus::kSuccess;
}

MStatus MItDag::reset(const MObject& root, TraversalType traversal, MFn::Type filter) {
  MDagPath path;
  const MStatus status = MDagPath::getAPathTo(root, path);
  if (!status.error()) return reset(path, traversal, filter);
  pending_.clear();
  return status;
}

MStatus MItDag::reset(const MDagPath& root, TraversalType traversal, MFn::Type filter) {
  root_ = root;
  traversal_ = traversal;
  filter_ = filter;
  return reset();
}

bool MItDag::isDone(MStatus* status) const {
  host::report(status, true);
  return pending_.empty();
}

// Replaces the current position by those of its children.
void MItDag::enqueueChildren() {
  const Position current = pending_.front();
  pending_.pop_front();
  const host::DagPath* path = host::pathOf(current.path);
  // Nodes below a shape are a world of their own, which the walk does not enter.
  if (!path || pruned_ || (!path->isEmpty() && path->node()->isShape())) return;
  const host::NodePtr node = path->isEmpty() ? host::Scene::current().world() : path->node();
  std::deque<Position> below;
  for (const host::NodePtr& child : node->children())
    below.push_back({MDagPath(path->extendedBy(child)), current.depth + 1});
  const auto place = traversal_ == kBreadthFirst ? pending_.end() : pending_.begin();
  pending_.insert(place, below.begin(), below.end());
}

MStatus MItDag::next() {
  if (pending_.empty()) return MStatus::kFailure;
  do {
    enqueueChildren();
    pruned_ = false;
  } while (!pending_.empty() && filter_ != MFn::kInvalid && !item().hasFn(filter_));
  return MStatus::kSuccess;
}

MStatus MItDag::prune() {
  pruned_ = true;
  return MStatus::kSuccess;
}

MObject MItDag::item(MStatus* status) const {
  host::report(status, !pending_.empty());
  return pending_.empty() ? MObject() : pending_.front().path.node(status);
}

MStatus MItDag::getPath(MDagPath& path) const {
  if (pending_.empty()) return MStatus::kFailure;
  path = pending_.front().path;
  return MStatus::kSuccess;
}

MString MItDag::fullPathName(MStatus* status) const {
  host::report(status, !pending_.empty());
  return pending_.empty() ? MString() : pending_.front().path.fullPathName(status);
}

unsigned int MItDag::depth(MStatus* status) const {
  host::report(status, !pending_.empty());
  return pending_.empty() ? 0 : pending_.front().depth;
}

MObject MItDag::root(MStatus* status) const {
  return root_.node(status);
}
