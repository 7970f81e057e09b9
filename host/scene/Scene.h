#ifndef MORVANE_HOST_SCENE_SCENE_H_
#define MORVANE_HOST_SCENE_SCENE_H_

#include <cstddef>
#include <map>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "host/scene/Dag.h"
#include "host/scene/SceneChanges.h"
#include "host/scene/Selection.h"
#include "host/text/UniqueNames.h"

namespace host {

class FlowingValues;

// All nodes, their names and the DAG.
//
// Calls that can fail take `error`, which may be null, and say there why.
class Scene {
 public:
  // Paths deeper than this, and nodes with more instances than this, are refused, so that a damaged
  // file can neither exhaust the stack nor multiply without end.
  static constexpr std::size_t kMaxDepth = 1000;
  static constexpr std::size_t kMaxInstances = 65536;

  static Scene& current();  // of the host that runs

  Scene();  // with the default nodes
  ~Scene();
  Scene(const Scene&) = delete;
  Scene& operator=(const Scene&) = delete;

  // Removes everything and makes the default nodes.
  void clear();

  std::string fileName;              // of the scene, absolute; empty while it has none
  Selection selection;               // the active one
  SceneChanges changes;              // since histories were last evaluated
  FlowingValues* flowing = nullptr;  // what works out values along its connections; null: nothing

  // --- Nodes

  // Makes a node. An empty name stands for the type's default ("transform1"); a name that is taken
  // gets its trailing number increased, a `#` at the end becomes a free number; characters that
  // names cannot have become underscores. `parent` null: at the top. A shape without a parent gets
  // a transform of its own. Null when the parent cannot have children or is too deep.
  NodePtr createNode(const NodeType& type, std::string_view name = {},
                     const NodePtr& parent = nullptr, std::string* error = nullptr);

  // Moves a node of an unknown type into the DAG, at its top; a child of it shows that it belongs
  // there. False for any other node that is not in the DAG.
  bool moveIntoDag(const NodePtr& node);

  // Makes a default node that other versions of Maya have: its type is its name without the number.
  NodePtr makeDefaultNode(const std::string& name);

  // Deletes a node, its connections, and the children that have no other parent. Default and locked
  // nodes are refused.
  bool deleteNode(const NodePtr& node, std::string* error = nullptr);

  // Renames the node; its new name may differ, as for createNode. With `withShapes`, a shape that
  // is named after its transform ("pCube1", "pCubeShape1") is renamed with it.
  bool rename(const NodePtr& node, std::string_view name, bool withShapes = false,
              std::string* error = nullptr);

  const std::map<std::size_t, NodePtr>& nodes() const {
    return nodes_;
  }                                                 // by serial: creation order
  NodePtr nodeAtOrAfter(std::size_t serial) const;  // null past the last
  const NodePtr& world() const { return world_; }   // not among `nodes`

  // --- The DAG

  // Moves the instance of `node` below `oldParent` to below `newParent` (null or world: to the
  // top), as the last child. Renames it when the name is taken there.
  bool reparent(const NodePtr& node, const NodePtr& oldParent, const NodePtr& newParent,
                std::string* error = nullptr);
  // Makes `node` a child of one more parent. A success without effect when it is one already.
  bool addInstance(const NodePtr& node, const NodePtr& parent, std::string* error = nullptr);
  // Takes a node from one of its parents; from the last one, the node is deleted.
  bool removeInstance(const NodePtr& node, const NodePtr& parent, std::string* error = nullptr);

  // --- Names

  // What a text names: a name ("pCube1", "ns:pCube1", ":lambert1"), a path ("|a|b", "a|b"), either
  // with
  // `*` and `?` (which match no `:` and no `|`), and any of these with components (".f[0:3]").
  // Nodes come in creation order, the paths of a node in instance order; a name without `|` gives a
  // node's first path only. Empty when there is no match or a component text is none. With
  // `inNamespaces` a plain name also matches inside namespaces.
  std::vector<SelectionItem> match(std::string_view text, bool inNamespaces = false) const;

  // The one node or path that a text names. Null (empty) with "No object matches name: x" or "More
  // than one object matches name: x" in `error`.
  NodePtr findNode(std::string_view text, std::string* error = nullptr) const;
  DagPath findPath(std::string_view text, std::string* error = nullptr) const;

  // "node.path" by a node's name or path and Plug::find. Null plug on failure.
  Plug findPlug(std::string_view text, std::string* error = nullptr) const;

  // The shortest name or partial path of the node (its first path) that names nothing else.
  std::string displayName(const NodePtr& node) const;

  // Whether a name or path without `|` in front ("b", "a|b") names one path of one node and nothing
  // else.
  bool isOnlyPath(std::string_view partialPath) const;

  // All nodes by exactly this name, in creation order.
  std::vector<NodePtr> nodesNamed(std::string_view name) const;

 private:
  // The nodes of that name. A node outside the DAG is the only one with its name.
  struct Namesakes {
    std::map<std::size_t, NodePtr> dag;
    std::map<std::size_t, NodePtr> others;
  };

  void removeAll();
  void makeDefaultNodes();
  NodePtr makeDefault(const char* type, const char* name, const NodePtr& parent = nullptr);
  void makeDefaultCamera(const char* name, double x, double y, double z, double rx, double ry);

  NodePtr addNode(const NodeType& type, const std::string& name, const NodePtr& parent);
  bool canTake(const NodePtr& parent, const NodePtr& child, std::string* error) const;
  bool changePathCounts(Node& node, std::ptrdiff_t difference);
  bool link(const NodePtr& child, const NodePtr& parent);  // false: more paths than allowed
  void unlink(const NodePtr& child, const NodePtr& parent);
  void destroy(const NodePtr& node);

  bool isNameFree(const std::string& name, const Node* node, const Node* parent, bool isDag) const;
  std::string freeName(const std::string& wanted, const Node* node,
                       const std::vector<Node*>& parents, bool isDag);
  std::string freeDefaultName(const NodeType& type);
  std::string numbered(const std::string& stem, long first);
  std::string numberedOrLegal(std::string_view name);
  void setName(Node& node, const std::string& name);
  void forgetName(const Node& node);

  std::vector<SelectionItem> matchObjects(std::string_view text, bool inNamespaces) const;
  std::vector<NodePtr> nodesMatching(std::string_view leafPattern, bool inNamespaces) const;
  std::vector<DagPath> literalPaths(std::string_view path) const;
  void stepDown(std::vector<DagPath>& paths, std::string_view name) const;

  std::map<std::size_t, NodePtr> nodes_;
  std::unordered_map<std::string, Namesakes> byName_;
  UniqueNames numbers_;
  NodePtr world_;
  std::size_t nextSerial_ = 0;
};

}  // namespace host

#endif  // MORVANE_HOST_SCENE_SCENE_H_
