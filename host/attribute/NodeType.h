#ifndef MORVANE_HOST_ATTRIBUTE_NODETYPE_H_
#define MORVANE_HOST_ATTRIBUTE_NODETYPE_H_

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "host/attribute/Attribute.h"

namespace host {

// A type of node: its base type, its kind in the API, and its attributes.
class NodeType {
 public:
  // Null when there is no such type.
  static const NodeType* find(std::string_view name);
  // A type that a scene file uses and the host does not know. It is made on its first use, has the
  // attributes of every node (of every DAG node when `isDag`), and keeps what is set on it.
  static const NodeType& findOrInvent(std::string_view name, bool isDag);

  const std::string& name() const { return name_; }
  const NodeType* base() const { return base_; }
  MFn::Type apiType() const { return apiType_; }
  const std::string& defaultName() const { return defaultName_; }  // without number or "Shape"

  bool isA(std::string_view typeName) const;  // this type or one of its bases has that name
  bool hasFn(MFn::Type kind) const;
  bool isDag() const { return isDag_; }
  bool isTransform() const { return isTransform_; }
  bool isShape() const { return isShape_; }
  bool isSet() const { return isSet_; }
  bool isInvented() const { return isInvented_; }  // not known to the host

  // An attribute of this type or its bases, children of compounds included, by long or short name.
  AttributePtr findAttribute(std::string_view longOrShortName) const;

  // Own top-level attributes, without those of the bases.
  const std::vector<AttributePtr>& ownAttributes() const { return attributes_; }

 private:
  friend class NodeTypeRegistry;
  NodeType() = default;
  void add(const AttributePtr& attribute);
  void indexNames(const AttributePtr& attribute);

  std::string name_;
  const NodeType* base_ = nullptr;
  MFn::Type apiType_ = MFn::kDependencyNode;
  std::string defaultName_;
  bool isDag_ = false;
  bool isTransform_ = false;
  bool isShape_ = false;
  bool isSet_ = false;
  bool isInvented_ = false;
  std::vector<AttributePtr> attributes_;
  std::map<std::string, AttributePtr, std::less<>> byLongName_;
  std::map<std::string, AttributePtr, std::less<>> byShortName_;
};

}  // namespace host

#endif  // MORVANE_HOST_ATTRIBUTE_NODETYPE_H_
