#include "tests/export/AllocationWatch.h"

#include <cstdlib>
#include <new>

namespace {

bool watching = false;
std::size_t total = 0;

}  // namespace

AllocationWatch::AllocationWatch() {
  total = 0;
  watching = true;
}

AllocationWatch::~AllocationWatch() {
  watching = false;
}

std::size_t AllocationWatch::bytes() const {
  return total;
}

void* operator new(std::size_t size) {
  if (watching) total += size;
  void* const memory = std::malloc(size == 0 ? 1 : size);
  if (memory == nullptr) throw std::bad_alloc();
  return memory;
}

void operator delete(void* memory) noexcept {
  std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
  std::free(memory);
}
