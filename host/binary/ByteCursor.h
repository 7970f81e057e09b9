#ifndef MORVANE_HOST_BINARY_BYTECURSOR_H_
#define MORVANE_HOST_BINARY_BYTECURSOR_H_

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

#include "util/ByteOrder.h"

namespace host {

// Takes big-endian numbers and texts off the front of bytes that stay the caller's. The first call
// that asks for more than is left fails, and so does every later one: it gives 0 or nothing.
class ByteCursor {
 public:
  ByteCursor(const std::uint8_t* bytes, std::size_t size) : at_(bytes), left_(size) {}

  bool failed() const { return failed_; }
  std::size_t left() const { return left_; }

  // The next `count` bytes, or null.
  const std::uint8_t* take(std::size_t count) {
    if (failed_ || count > left_) {
      failed_ = true;
      left_ = 0;
      return nullptr;
    }
    const std::uint8_t* const taken = at_;
    at_ += count;
    left_ -= count;
    return taken;
  }

  std::uint8_t byte() {
    const std::uint8_t* const taken = take(1);
    return taken == nullptr ? std::uint8_t{0} : *taken;
  }
  std::uint16_t half() {
    const std::uint8_t* const taken = take(2);
    return taken == nullptr ? std::uint16_t{0} : morvane::loadBe16(taken);
  }
  std::uint32_t word() {
    const std::uint8_t* const taken = take(4);
    return taken == nullptr ? 0 : morvane::loadBe32(taken);
  }
  float single() {
    const std::uint8_t* const taken = take(4);
    return taken == nullptr ? 0.0f : morvane::loadBeFloat(taken);
  }
  double real() {
    const std::uint8_t* const taken = take(8);
    return taken == nullptr ? 0.0 : morvane::loadBeDouble(taken);
  }

  // Up to the next zero byte, which is stepped over.
  std::string_view text() {
    const void* const end = left_ == 0 ? nullptr : std::memchr(at_, 0, left_);
    const std::size_t length =
        end == nullptr ? 0 : static_cast<std::size_t>(static_cast<const std::uint8_t*>(end) - at_);
    const std::uint8_t* const taken = take(end == nullptr ? left_ + 1 : length + 1);
    return taken == nullptr ? std::string_view()
                            : std::string_view(reinterpret_cast<const char*>(taken), length);
  }

  // The rest of the bytes, or of them those before the first zero byte.
  std::string_view rest() {
    const std::string_view all(reinterpret_cast<const char*>(at_), left_);
    take(left_);
    return all.substr(0, all.find('\0'));
  }

 private:
  const std::uint8_t* at_;
  std::size_t left_;
  bool failed_ = false;
};

}  // namespace host

#endif  // MORVANE_HOST_BINARY_BYTECURSOR_H_
