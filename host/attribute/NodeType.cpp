#include "host/attribute/NodeType.h"

#include <memory>

#include "host/attribute/NodeTypeTable.h"

namespace host {

// Every type there is, made from the tables on first use.
class NodeTypeRegistry {
 public:
  static NodeTypeRegistry& instance() {
    static NodeTypeRegistry registry;
    return registry;
  }

  NodeType* find(std::string_view name) {
    const auto found = types_.find(name);
    return found == types_.end() ? nullptr : found->second.get();
  }

  // A type inside the DAG and one outside may share a name; how a file uses the node tells which
  // one it means.
  const NodeType& invented(const std::string& name, bool isDag) {
    std::unique_ptr<NodeType>& slot = (isDag ? inventedDag_ : invented_)[name];
    if (slot == nullptr) {
      const NodeType* base = find(isDag ? "dagNode" : "dependNode");
      slot = build(name, base, isDag ? MFn::kUnknownDag : MFn::kUnknown);
      slot->isInvented_ = true;
    }
    return *slot;
  }

 private:
  NodeTypeRegistry() {
    for (const NodeTypeRow& row : nodeTypeRows()) {
      NodeType& type = make(row.name, find(row.base), row.kind);
      if (*row.defaultName) type.defaultName_ = row.defaultName;
      for (const AttributePtr& attribute : parseAttributeTable(row.attributes)) type.add(attribute);
    }
  }

  NodeType& make(std::string_view name, const NodeType* base, MFn::Type kind) {
    return *(types_[std::string(name)] = build(name, base, kind));
  }

  static std::unique_ptr<NodeType> build(std::string_view name, const NodeType* base,
                                         MFn::Type kind) {
    std::unique_ptr<NodeType> type(new NodeType);
    type->name_ = std::string(name);
    type->base_ = base;
    type->apiType_ = kind;
    type->defaultName_ = type->name_;
    type->isDag_ = type->isA("dagNode");
    type->isTransform_ = type->isA("transform");
    type->isShape_ = type->isA("shape");
    type->isSet_ = type->isA("objectSet");
    return type;
  }

  std::map<std::string, std::unique_ptr<NodeType>, std::less<>> types_;
  std::map<std::string, std::unique_ptr<NodeType>> invented_;
  std::map<std::string, std::unique_ptr<NodeType>> inventedDag_;
};

const NodeType* NodeType::find(std::string_view name) {
  return NodeTypeRegistry::instance().find(name);
}

const NodeType& NodeType::findOrInvent(std::string_view name, bool isDag) {
  NodeTypeRegistry& registry = NodeTypeRegistry::instance();
  const NodeType* known = registry.find(name);
  return known ? *known : registry.invented(std::string(name), isDag);
}

bool NodeType::isA(std::string_view typeName) const {
  for (const NodeType* type = this; type; type = type->base_)
    if (type->name_ == typeName) return true;
  return false;
}

bool NodeType::hasFn(MFn::Type kind) const {
  for (MFn::Type own = apiType_; own != MFn::kInvalid; own = baseOf(own))
    if (own == kind) return true;
  return false;
}

AttributePtr NodeType::findAttribute(std::string_view longOrShortName) const {
  for (const auto names : {&NodeType::byLongName_, &NodeType::byShortName_}) {
    for (const NodeType* type = this; type; type = type->base_) {
      const auto found = (type->*names).find(longOrShortName);
      if (found != (type->*names).end()) return found->second;
    }
  }
  return nullptr;
}

void NodeType::add(const AttributePtr& attribute) {
  attributes_.push_back(attribute);
  indexNames(attribute);
}

void NodeType::indexNames(const AttributePtr& attribute) {
  byLongName_.emplace(attribute->longName(), attribute);
  byShortName_.emplace(attribute->shortName(), attribute);
  for (const AttributePtr& child : attribute->children()) indexNames(child);
}

}  // namespace host
