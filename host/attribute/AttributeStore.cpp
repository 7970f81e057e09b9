#include "host/attribute/AttributeStore.h"

#include <algorithm>

namespace host {
namespace {

// Up to this many plugs, a search through all of them is faster than a hash table, and smaller.
constexpr std::size_t kManyStates = 24;

bool isAtOrBelow(std::string_view path, std::string_view top) {
  if (path.substr(0, top.size()) != top) return false;
  return path.size() == top.size() || path[top.size()] == '[' || path[top.size()] == '.';
}

}  // namespace

std::size_t AttributeStore::positionOf(std::string_view path) const {
  if (!positions_.empty()) {
    const auto found = positions_.find(std::string(path));
    return found == positions_.end() ? states_.size() : found->second;
  }
  std::size_t position = 0;
  while (position < states_.size() && states_[position].path != path) ++position;
  return position;
}

void AttributeStore::index() {
  positions_.clear();
  if (states_.size() < kManyStates) return;
  for (std::size_t i = 0; i < states_.size(); ++i) positions_.emplace(states_[i].path, i);
}

const AttributeState* AttributeStore::find(std::string_view path) const {
  const std::size_t position = positionOf(path);
  return position < states_.size() ? &states_[position] : nullptr;
}

AttributeState* AttributeStore::find(std::string_view path) {
  const std::size_t position = positionOf(path);
  return position < states_.size() ? &states_[position] : nullptr;
}

AttributeState& AttributeStore::at(std::string_view path) {
  const std::size_t position = positionOf(path);
  if (position < states_.size()) return states_[position];
  AttributeState state;
  state.path = std::string(path);
  states_.push_back(std::move(state));
  if (positions_.empty())
    index();
  else
    positions_.emplace(states_.back().path, position);
  return states_.back();
}

void AttributeStore::erase(std::string_view path) {
  const auto isGone = [path](const AttributeState& s) { return isAtOrBelow(s.path, path); };
  const auto end = std::remove_if(states_.begin(), states_.end(), isGone);
  if (end == states_.end()) return;
  states_.erase(end, states_.end());
  index();
}

}  // namespace host
