#ifndef MORVANE_LIBRARY_ARRAYVIEW_H_
#define MORVANE_LIBRARY_ARRAYVIEW_H_

#include <cstddef>

namespace morvane {

// `size` consecutive values that somebody else owns. Whoever hands out a view says how long it is
// good.
template <typename T>
class ArrayView {
 public:
  ArrayView() = default;
  ArrayView(const T* data, std::size_t size) : data_(data), size_(size) {}

  const T* data() const { return data_; }  // may be null when it is empty
  std::size_t size() const { return size_; }
  bool empty() const { return size_ == 0; }
  const T* begin() const { return data_; }
  const T* end() const { return data_ + size_; }
  const T& operator[](std::size_t index) const { return data_[index]; }  // index < size()

 private:
  const T* data_ = nullptr;
  std::size_t size_ = 0;
};

}  // namespace morvane

#endif  // MORVANE_LIBRARY_ARRAYVIEW_H_
