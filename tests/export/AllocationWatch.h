#ifndef MORVANE_TESTS_EXPORT_ALLOCATIONWATCH_H_
#define MORVANE_TESTS_EXPORT_ALLOCATIONWATCH_H_

#include <cstddef>

// Adds up what the test program allocates with `new` while a watch stands, whether or not it is
// freed again.
class AllocationWatch {
 public:
  AllocationWatch();
  ~AllocationWatch();
  std::size_t bytes() const;
};

#endif  // MORVANE_TESTS_EXPORT_ALLOCATIONWATCH_H_
