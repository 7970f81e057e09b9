#ifndef MORVANE_HOST_SCENE_PLUG_H_
#define MORVANE_HOST_SCENE_PLUG_H_

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/attribute/Attribute.h"

namespace host {

class Node;
using NodePtr = std::shared_ptr<Node>;

// An attribute of one node, or an element or child of it: what values are stored under and what
// connections join.
//
// `path` is canonical: long names; every array above the last attribute with an index, 0 where the
// text had none; compounds left out unless they are arrays or stand below one. So "iog.og[1]" is
// "instObjGroups[0].objectGroups[1]" and "t.tx" is "translateX".
class Plug {
 public:
  Plug() = default;

  // Reads a path text such as "t", "tx", "iog[0].og[1].gcl", "uvst[2]". Null when the node has no
  // such attribute, or the text is not a path, or has a range ("vt[0:3]").
  static std::optional<Plug> find(const NodePtr& node, std::string_view pathText);

  // The same for scene files: what the node does not have becomes a loose attribute of it, be it a
  // child of an attribute that is known. Null only for what is not a path.
  static std::optional<Plug> findOrKeep(const NodePtr& node, std::string_view pathText);

  // The plug of an attribute of the node, index 0 where one is needed above it.
  static Plug ofAttribute(const NodePtr& node, const AttributePtr& attribute);

  const NodePtr& node() const { return node_; }
  const AttributePtr& attribute() const { return attribute_; }  // the last one on the path
  const std::string& path() const { return path_; }
  bool isNull() const { return !node_; }

  // The node's shortest unique name, a dot, the path: "pCubeShape1.instObjGroups[0]".
  std::string name() const;

  bool isArray() const;    // names an array as a whole
  bool isElement() const;  // ends in an index
  int index() const;       // the last index of an element; -1 for none

  Plug element(int index) const;                // of an array; of any other, itself
  Plug child(const AttributePtr& child) const;  // `child` is a child of the plug's attribute
  std::vector<Plug> children() const;           // one for each child attribute; empty for an array

  // The first element of an array, else itself: what a connection to "iog" means.
  Plug orFirstElement() const { return isArray() ? element(0) : *this; }

  bool operator==(const Plug& o) const { return node_ == o.node_ && path_ == o.path_; }
  bool operator!=(const Plug& o) const { return !(*this == o); }

 private:
  Plug(NodePtr node, AttributePtr attribute, std::string path);

  NodePtr node_;
  AttributePtr attribute_;
  std::string path_;
};

// Parts of a path text that ends in a range or an index.
struct PathRange {
  std::string_view stem;  // "uvst[0].uvsp" of "uvst[0].uvsp[4:9]"
  int first = 0;
  int last = 0;
};

// Null when the text does not end in "[n]" or "[n:m]" with 0 <= n <= m.
std::optional<PathRange> splitRange(std::string_view pathText);

}  // namespace host

#endif  // MORVANE_HOST_SCENE_PLUG_H_
