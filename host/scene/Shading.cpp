#include "host/scene/Shading.h"

#include <algorithm>

#include "host/scene/ObjectGroups.h"
#include "host/scene/Sets.h"

namespace host {
namespace {

void merge(std::vector<ShadingAssignment>& assignments, ShadingAssignment more) {
  const auto same = std::find_if(assignments.begin(), assignments.end(),
                                 [&more](const auto& known) { return known.set == more.set; });
  if (same == assignments.end()) {
    assignments.push_back(std::move(more));
  } else if (more.whole) {
    same->whole = true;
    same->faces = IndexSet();
  } else if (!same->whole) {
    same->faces = same->faces.unitedWith(more.faces);
  }
}

}  // namespace

std::vector<ShadingAssignment> assignmentsOf(const NodePtr& shape, unsigned instance,
                                             bool renderableOnly) {
  std::vector<ShadingAssignment> assignments;
  const ObjectGroup whole{static_cast<int>(instance), -1};
  for (const ConnectionPtr& connection : shape->connections.outOfAtOrBelow(whole.path())) {
    const NodePtr& set = connection->destination.node();
    if (connection->destination.path().rfind("dagSetMembers", 0) != 0 || !set->isSet()) continue;
    if (renderableOnly && !isRenderable(set)) continue;
    const ObjectGroup group = ObjectGroup::ofPath(connection->source.path());
    const bool isWhole = group.isWhole();
    merge(assignments, {set, isWhole, isWhole ? IndexSet() : facesOf(shape, group)});
  }
  return assignments;
}

NodePtr surfaceShaderOf(const NodePtr& shadingGroup) {
  const ConnectionPtr connection = shadingGroup->connections.into("surfaceShader");
  return connection ? connection->source.node() : nullptr;
}

}  // namespace host
