#include "tools/image/PlaneRows.h"

#include <algorithm>
#include <cstring>

#include "psd/PackBits.h"

namespace tools {
namespace {

constexpr std::uint64_t kRowLengthBytes = 2;

// Asked before a row's memory is taken, so that this stays in proportion to the file.
bool canHoldRow(std::uint64_t length, std::uint64_t rowBytes, bool packed) {
  return rowBytes <= (packed ? length * morvane::kMaxPackBitsExpansion : length);
}

}  // namespace

PlaneRows::PlaneRows(std::uint16_t compression, const std::uint8_t* data, std::size_t length,
                     std::uint64_t rowBytes, std::uint64_t height)
    : at_(data),
      end_(data + length),
      rowBytes_(static_cast<std::size_t>(rowBytes)),
      packed_(compression == 1) {
  readable_ = data != nullptr && compression <= 1;
  if (readable_ && packed_) {
    readable_ = height <= length / kRowLengthBytes;
    if (readable_) at_ += height * kRowLengthBytes;
  }
  readable_ = readable_ && canHoldRow(static_cast<std::uint64_t>(end_ - at_), rowBytes, packed_);
  if (readable_ && packed_) row_.resize(rowBytes_);
}

bool PlaneRows::takePacket() {
  if (at_ == end_) return false;
  const auto header = static_cast<std::int8_t>(*at_++);
  if (header >= 0)
    literal_ = static_cast<std::size_t>(header) + 1;
  else if (header != -128)
    repeats_ = 1 - static_cast<std::ptrdiff_t>(header);
  return true;
}

// Writes at most `room` bytes of the packet at hand, and says how many: 0 when its data is missing.
std::size_t PlaneRows::unpack(std::uint8_t* to, std::size_t room) {
  const auto left = static_cast<std::size_t>(end_ - at_);
  if (left == 0) return 0;
  if (literal_ > 0) {
    const std::size_t count = std::min({literal_, room, left});
    std::memcpy(to, at_, count);
    at_ += count;
    literal_ -= count;
    return count;
  }
  const std::size_t count = std::min(repeats_, room);
  std::memset(to, *at_, count);
  repeats_ -= count;
  if (repeats_ == 0) ++at_;
  return count;
}

const std::uint8_t* PlaneRows::next() {
  if (!readable_) return nullptr;
  if (!packed_) {
    if (static_cast<std::size_t>(end_ - at_) < rowBytes_) return nullptr;
    at_ += rowBytes_;
    return at_ - rowBytes_;
  }
  for (std::size_t filled = 0; filled < rowBytes_;) {
    while (literal_ == 0 && repeats_ == 0)
      if (!takePacket()) return nullptr;
    const std::size_t count = unpack(row_.data() + filled, rowBytes_ - filled);
    if (count == 0) return nullptr;
    filled += count;
  }
  return row_.data();
}

}  // namespace tools
