#include "psd/PlanePacker.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <new>

#include "util/ByteOrder.h"
#include "util/LargePages.h"

namespace morvane {

namespace {

constexpr std::uint64_t kMaxLength = std::numeric_limits<std::uint32_t>::max();

// Room for the first rows. Many planes need no more, and stay in the processor's cache.
constexpr std::uint64_t kFirstRoom = 512 * 1024;

}  // namespace

PlanePacker::PlanePacker(std::uint32_t width, std::uint32_t height)
    : width_(width), height_(height), length_(2 * std::size_t{height}) {}

void PlanePacker::pack(const std::uint8_t* row) {
  if (!reserve(2 * std::uint64_t{width_})) return;
  std::uint8_t* const to = packed_.get() + length_;
  finishRow(static_cast<std::size_t>(kernel_.packRow(row, width_, to) - to));
}

void PlanePacker::packConstant(std::uint8_t value, std::uint32_t count) {
  const std::size_t rowLength = (width_ + kPackBitsMaxRun - 1) / kPackBitsMaxRun * 2;
  if (count == 0 || !reserve(std::uint64_t{count} * rowLength)) return;
  std::uint8_t* at = packed_.get() + length_;
  for (std::size_t left = width_; left != 0; left -= std::min(left, kPackBitsMaxRun)) {
    *at++ = static_cast<std::uint8_t>(1 - static_cast<int>(std::min(left, kPackBitsMaxRun)));
    *at++ = value;
  }
  finishRow(rowLength);
  repeat(count - 1);
}

void PlanePacker::repeat(std::uint32_t count) {
  const std::size_t rowLength = lastRow_;
  if (!reserve(std::uint64_t{count} * rowLength)) return;
  const std::uint8_t* const row = packed_.get() + length_ - rowLength;
  for (; count != 0; --count) {
    std::memcpy(packed_.get() + length_, row, rowLength);
    finishRow(rowLength);
  }
}

std::unique_ptr<std::uint8_t[]> PlanePacker::take(std::uint32_t& packedLength) {
  if (!reserve(0) || rows_ != height_) return nullptr;
  if (capacity_ - length_ > length_ / 8) {  // gives back what is left over
    std::unique_ptr<std::uint8_t[]> exact(new (std::nothrow) std::uint8_t[length_]);
    if (!exact) return nullptr;
    std::memcpy(exact.get(), packed_.get(), length_);
    packed_ = std::move(exact);
  }
  packedLength = static_cast<std::uint32_t>(length_);
  return std::move(packed_);
}

bool PlanePacker::reserve(std::uint64_t size) {
  const bool fits = packed_ && size + PackBitsKernel::kSlack <= capacity_ - length_;
  if (!failed_ && length_ <= kMaxLength && (fits || grow(size))) return true;
  failed_ = true;
  return false;
}

// Makes room for at least `size` more bytes: for all rows that are left, if they pack like those
// before, and a little more.
bool PlanePacker::grow(std::uint64_t size) {
  const std::uint64_t rowsLength = length_ - 2 * height_;
  const std::uint64_t left = height_ - rows_;
  const std::uint64_t expected = rows_ == 0 ? 0 : rowsLength / rows_ * left * 17 / 16;
  const std::uint64_t most = std::max(size, 2 * width_ * left);
  const std::uint64_t room = std::clamp(std::max(expected, kFirstRoom), size, most);
  if (length_ + size > kMaxLength + 2 * width_) return false;
  capacity_ = static_cast<std::size_t>(length_ + room + PackBitsKernel::kSlack);
  std::unique_ptr<std::uint8_t[]> grown(new (std::nothrow) std::uint8_t[capacity_]);
  if (!grown) return false;
  askForLargePages(grown.get(), capacity_);
  if (packed_) std::memcpy(grown.get(), packed_.get(), length_);
  packed_ = std::move(grown);
  return true;
}

void PlanePacker::finishRow(std::size_t length) {
  storeBe16(packed_.get() + 2 * rows_, static_cast<std::uint16_t>(length));
  length_ += length;
  lastRow_ = length;
  ++rows_;
}

}  // namespace morvane
