#ifndef MORVANE_HOST_SCENE_SETS_H_
#define MORVANE_HOST_SCENE_SETS_H_

#include <vector>

#include "host/scene/Selection.h"

namespace host {

// Sets hold nodes, instances of shapes and transforms, and components of mesh instances. Membership
// is nothing but connections and the component lists of object groups, as scene files spell them:
//   shape.instObjGroups[i] -> set.dagSetMembers[n]                          the instance as a whole
//   shape.instObjGroups[i].objectGroups[k] -> set.dagSetMembers[n]          the faces listed in
//                                        shape.instObjGroups[i].objectGroups[k].objectGrpCompList
//   node.message -> set.dnSetMembers[n]                                     what is not a DAG node

// Members in the order in which they joined.
std::vector<SelectionItem> membersOf(const NodePtr& set);
// The same, with member sets replaced by their members.
std::vector<SelectionItem> flattenedMembersOf(const NodePtr& set);

// Whether the item as a whole is a member; for components, whether all of them are.
bool isMember(const NodePtr& set, const SelectionItem& item);

// A member is added once only. `addMember` refuses an item that another set of one of the set's
// partitions holds; `forceMember` first removes it there (only the faces, when the item is faces).
// A transform with shapes joins a shading group by its shapes. False, with the reason in `error`.
bool addMember(const NodePtr& set, const SelectionItem& item, std::string* error = nullptr);
bool forceMember(const NodePtr& set, const SelectionItem& item, std::string* error = nullptr);
bool removeMember(const NodePtr& set, const SelectionItem& item);  // whether anything was removed
void clearMembers(const NodePtr& set);

// Sets that hold the node, one of its instances or some of its components, in connection order.
std::vector<NodePtr> setsHolding(const NodePtr& node);

std::vector<NodePtr> partitionsOf(const NodePtr& set);
void joinPartition(const NodePtr& set, const NodePtr& partition);

// Renderable sets are shading groups whose `renderableOnlySet` is not off.
bool isRenderable(const NodePtr& set);

}  // namespace host

#endif  // MORVANE_HOST_SCENE_SETS_H_
