#include <maya/MItDependencyNodes.h>

#include <limits>

#include "host/api/Status.h"
#include "host/scene/Scene.h"

namespace {

constexpr std::size_t kPastTheLast = std::numeric_limits<std::size_t>::max();

}  // namespace

MItDependencyNodes::MItDependencyNodes(MFn::Type filter, MStatus* status) : filter_(filter) {
  host::report(status, true);
  skipOthers();
}

void MItDependencyNodes::skipOthers() {
  const host::Scene& scene = host::Scene::current();
  host::NodePtr node = scene.nodeAtOrAfter(serial_);
  while (node && filter_ != MFn::kInvalid && !node->hasFn(filter_))
    node = scene.nodeAtOrAfter(node->serial() + 1);
  serial_ = node ? node->serial() : kPastTheLast;
}

bool MItDependencyNodes::isDone(MStatus* status) const {
  return item(status).isNull();
}

MStatus MItDependencyNodes::next() {
  if (isDone()) return MStatus::kFailure;
  ++serial_;
  skipOthers();
  return MStatus::kSuccess;
}

MStatus MItDependencyNodes::reset(MFn::Type filter) {
  filter_ = filter;
  serial_ = 0;
  skipOthers();
  return MStatus::kSuccess;
}

// When the current node was deleted meanwhile, the next one takes its place.
MObject MItDependencyNodes::item(MStatus* status) const {
  const host::NodePtr node = host::Scene::current().nodeAtOrAfter(serial_);
  host::report(status, true);
  return MObject(node);
}
