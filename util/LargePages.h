#ifndef MORVANE_UTIL_LARGEPAGES_H_
#define MORVANE_UTIL_LARGEPAGES_H_

#include <cstddef>
#include <vector>

namespace morvane {

// Asks the system to back fresh memory with large pages: touching one for the first time costs less
// than touching the small pages that it replaces. Does nothing where the memory is small or the
// system has no such pages.
void askForLargePages(void* memory, std::size_t bytes);

template <typename T>
void reserveInLargePages(std::vector<T>& vector, std::size_t count) {
  vector.reserve(count);
  askForLargePages(vector.data(), vector.capacity() * sizeof(T));
}

}  // namespace morvane

#endif  // MORVANE_UTIL_LARGEPAGES_H_
