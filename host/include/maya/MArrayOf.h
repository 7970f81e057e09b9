#ifndef MORVANE_MAYA_MARRAYOF_H_
#define MORVANE_MAYA_MARRAYOF_H_

#include <cstddef>
#include <ostream>
#include <vector>

// What every array class of the API has in common. Positions at or beyond `length()` must not be
// used; `insert` and `remove` refuse them.
template <typename T>
class MArrayOf {
 public:
  using value_type = T;

  MArrayOf() = default;
  explicit MArrayOf(unsigned int initialSize, const T& initialValue = T())
      : elements_(initialSize, initialValue) {}
  MArrayOf(const T source[], unsigned int count) : elements_(source, source + count) {}

  unsigned int length() const { return static_cast<unsigned int>(elements_.size()); }
  bool setLength(unsigned int length) {
    elements_.resize(length);
    return true;
  }
  bool clear() {
    elements_.clear();
    return true;
  }
  bool append(const T& element) {
    elements_.push_back(element);
    return true;
  }
  bool insert(const T& element, unsigned int index) {
    if (index > length()) return false;
    elements_.insert(elements_.begin() + static_cast<std::ptrdiff_t>(index), element);
    return true;
  }
  bool remove(unsigned int index) {
    if (index >= length()) return false;
    elements_.erase(elements_.begin() + static_cast<std::ptrdiff_t>(index));
    return true;
  }
  bool set(const T& element, unsigned int index) {
    if (index >= length()) return false;
    elements_[index] = element;
    return true;
  }
  bool copy(const MArrayOf& source) {
    elements_ = source.elements_;
    return true;
  }

  T& operator[](unsigned int index) { return elements_[index]; }
  const T& operator[](unsigned int index) const { return elements_[index]; }

 private:
  std::vector<T> elements_;
};

// Prints "[a, b, c]".
template <typename T>
std::ostream& operator<<(std::ostream& out, const MArrayOf<T>& array) {
  out << '[';
  for (unsigned int i = 0; i < array.length(); ++i) out << (i == 0 ? "" : ", ") << array[i];
  return out << ']';
}

#endif  // MORVANE_MAYA_MARRAYOF_H_
