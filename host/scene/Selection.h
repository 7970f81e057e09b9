#ifndef MORVANE_HOST_SCENE_SELECTION_H_
#define MORVANE_HOST_SCENE_SELECTION_H_

#include <cstddef>
#include <string>
#include <unordered_map>
#include <vector>

#include "host/attribute/Component.h"
#include "host/scene/Dag.h"

namespace host {

// A node, a path, or components of a path, as selections and sets hold them.
struct SelectionItem {
  NodePtr node;            // never null
  DagPath path;            // empty for what is not a DAG node
  ComponentPtr component;  // null: the whole

  static SelectionItem of(const NodePtr& node);  // by its first path
  static SelectionItem of(const DagPath& path, ComponentPtr component = nullptr);

  bool operator==(const SelectionItem& other) const;
  // Its names in the command language, one for each range of components: "pCube1", "a|b",
  // "pCube1.f[0:3]".
  std::vector<std::string> names() const;
};

// Items in the order in which they were added.
class Selection {
 public:
  const std::vector<SelectionItem>& items() const { return items_; }
  std::size_t size() const { return items_.size(); }
  void add(SelectionItem item) { items_.push_back(std::move(item)); }
  bool addIfMissing(SelectionItem item);  // whether it was missing
  bool contains(const SelectionItem& item) const;
  bool remove(const SelectionItem& item);  // whether it was there
  void removeAt(std::size_t position);
  void removeDeleted();
  void clear();

 private:
  std::size_t positionOf(const SelectionItem& item) const;

  std::vector<SelectionItem> items_;
  // Positions by hash, for those of the first `indexed_` items; rebuilt when items are removed.
  mutable std::unordered_multimap<std::size_t, std::size_t> positions_;
  mutable std::size_t indexed_ = 0;
};

}  // namespace host

#endif  // MORVANE_HOST_SCENE_SELECTION_H_
