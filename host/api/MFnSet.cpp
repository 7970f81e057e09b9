#include <maya/MFnSet.h>

#include "host/api/Handles.h"
#include "host/api/Status.h"
#include "host/scene/Sets.h"

MFnSet::MFnSet(const MObject& object, MStatus* status) {
  const MStatus attached = setObject(object);
  if (status) *status = attached;
}

MFn::Type MFnSet::type() const {
  return MFn::kSet;
}

MStatus MFnSet::getMembers(MSelectionList& members, bool flatten) const {
  const host::NodePtr set = node();
  if (!set) return MStatus::kFailure;
  members.clear();
  const auto items = flatten ? host::flattenedMembersOf(set) : host::membersOf(set);
  for (const host::SelectionItem& item : items) members.hostSelection().add(item);
  return MStatus::kSuccess;
}

bool MFnSet::isMember(const MObject& object, MStatus* status) const {
  const host::NodePtr set = node(status);
  const host::NodePtr member = host::nodeOf(object);
  host::report(status, set && member);
  return set && member && host::isMember(set, host::SelectionItem::of(member));
}
