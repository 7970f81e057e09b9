#include "psd/PlaneRows.h"

#include <algorithm>
#include <cstring>
#include <new>

#include "psd/PackBits.h"
#include "psd/PackBitsKernel.h"

namespace morvane {
namespace {

constexpr std::uint16_t kPacked = 1;
constexpr std::uint64_t kRowLengthBytes = 2;
constexpr std::size_t kLeastUnpacked = 4096;  // narrow rows are unpacked many at a time

}  // namespace

PlaneRows::PlaneRows(std::uint16_t compression, const std::uint8_t* data, std::size_t length,
                     std::uint64_t rowBytes, std::uint64_t height)
    : at_(data),
      end_(data == nullptr ? nullptr : data + length),
      rowBytes_(static_cast<std::size_t>(rowBytes)),
      packed_(compression == kPacked) {
  if (data == nullptr || compression > kPacked) return;
  std::uint64_t held = length;
  if (packed_) {
    if (height > length / kRowLengthBytes) return;
    at_ += height * kRowLengthBytes;
    held = static_cast<std::uint64_t>(end_ - at_) * kMaxPackBitsExpansion;
  }
  readable_ = rowBytes <= held;
  mayBeWhole_ = rowBytes == 0 || height <= held / rowBytes;
  if (!readable_ || !packed_) return;
  left_ = rowBytes * height;
  capacity_ = std::max(rowBytes_, kLeastUnpacked) + kPackBitsMaxRun;
  unpacked_.reset(new (std::nothrow) std::uint8_t[capacity_]);
  readable_ = unpacked_ != nullptr;
}

// Unpacks as much as there is room for. When less than a packet's room is left, a whole row is
// there.
bool PlaneRows::fill() {
  std::memmove(unpacked_.get(), unpacked_.get() + begin_, held_);
  begin_ = 0;
  std::uint8_t* const to = unpacked_.get() + held_;
  const std::size_t room = capacity_ - held_;
  const bool isEnd = left_ <= room;
  const std::size_t wanted = isEnd ? static_cast<std::size_t>(left_) : room;
  PackBitsKernel::Place at = packBitsKernel().unpack({at_, to}, end_, to + wanted);
  const std::size_t rest = wanted - static_cast<std::size_t>(at.to - to);
  // What the last packet holds beyond the plane is cut.
  if (isEnd && packBitsDecode(at.packed, static_cast<std::size_t>(end_ - at.packed), at.to, rest))
    at = {end_, to + wanted};
  at_ = at.packed;
  left_ -= static_cast<std::uint64_t>(at.to - to);
  held_ += static_cast<std::size_t>(at.to - to);
  return held_ >= rowBytes_;
}

const std::uint8_t* PlaneRows::next() {
  if (!readable_) return nullptr;
  if (!packed_) {
    if (static_cast<std::size_t>(end_ - at_) < rowBytes_) return nullptr;
    at_ += rowBytes_;
    return at_ - rowBytes_;
  }
  if (held_ < rowBytes_ && !fill()) return nullptr;
  const std::uint8_t* const row = unpacked_.get() + begin_;
  begin_ += rowBytes_;
  held_ -= rowBytes_;
  return row;
}

}  // namespace morvane
