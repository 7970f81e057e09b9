#include "psd/PackBits.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <new>

#include "util/ByteOrder.h"

namespace morvane {

namespace {

using Array = std::unique_ptr<std::uint8_t[]>;

constexpr std::size_t kMaxRun = 128;

Array allocated(std::size_t size) {
  return Array(new (std::nothrow) std::uint8_t[size]);
}

// The end of the run of equal bytes at `from`, cut at 128 of them.
const std::uint8_t* runEnd(const std::uint8_t* from, const std::uint8_t* end) {
  const auto left = static_cast<std::size_t>(end - from);
  const std::uint8_t* const limit = from + std::min(left, kMaxRun);
  const std::uint64_t eight = *from * 0x0101010101010101u;
  const std::uint8_t* at = from + 1;
  while (limit - at >= 8 && std::memcmp(at, &eight, 8) == 0) at += 8;
  while (at != limit && *at == *from) ++at;
  return at;
}

std::uint8_t* packRow(const std::uint8_t* row, std::size_t length, std::uint8_t* to) {
  const std::uint8_t* const end = row + length;
  while (row != end) {
    const std::uint8_t* const next = runEnd(row, end);
    *to++ = static_cast<std::uint8_t>(1 - (next - row));
    *to++ = *row;
    row = next;
  }
  return to;
}

std::size_t packedRowLength(const std::uint8_t* row, std::size_t length) {
  const std::uint8_t* const end = row + length;
  std::size_t packed = 0;
  for (; row != end; row = runEnd(row, end)) packed += 2;
  return packed;
}

// A plane that is laid out in memory only as far as its head goes.
struct FilledPlane {
  std::size_t width;
  std::size_t height;
  const std::uint8_t* head;
  std::size_t headLength;
  std::uint8_t fill;

  std::size_t wholeHeadRows() const { return width == 0 ? height : headLength / width; }
  bool hasMixedRow() const { return wholeHeadRows() * width < headLength; }
  std::size_t constantRows() const { return height - wholeHeadRows() - (hasMixedRow() ? 1 : 0); }
  std::size_t constantRowLength() const { return (width + kMaxRun - 1) / kMaxRun * 2; }
};

// The row in which the head ends; null when there is none or memory runs out.
Array mixedRow(const FilledPlane& plane) {
  if (!plane.hasMixedRow()) return nullptr;
  Array row = allocated(plane.width);
  if (!row) return nullptr;
  const std::size_t start = plane.wholeHeadRows() * plane.width;
  std::memset(row.get(), plane.fill, plane.width);
  std::memcpy(row.get(), plane.head + start, plane.headLength - start);
  return row;
}

std::uint64_t packedLengthOf(const FilledPlane& plane, const std::uint8_t* mixed) {
  std::uint64_t length = 2 * std::uint64_t{plane.height};
  for (std::size_t row = 0; row < plane.wholeHeadRows(); ++row) {
    length += packedRowLength(plane.head + row * plane.width, plane.width);
  }
  if (mixed) length += packedRowLength(mixed, plane.width);
  return length + std::uint64_t{plane.constantRows()} * plane.constantRowLength();
}

// Writes rows one after another, each row's length into the table before them.
class RowWriter {
 public:
  RowWriter(std::uint8_t* packed, std::size_t height) : table_(packed), to_(packed + 2 * height) {}

  void pack(const std::uint8_t* row, std::size_t width) { finish(packRow(row, width, to_)); }

  // Packs a row of equal bytes `count` times.
  void packConstant(std::uint8_t value, std::size_t width, std::size_t count) {
    if (count == 0) return;
    std::uint8_t* const first = to_;
    std::uint8_t* at = to_;
    for (std::size_t left = width; left != 0; left -= std::min(left, kMaxRun)) {
      *at++ = static_cast<std::uint8_t>(1 - static_cast<int>(std::min(left, kMaxRun)));
      *at++ = value;
    }
    finish(at);
    const auto length = static_cast<std::size_t>(at - first);
    for (std::size_t row = 1; row < count; ++row) {
      std::memcpy(to_, first, length);
      finish(to_ + length);
    }
  }

