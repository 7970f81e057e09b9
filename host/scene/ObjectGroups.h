#ifndef MORVANE_HOST_SCENE_OBJECTGROUPS_H_
#define MORVANE_HOST_SCENE_OBJECTGROUPS_H_

#include <string>

#include "host/scene/Selection.h"

namespace host {

// How sets hold a shape: an instance as a whole (instObjGroups[instance]) or a group of its faces
// (instObjGroups[instance].objectGroups[group]).
struct ObjectGroup {
  int instance = -1;
  int group = -1;  // -1: the whole

  static ObjectGroup ofPath(const std::string& plugPath);
  bool isWhole() const { return group < 0; }
  std::string path() const;
};

// The plug by which an item as a whole joins a set.
Plug memberPlug(const SelectionItem& item);

// The components that a group lists: those stored with it, else those of the groupParts node that
// shares its groupId, which is how a mesh with construction history has them. Null when there are
// none.
ComponentPtr componentsOf(const NodePtr& shape, const ObjectGroup& group);
IndexSet facesOf(const NodePtr& shape, const ObjectGroup& group);

void setFaces(const NodePtr& shape, const ObjectGroup& group, const IndexSet& faces);

// Makes a group of faces for a set, with its groupId node, and gives the plug that joins the set.
Plug makeGroup(const SelectionItem& item, const IndexSet& faces, const NodePtr& set);

// Forgets a group that has left its set, with its groupId node when nothing else uses that.
void removeGroup(const NodePtr& shape, const ObjectGroup& group, const NodePtr& set);

}  // namespace host

#endif  // MORVANE_HOST_SCENE_OBJECTGROUPS_H_
