#ifndef MORVANE_PSD_BYTES_H_
#define MORVANE_PSD_BYTES_H_

#include <cstddef>
#include <cstdint>
#include <memory>
#include <utility>

namespace morvane {

// Bytes that are either owned (an array made with array new) or lie in a buffer of somebody else: a
// document reads its file once, and its channel data points into that one buffer. Either kind may
// be changed in place. The record that holds the bytes knows how many there are.
class Bytes {
 public:
  Bytes() = default;
  Bytes(std::nullptr_t) {}
  Bytes(std::unique_ptr<std::uint8_t[]> owned) : data_(owned.get()), owned_(std::move(owned)) {}
  Bytes(Bytes&& other) noexcept
      : data_(std::exchange(other.data_, nullptr)), owned_(std::move(other.owned_)) {}
  Bytes& operator=(Bytes&& other) noexcept {
    data_ = std::exchange(other.data_, nullptr);
    owned_ = std::move(other.owned_);
    return *this;
  }

  // The bytes stay with their owner, which has to outlive the view.
  static Bytes view(std::uint8_t* bytes) {
    Bytes result;
    result.data_ = bytes;
    return result;
  }

  std::uint8_t* get() const { return data_; }
  std::uint8_t& operator[](std::size_t index) const { return data_[index]; }
  explicit operator bool() const { return data_ != nullptr; }
  bool operator==(std::nullptr_t) const { return data_ == nullptr; }
  bool operator!=(std::nullptr_t) const { return data_ != nullptr; }

 private:
  std::uint8_t* data_ = nullptr;
  std::unique_ptr<std::uint8_t[]> owned_;
};

}  // namespace morvane

#endif  // MORVANE_PSD_BYTES_H_
