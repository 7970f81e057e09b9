#include "util/LargePages.h"

#include <cstdint>

#ifdef __linux__
#include <sys/mman.h>
#endif

namespace morvane {

void askForLargePages(void* memory, std::size_t bytes) {
#ifdef __linux__
  constexpr std::size_t kPage = std::size_t{2} << 20;
  if (bytes < 2 * kPage) return;
  // Whole pages only: their neighbours may belong to others.
  const auto start = reinterpret_cast<std::uintptr_t>(memory);
  const std::size_t before = (kPage - start % kPage) % kPage;
  const std::size_t inside = (bytes - before) / kPage * kPage;
  ::madvise(static_cast<char*>(memory) + before, inside, MADV_HUGEPAGE);
#else
  static_cast<void>(memory);
  static_cast<void>(bytes);
#endif
}

}  // namespace morvane
