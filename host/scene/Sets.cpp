#include "host/scene/Sets.h"

#include <algorithm>
#include <unordered_set>

#include "host/mesh/MeshData.h"
#include "host/scene/ObjectGroups.h"
#include "host/scene/Scene.h"
#include "host/scene/Shading.h"
#include "host/scene/Values.h"

namespace host {
namespace {

constexpr char kDagMembers[] = "dagSetMembers";
constexpr char kOtherMembers[] = "dnSetMembers";

bool fail(std::string* error, std::string text) {
  if (error) *error = std::move(text);
  return false;
}

// The member that one connection into a set makes; its node is null when it makes none.
SelectionItem memberOf(const Connection& connection) {
  const NodePtr& node = connection.source.node();
  if (!node->isDag()) return {node, DagPath(), nullptr};
  const ObjectGroup group = ObjectGroup::ofPath(connection.source.path());
  const DagPath path = pathOfInstance(node, static_cast<std::size_t>(std::max(group.instance, 0)));
  if (path.isEmpty()) return {};
  if (group.isWhole()) return SelectionItem::of(path);
  return SelectionItem::of(path, componentsOf(node, group));
}

bool isMembership(const Connection& connection) {
  const std::string& path = connection.destination.path();
  return connection.destination.node()->isSet() &&
         (path.rfind(kDagMembers, 0) == 0 || path.rfind(kOtherMembers, 0) == 0);
}

// The connections by which the set holds the item's node or instance, or parts of it.
std::vector<ConnectionPtr> membershipsOf(const NodePtr& set, const SelectionItem& item) {
  const Plug plug = memberPlug(item);
  std::vector<ConnectionPtr> found = item.node->connections.outOfAtOrBelow(plug.path());
  const auto isOther = [&set](const ConnectionPtr& connection) {
    return connection->destination.node() != set || !isMembership(*connection);
  };
  found.erase(std::remove_if(found.begin(), found.end(), isOther), found.end());
  return found;
}

bool join(const NodePtr& set, const Plug& source) {
  const char* members = source.node()->isDag() ? kDagMembers : kOtherMembers;
  const auto plug = Plug::find(set, members);
  return plug && connect(source, nextElement(*plug), false);
}

void leave(const NodePtr& set, const ConnectionPtr& connection) {
  const NodePtr node = connection->source.node();
  const std::string path = connection->source.path();
  disconnect(connection);
  const ObjectGroup group = ObjectGroup::ofPath(path);
  if (node->isDag() && !group.isWhole()) removeGroup(node, group, set);
}

// The faces that the set holds of the item's instance; all of them when it holds the instance.
IndexSet facesHeld(const NodePtr& set, const SelectionItem& item) {
  IndexSet held;
  for (const ConnectionPtr& connection : membershipsOf(set, item)) {
    const ObjectGroup group = ObjectGroup::ofPath(connection->source.path());
    if (group.isWhole()) return IndexSet::all();
    held = held.unitedWith(facesOf(item.node, group));
  }
  return held;
}

// The item's first group of faces keeps its element of the set.
void setFacesHeld(const NodePtr& set, const SelectionItem& item, const IndexSet& faces) {
  bool isDone = faces.isEmpty();
  for (const ConnectionPtr& connection : membershipsOf(set, item)) {
    const ObjectGroup group = ObjectGroup::ofPath(connection->source.path());
    if (isDone || group.isWhole()) {
      leave(set, connection);
    } else {
      setFaces(item.node, group, faces);
      isDone = true;
    }
  }
  if (!isDone) join(set, makeGroup(item, faces, set));
}

// The part of `faces` that the item's mesh has.
IndexSet facesOfMesh(const SelectionItem& item, const IndexSet& faces) {
  return item.node->mesh ? faces.below(item.node->mesh->faceCount()) : faces;
}

void takeFaces(const NodePtr& set, const SelectionItem& item) {
  const IndexSet held = facesHeld(set, item);
  const IndexSet left = held.without(item.component->elements());
  if (!(left == held)) setFacesHeld(set, item, facesOfMesh(item, left));
}

bool joinWhole(const NodePtr& set, const SelectionItem& item) {
  const Plug source = memberPlug(item);
  for (const ConnectionPtr& connection : membershipsOf(set, item)) {
    if (connection->source == source) return true;
    leave(set, connection);
  }
  return join(set, source);
}

void addShapesBelow(const DagPath& path, std::vector<SelectionItem>& items) {
  for (const NodePtr& shape : shapesBelow(*path.node()))
    items.push_back(SelectionItem::of(path.extendedBy(shape)));
}

void addAllShapesBelow(const DagPath& path, std::vector<SelectionItem>& items) {
  addShapesBelow(path, items);
  for (const NodePtr& child : path.node()->children())
    if (child->isTransform()) addAllShapesBelow(path.extendedBy(child), items);
}

// The members to add for the item. For a transform, a shading group gets the transform's own shapes
// or, when it has none, all shapes below it.
std::vector<SelectionItem> whatJoins(const NodePtr& set, const SelectionItem& item) {
  std::vector<SelectionItem> items;
  if (item.component || !isRenderable(set) || !item.node->isTransform()) return {item};
  addShapesBelow(item.path, items);
  if (items.empty()) addAllShapesBelow(item.path, items);
  return items;
}

bool holdsSome(const NodePtr& set, const SelectionItem& item) {
  if (!item.component) return !membershipsOf(set, item).empty();
  const IndexSet held = facesHeld(set, item);
  return !(held.without(item.component->elements()) == held);
}

// The sets that the plug and what is below it are members of, each once.
std::vector<NodePtr> setsFrom(const NodePtr& node, const std::string& path) {
  std::vector<NodePtr> sets;
  for (const ConnectionPtr& connection : node->connections.outOfAtOrBelow(path)) {
    const NodePtr& set = connection->destination.node();
    const bool isNew = std::find(sets.begin(), sets.end(), set) == sets.end();
    if (isNew && isMembership(*connection)) sets.push_back(set);
  }
  return sets;
}

// Sets that share a partition with `set` and hold a part of the item.
std::vector<NodePtr> rivalsFor(const NodePtr& set, const SelectionItem& item) {
  std::vector<NodePtr> rivals;
  const std::vector<NodePtr> partitions = partitionsOf(set);
  for (const NodePtr& other : setsFrom(item.node, memberPlug(item).path())) {
    if (other == set) continue;
    const std::vector<NodePtr> theirs = partitionsOf(other);
    const bool isRival = std::any_of(theirs.begin(), theirs.end(), [&](const NodePtr& partition) {
      return std::find(partitions.begin(), partitions.end(), partition) != partitions.end();
    });
    if (isRival && holdsSome(other, item)) rivals.push_back(other);
  }
  return rivals;
}

bool addItem(const NodePtr& set, const SelectionItem& item) {
  if (!item.component) return joinWhole(set, item);
  const IndexSet held = facesHeld(set, item);
  const IndexSet wanted = held.unitedWith(facesOfMesh(item, item.component->elements()));
  if (!(wanted == held)) setFacesHeld(set, item, wanted);
  return true;
}

bool canHold(const NodePtr& set, const SelectionItem& item, std::string* error) {
  if (!set->isSet()) return fail(error, "'" + set->name() + "' is not a set");
  if (!item.component) return true;
  const bool isFaces = item.component->kind() == Component::Kind::kFace && item.node->mesh;
  if (!isFaces) return fail(error, "Only faces of meshes can join '" + set->name() + "'");
  const bool hasSome = !facesOfMesh(item, item.component->elements()).isEmpty();
  return hasSome || fail(error, "'" + item.node->name() + "' has no such faces");
}

}  // namespace

std::vector<SelectionItem> membersOf(const NodePtr& set) {
  std::vector<SelectionItem> members;
  std::vector<ConnectionPtr> connections = set->connections.intoAtOrBelow(kDagMembers);
  const auto others = set->connections.intoAtOrBelow(kOtherMembers);
  connections.insert(connections.end(), others.begin(), others.end());
  std::sort(connections.begin(), connections.end(),
            [](const ConnectionPtr& a, const ConnectionPtr& b) { return a->serial < b->serial; });
  for (const ConnectionPtr& connection : connections) {
    SelectionItem member = memberOf(*connection);
    if (member.node) members.push_back(std::move(member));
  }
  return members;
}

namespace {

void appendFlattened(const NodePtr& set, std::unordered_set<const Node*>& seen,
                     std::vector<SelectionItem>& members) {
  if (!seen.insert(set.get()).second) return;
  for (SelectionItem& member : membersOf(set))
    if (member.node->isSet())
      appendFlattened(member.node, seen, members);
    else
      members.push_back(std::move(member));
}

}  // namespace

std::vector<SelectionItem> flattenedMembersOf(const NodePtr& set) {
  std::vector<SelectionItem> members;
  std::unordered_set<const Node*> seen;
  appendFlattened(set, seen, members);
  return members;
}

bool isMember(const NodePtr& set, const SelectionItem& item) {
  if (item.component) return item.component->elements().without(facesHeld(set, item)).isEmpty();
  const Plug whole = memberPlug(item);
  const std::vector<ConnectionPtr> memberships = membershipsOf(set, item);
  return std::any_of(memberships.begin(), memberships.end(),
                     [&whole](const ConnectionPtr& c) { return c->source == whole; });
}

bool addMember(const NodePtr& set, const SelectionItem& item, std::string* error) {
  if (!canHold(set, item, error)) return false;
  bool ok = true;
  for (const SelectionItem& joining : whatJoins(set, item)) {
    const std::vector<NodePtr> rivals = rivalsFor(set, joining);
    if (!rivals.empty()) {
      ok = fail(error, "'" + joining.node->name() + "' cannot join '" + set->name() +
                           "': it is a member of '" + rivals.front()->name() + "'");
    } else {
      ok = addItem(set, joining) && ok;
    }
  }
  return ok;
}

bool forceMember(const NodePtr& set, const SelectionItem& item, std::string* error) {
  if (!canHold(set, item, error)) return false;
  const std::vector<SelectionItem> joining = whatJoins(set, item);
  if (joining.empty()) return fail(error, "'" + item.node->name() + "' has no shapes below it");
  bool ok = true;
  for (const SelectionItem& each : joining) {
    for (const NodePtr& rival : rivalsFor(set, each)) removeMember(rival, each);
    ok = addItem(set, each) && ok;
  }
  return ok;
}

bool removeMember(const NodePtr& set, const SelectionItem& item) {
  const std::vector<ConnectionPtr> memberships = membershipsOf(set, item);
  if (memberships.empty()) return false;
  if (item.component)
    takeFaces(set, item);
  else
    for (const ConnectionPtr& connection : memberships) leave(set, connection);
  return true;
}

void clearMembers(const NodePtr& set) {
  for (const char* members : {kDagMembers, kOtherMembers})
    for (const ConnectionPtr& connection : set->connections.intoAtOrBelow(members))
      leave(set, connection);
}

std::vector<NodePtr> setsHolding(const NodePtr& node) {
  return setsFrom(node, node->isDag() ? "instObjGroups" : "message");
}

std::vector<NodePtr> partitionsOf(const NodePtr& set) {
  std::vector<NodePtr> partitions;
  for (const ConnectionPtr& connection : set->connections.outOfAtOrBelow("partition")) {
    const Plug& destination = connection->destination;
    if (destination.path().rfind("sets", 0) == 0) partitions.push_back(destination.node());
  }
  return partitions;
}

void joinPartition(const NodePtr& set, const NodePtr& partition) {
  const std::vector<NodePtr> joined = partitionsOf(set);
  if (std::find(joined.begin(), joined.end(), partition) != joined.end()) return;
  const auto source = Plug::find(set, "partition");
  const auto sets = Plug::find(partition, "sets");
  if (source && sets) connect(*source, nextElement(*sets), false);
}

bool isRenderable(const NodePtr& set) {
  return set->type().isA("shadingEngine") || truthOf(set, "renderableOnlySet");
}

}  // namespace host
