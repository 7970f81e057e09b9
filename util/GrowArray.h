#ifndef MORVANE_UTIL_GROWARRAY_H_
#define MORVANE_UTIL_GROWARRAY_H_

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <memory>
#include <new>
#include <type_traits>
#include <utility>

namespace morvane {

// A growable array of plain records in one zero-filled heap block: count (i32), capacity (i32),
// elements. It grows to exactly what is needed plus the slack that the caller passes, never
// geometrically, so a caller that knows its volume pays for no more. Elements are moved as bytes,
// never constructed or destroyed.
//
// An operation that cannot be done (index past the end, more than 2^31 - 1 elements, out of memory)
// returns -1, or 0 from setCapacity, and leaves the array as it was.
template <typename T>
class GrowArray {
  static_assert(std::is_trivially_copyable_v<T>, "elements are moved as bytes");

 public:
  GrowArray() = default;
  GrowArray(GrowArray&&) noexcept = default;
  GrowArray& operator=(GrowArray&&) noexcept = default;
  virtual ~GrowArray() = default;

  std::int32_t size() const { return block_ ? header()->count : 0; }
  std::int32_t capacity() const { return block_ ? header()->capacity : 0; }

  // The elements, contiguous; null without storage. Room beyond size() reads as zero until it is
  // used.
  T* data() { return block_ ? reinterpret_cast<T*>(block_.get() + sizeof(Header)) : nullptr; }
  const T* data() const { return const_cast<GrowArray*>(this)->data(); }
  T& operator[](std::int32_t index) { return data()[index]; }
  const T& operator[](std::int32_t index) const { return data()[index]; }

  // Returns the index of the added element. `element` may be one of this array.
  std::int32_t append(const T& element, std::uint32_t slack) {
    return insert(size(), 1, &element, slack);
  }

  // Puts n elements before the one at `index`. They lie outside this array unless index is size().
  std::int32_t insert(std::int32_t index, std::int32_t n, const T* elements, std::uint32_t slack);

  // Keeps the first min(size, k) elements in a block for k; 0 releases the block. Returns 1 when
  // the array now has a block of that capacity, 0 when it has none (or could not get it).
  int setCapacity(std::int32_t k);

 private:
  struct Header {
    std::int32_t count;
    std::int32_t capacity;
  };
  static_assert(alignof(T) <= sizeof(Header), "elements follow the header directly");
  using Block = std::unique_ptr<std::uint8_t[]>;

  Header* header() const { return reinterpret_cast<Header*>(block_.get()); }

  // A block for k elements that holds the first min(old capacity, k) of this one; null when out of
  // memory.
  Block reallocated(std::int32_t k) const {
    const std::size_t bytes = sizeof(Header) + static_cast<std::size_t>(k) * sizeof(T);
    Block fresh(new (std::nothrow) std::uint8_t[bytes]());
    if (fresh && block_) {
      const std::int32_t kept = k < capacity() ? k : capacity();
      std::memcpy(fresh.get(), block_.get(),
                  sizeof(Header) + static_cast<std::size_t>(kept) * sizeof(T));
    }
    return fresh;
  }

  Block block_;
};

template <typename T>
std::int32_t GrowArray<T>::insert(std::int32_t index, std::int32_t n, const T* elements,
                                  std::uint32_t slack) {
  if (n == 0) return index;
  const std::int32_t count = size();
  const std::int64_t needed = std::int64_t{count} + n;
  if (index < 0 || index > count || n < 0) return -1;
  Block old;  // outlives the copy below: the new elements may lie in it
  if (needed > capacity()) {
    if (needed + slack > std::numeric_limits<std::int32_t>::max()) return -1;
    const auto grown = static_cast<std::int32_t>(needed + slack);
    old = reallocated(grown);
    if (!old) return -1;
    old.swap(block_);
    header()->capacity = grown;
  }
  T* const at = data() + index;
  std::memmove(at + n, at, static_cast<std::size_t>(count - index) * sizeof(T));
  std::memcpy(at, elements, static_cast<std::size_t>(n) * sizeof(T));
  header()->count = static_cast<std::int32_t>(needed);
  return index;
}

template <typename T>
int GrowArray<T>::setCapacity(std::int32_t k) {
  if (k <= 0) {
    if (k == 0) block_.reset();
    return 0;
  }
  Block fresh = reallocated(k);
  if (!fresh) return 0;
  block_ = std::move(fresh);
  header()->capacity = k;
  if (header()->count > k) header()->count = k;
  return 1;
}

}  // namespace morvane

#endif  // MORVANE_UTIL_GROWARRAY_H_