 private:
  void finish(std::uint8_t* rowEnd) {
    storeBe16(table_, static_cast<std::uint16_t>(rowEnd - to_));
    table_ += 2;
    to_ = rowEnd;
  }

  std::uint8_t* table_;
  std::uint8_t* to_;
};

Array encodeFilled(const FilledPlane& plane, std::uint32_t& packedLength) {
  const Array mixed = mixedRow(plane);
  if (plane.hasMixedRow() && !mixed) return nullptr;
  const std::uint64_t length = packedLengthOf(plane, mixed.get());
  if (length > std::numeric_limits<std::uint32_t>::max()) return nullptr;
  Array packed = allocated(static_cast<std::size_t>(length));
  if (!packed) return nullptr;
  RowWriter out(packed.get(), plane.height);
  for (std::size_t row = 0; row < plane.wholeHeadRows(); ++row) {
    out.pack(plane.head + row * plane.width, plane.width);
  }
  if (mixed) out.pack(mixed.get(), plane.width);
  out.packConstant(plane.fill, plane.width, plane.constantRows());
  packedLength = static_cast<std::uint32_t>(length);
  return packed;
}

}  // namespace

std::unique_ptr<std::uint8_t[]> packBitsEncodeRow(std::uint32_t rowLength, const std::uint8_t* row,
                                                  std::uint8_t* scratch,
                                                  std::uint32_t& packedLength) {
  const auto length = static_cast<std::size_t>(packRow(row, rowLength, scratch) - scratch);
  Array packed = allocated(length);
  if (!packed) return nullptr;
  if (length != 0) std::memcpy(packed.get(), scratch, length);
  packedLength = static_cast<std::uint32_t>(length);
  return packed;
}

std::unique_ptr<std::uint8_t[]> packBitsEncodePlane(std::uint32_t width, std::uint32_t height,
                                                    const std::uint8_t* plane,
                                                    std::uint32_t& packedLength) {
  return encodeFilled({width, height, plane, std::size_t{width} * height, 0}, packedLength);
}

std::unique_ptr<std::uint8_t[]> packBitsEncodeFilledPlane(std::uint32_t width, std::uint32_t height,
                                                          const std::uint8_t* head,
                                                          std::size_t headLength, std::uint8_t fill,
                                                          std::uint32_t& packedLength) {
  return encodeFilled({width, height, head, headLength, fill}, packedLength);
}

std::unique_ptr<std::uint8_t[]> packBitsDecodePlane(std::uint32_t width, std::uint32_t height,
                                                    const std::uint8_t* packed,
                                                    std::size_t packedLength) {
  const std::uint64_t table = 2 * std::uint64_t{height};
  const std::uint64_t size = std::uint64_t{width} * height;
  if (packedLength < table || size / kMaxPackBitsExpansion > packedLength - table) return nullptr;
  Array plane = allocated(static_cast<std::size_t>(size));
  if (!plane) return nullptr;
  const bool filled = packBitsDecode(packed + table, packedLength - static_cast<std::size_t>(table),
                                     plane.get(), static_cast<std::size_t>(size));
  return filled ? std::move(plane) : nullptr;
}

bool packBitsDecode(const std::uint8_t* packed, std::size_t packedLength, std::uint8_t* to,
                    std::size_t size) {
  const std::uint8_t* const end = packed + packedLength;
  std::uint8_t* const toEnd = to + size;
  while (to != toEnd) {
    if (end - packed < 2) return false;
    const auto header = static_cast<std::int8_t>(*packed++);
    if (header == -128) continue;
    const auto room = static_cast<std::size_t>(toEnd - to);
    const std::size_t count =
        std::min(room, static_cast<std::size_t>(header >= 0 ? 1 + header : 1 - header));
    if (header < 0) {
      std::memset(to, *packed++, count);
    } else {
      if (static_cast<std::size_t>(end - packed) < count) return false;
      std::memcpy(to, packed, count);
      packed += count;
    }
    to += count;
  }
  return true;
}

}  // namespace morvane
