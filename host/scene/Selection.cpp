#include "host/scene/Selection.h"

#include <algorithm>
#include <functional>

#include "host/scene/Scene.h"

namespace host {
namespace {

// Items that differ only in their components have equal hashes; there are few of those.
std::size_t hashOf(const SelectionItem& item) {
  std::size_t hash = std::hash<const Node*>()(item.node.get());
  for (const NodePtr& node : item.path.nodes())
    hash = hash * 31 + std::hash<const Node*>()(node.get());
  return hash;
}

bool isGone(const SelectionItem& item) {
  return !item.node->isAlive() || !item.path.isAlive();
}

}  // namespace

SelectionItem SelectionItem::of(const NodePtr& node) {
  return {node, node->isDag() ? firstPath(node) : DagPath(), nullptr};
}

SelectionItem SelectionItem::of(const DagPath& path, ComponentPtr component) {
  return {path.node(), path, std::move(component)};
}

bool SelectionItem::operator==(const SelectionItem& other) const {
  if (node != other.node || path != other.path) return false;
  if (!component || !other.component) return component == other.component;
  return component->equals(*other.component);
}

std::vector<std::string> SelectionItem::names() const {
  if (!component) return {path.isEmpty() ? node->displayName() : path.partialName()};
  // When a transform has one shape, components of the transform mean that shape's.
  const DagPath above = path.parent();
  const bool isOnlyShape = !above.isEmpty() && node->isShape() && !node->isIntermediate() &&
                           shapesBelow(*above.node()).size() == 1;
  const std::string name = (isOnlyShape ? above : path).partialName();
  std::vector<std::string> names = component->toTexts();
  for (std::string& text : names) text.insert(0, name + ".");
  return names;
}

std::size_t Selection::positionOf(const SelectionItem& item) const {
  for (; indexed_ < items_.size(); ++indexed_)
    positions_.emplace(hashOf(items_[indexed_]), indexed_);
  const auto [first, last] = positions_.equal_range(hashOf(item));
  for (auto entry = first; entry != last; ++entry)
    if (items_[entry->second] == item) return entry->second;
  return items_.size();
}

bool Selection::contains(const SelectionItem& item) const {
  return positionOf(item) < items_.size();
}

bool Selection::addIfMissing(SelectionItem item) {
  if (contains(item)) return false;
  items_.push_back(std::move(item));
  return true;
}

bool Selection::remove(const SelectionItem& item) {
  const std::size_t position = positionOf(item);
  if (position == items_.size()) return false;
  removeAt(position);
  return true;
}

void Selection::removeAt(std::size_t position) {
  if (position >= items_.size()) return;
  items_.erase(items_.begin() + static_cast<std::ptrdiff_t>(position));
  positions_.clear();
  indexed_ = 0;
}

void Selection::removeDeleted() {
  const auto end = std::remove_if(items_.begin(), items_.end(), isGone);
  if (end == items_.end()) return;
  items_.erase(end, items_.end());
  positions_.clear();
  indexed_ = 0;
}

void Selection::clear() {
  items_.clear();
  positions_.clear();
  indexed_ = 0;
}

}  // namespace host
