#ifndef MORVANE_UTIL_RESERVEMORE_H_
#define MORVANE_UTIL_RESERVEMORE_H_

#include <algorithm>
#include <cstddef>
#include <new>
#include <vector>

namespace morvane {

// Makes room for `count` more elements, so that adding them cannot fail. False, with the vector
// unchanged, when memory runs out. A vector that has to grow at least doubles.
//
// A vector reports missing memory only by throwing, and nothing here catches. So as much memory is
// first asked for without throwing, and given back. (A direct call does that: a compiler may leave
// out a new expression whose result is only deleted.)
template <typename T>
bool reserveMore(std::vector<T>& vector, std::size_t count) {
  const std::size_t room = vector.max_size() - vector.size();
  if (count > room) return false;
  if (count <= vector.capacity() - vector.size()) return true;
  const std::size_t grown = vector.size() + std::max(count, std::min(vector.size(), room));
  void* const probe = ::operator new(grown * sizeof(T), std::nothrow);
  if (!probe) return false;
  ::operator delete(probe);
  vector.reserve(grown);
  return true;
}

}  // namespace morvane

#endif  // MORVANE_UTIL_RESERVEMORE_H_
