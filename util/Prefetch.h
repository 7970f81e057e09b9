#ifndef MORVANE_UTIL_PREFETCH_H_
#define MORVANE_UTIL_PREFETCH_H_

#ifdef _MSC_VER
#include <intrin.h>
#endif

namespace morvane {

// Has the processor fetch a cache line that is going to be read, without waiting for it.
inline void prefetch(const void* memory) {
#ifdef _MSC_VER
  _mm_prefetch(static_cast<const char*>(memory), _MM_HINT_T0);
#else
  __builtin_prefetch(memory);
#endif
}

}  // namespace morvane

#endif  // MORVANE_UTIL_PREFETCH_H_
