#ifndef MORVANE_HOST_SCENE_NODE_H_
#define MORVANE_HOST_SCENE_NODE_H_

#include <cstddef>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "host/attribute/AttributeStore.h"
#include "host/attribute/NodeType.h"
#include "host/attribute/Object.h"
#include "host/scene/Connections.h"

namespace host {

class MeshData;
class Scene;
struct MeshHistory;

// A node of the scene. Names, parents, children and life are the scene's to change (Scene.h).
class Node : public Object {
 public:
  Node(const NodeType& type, std::size_t serial, Scene& scene);
  ~Node() override;

  const NodeType& type() const { return *type_; }
  const std::string& name() const { return name_; }  // the last part of its paths
  std::size_t serial() const { return serial_; }     // later nodes have larger ones
  bool isAlive() const override { return alive_; }
  // Null for a node that was deleted.
  Scene* scene() const { return alive_ ? scene_ : nullptr; }
  // Adds the node to its scene's changes (SceneChanges.h).
  void noteChange() const;
  // See Scene::displayName.
  std::string displayName();
  MFn::Type apiType() const override { return type_->apiType(); }
  bool hasFn(MFn::Type kind) const override { return alive_ && type_->hasFn(kind); }
  NodePtr pointer() { return std::static_pointer_cast<Node>(shared_from_this()); }

  bool isDag() const { return type_->isDag(); }
  bool isTransform() const { return type_->isTransform(); }
  bool isShape() const { return type_->isShape(); }
  bool isSet() const { return type_->isSet(); }
  bool isIntermediate() const;

  // Both in the order in which they were added; a node at the top has the world as its parent.
  // The same parent never occurs twice.
  const std::vector<Node*>& parents() const { return parents_; }
  const std::vector<NodePtr>& children() const { return children_; }

  std::size_t pathCount() const { return pathCount_; }  // how many ways lead down from the world

  // By long or short name: of the type, added to this node, or loose.
  AttributePtr findAttribute(std::string_view longOrShortName) const;
  const std::vector<AttributePtr>& dynamicAttributes() const { return dynamicAttributes_; }
  // Adds a top-level attribute with all its children. False when a name of it is taken.
  bool addAttribute(const AttributePtr& attribute);
  // Adds `child` as the last child of a compound that was added before.
  bool addChildAttribute(const AttributePtr& parent, const AttributePtr& child);
  // Removes a dynamic attribute with its values and connections. False when it is none.
  bool removeAttribute(const AttributePtr& attribute);
  // The attribute by that name, made loose when there is none: for scene files only.
  AttributePtr findOrKeepLoose(std::string_view name);

  std::string uuid;  // as the scene file has it, or empty
  // What the scene file says of the node and the host does not use, kept for saved scenes: addAttr
  // statements of attributes that the type has, and the flags of lockNode.
  std::vector<std::string> keptDeclarations;
  std::string lockFlags;
  bool isDefault = false;  // stands in every new scene: no deletion, saved by select -ne only
  bool isShared = false;   // made by createNode -s
  bool isLocked = false;
  bool isReferenced = false;  // came from a referenced file

  AttributeStore values;
  ConnectionTable connections;
  std::unique_ptr<MeshData> mesh;  // mesh nodes only, and there never null
  // The history of a mesh whose shape it makes, once that was tried; else null.
  std::unique_ptr<MeshHistory> history;

 private:
  friend class Scene;
  void indexNames(const AttributePtr& attribute);

  const NodeType* type_;
  std::string name_;
  std::size_t serial_;
  Scene* scene_;
  bool alive_ = true;
  std::size_t pathCount_ = 0;
  std::vector<Node*> parents_;
  std::vector<NodePtr> children_;
  std::vector<AttributePtr> dynamicAttributes_;
  std::map<std::string, AttributePtr, std::less<>> ownNames_;
};

}  // namespace host

#endif  // MORVANE_HOST_SCENE_NODE_H_
