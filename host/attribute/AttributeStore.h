#ifndef MORVANE_HOST_ATTRIBUTE_ATTRIBUTESTORE_H_
#define MORVANE_HOST_ATTRIBUTE_ATTRIBUTESTORE_H_

#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "host/attribute/AttributeValue.h"

namespace host {

// What was set on a node, plug by plug, in the order in which plugs were first set.
class AttributeStore {
 public:
  // Null when nothing was ever set on the plug. Pointers and references hold until the next change.
  const AttributeState* find(std::string_view path) const;
  AttributeState* find(std::string_view path);

  // The plug's state, made when there is none.
  AttributeState& at(std::string_view path);

  // Removes the plug, and the elements and children written below it: "a" removes "a[0].b" too.
  void erase(std::string_view path);

  const std::vector<AttributeState>& inWrittenOrder() const { return states_; }

 private:
  std::size_t positionOf(std::string_view path) const;  // states_.size() when there is none
  void index();

  std::vector<AttributeState> states_;
  std::unordered_map<std::string, std::size_t> positions_;  // only once there are many
};

}  // namespace host

#endif  // MORVANE_HOST_ATTRIBUTE_ATTRIBUTESTORE_H_
