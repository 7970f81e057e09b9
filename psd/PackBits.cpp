#include "psd/PackBits.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <new>

#include "psd/PackBitsKernel.h"
#include "psd/PlanePacker.h"

namespace morvane {

namespace {

using Array = std::unique_ptr<std::uint8_t[]>;

Array allocated(std::size_t size) {
  return Array(new (std::nothrow) std::uint8_t[size]);
}

// Unpacks the beginning of a packet that gives more than the remaining `size` bytes. False when
// there is no such packet.
bool unpackCut(const std::uint8_t* packed, std::size_t packedLength, std::uint8_t* to,
               std::size_t size) {
  if (packedLength < 2) return false;
  const auto header = static_cast<std::int8_t>(*packed++);
  if (header < 0) {
    std::memset(to, *packed, size);
    return true;
  }
  if (static_cast<std::size_t>(header) < size || packedLength - 1 < size) return false;
  std::memcpy(to, packed, size);
  return true;
}

// The length of the packets that give a row; 0 when none end with it.
std::size_t rowPackets(const std::uint8_t* packets, std::size_t length, std::size_t width) {
  std::size_t at = 0;
  while (width != 0) {
    if (at == length) return 0;
    const auto header = static_cast<std::int8_t>(packets[at++]);
    if (header == -128) continue;
    const auto count = static_cast<std::size_t>(1 + std::abs(header));
    const std::size_t data = header < 0 ? 1 : count;
    if (count > width || data > length - at) return 0;
    at += data;
    width -= count;
  }
  return at;
}

// How many times in a row the first `period` bytes repeat, at most `most`.
std::uint32_t repetitions(const std::uint8_t* bytes, std::size_t length, std::size_t period,
                          std::uint32_t most) {
  std::uint32_t count = 1;
  for (; count < most && period <= length - count * period; ++count)
    if (std::memcmp(bytes + count * period, bytes, period) != 0) break;
  return count;
}

}  // namespace

std::unique_ptr<std::uint8_t[]> packBitsEncodeRow(std::uint32_t rowLength, const std::uint8_t* row,
                                                  std::uint8_t* scratch,
                                                  std::uint32_t& packedLength) {
  const std::uint8_t* const end = kPortablePackBits.packRow(row, rowLength, scratch);
  const auto length = static_cast<std::size_t>(end - scratch);
  Array packed = allocated(length);
  if (!packed) return nullptr;
  if (length != 0) std::memcpy(packed.get(), scratch, length);
  packedLength = static_cast<std::uint32_t>(length);
  return packed;
}

std::unique_ptr<std::uint8_t[]> packBitsEncodePlane(std::uint32_t width, std::uint32_t height,
                                                    const std::uint8_t* plane,
                                                    std::uint32_t& packedLength) {
  PlanePacker packer(width, height);
  for (std::uint32_t row = 0; row < height; ++row) packer.pack(plane + std::size_t{row} * width);
  return packer.take(packedLength);
}

std::unique_ptr<std::uint8_t[]> packBitsEncodeFilledPlane(std::uint32_t width, std::uint32_t height,
                                                          const std::uint8_t* head,
                                                          std::size_t headLength, std::uint8_t fill,
                                                          std::uint32_t& packedLength) {
  PlanePacker packer(width, height);
  const auto headRows = static_cast<std::uint32_t>(width == 0 ? 0 : headLength / width);
  for (std::uint32_t row = 0; row < headRows; ++row) packer.pack(head + std::size_t{row} * width);
  const std::size_t packedHead = std::size_t{headRows} * width;
  const std::uint32_t mixedRows = packedHead < headLength ? 1 : 0;
  if (mixedRows != 0) {  // the row in which the head ends
    const Array row = allocated(width);
    if (!row) return nullptr;
    std::memset(row.get(), fill, width);
    std::memcpy(row.get(), head + packedHead, headLength - packedHead);
    packer.pack(row.get());
  }
  packer.packConstant(fill, height - headRows - mixedRows);
  return packer.take(packedLength);
}

std::unique_ptr<std::uint8_t[]> packBitsDecodePlane(std::uint32_t width, std::uint32_t height,
                                                    const std::uint8_t* packed,
                                                    std::size_t packedLength) {
  return packBitsDecodeStart(height, packed, packedLength, std::size_t{width} * height);
}

std::unique_ptr<std::uint8_t[]> packBitsDecodeStart(std::uint32_t height,
                                                    const std::uint8_t* packed,
                                                    std::size_t packedLength, std::size_t size) {
  const std::size_t table = 2 * std::size_t{height};
  if (packedLength < table || size / kMaxPackBitsExpansion > packedLength - table) return nullptr;
  Array plane = allocated(size);
  if (!plane) return nullptr;
  const bool filled = packBitsDecode(packed + table, packedLength - table, plane.get(), size);
  return filled ? std::move(plane) : nullptr;
}

std::unique_ptr<std::uint8_t[]> packBitsRepack(std::uint32_t width, std::uint32_t height,
                                               const std::uint8_t* packets,
                                               std::size_t packetsLength,
                                               std::uint32_t& packedLength) {
  constexpr std::size_t kMostUnpacked = 64 * 1024;  // stays in the processor's cache
  const std::uint8_t* const end = packets + packetsLength;
  std::uint64_t left = std::uint64_t{width} * height;  // bytes that are not unpacked yet
  const std::size_t size = std::max<std::size_t>(width, kMostUnpacked) + kPackBitsMaxRun;
  const Array rows = allocated(size);
  if (!rows) return nullptr;
  PlanePacker packer(width, height);
  // In a plane of one value, such as a blank image, all packed rows are equal.
  if (const std::size_t first = rowPackets(packets, packetsLength, width)) {
    const std::uint32_t alike = repetitions(packets, packetsLength, first, height);
    packBitsDecode(packets, first, rows.get(), width);
    packer.pack(rows.get());
    packer.repeat(alike - 1);
    packets += alike * first;
    left -= std::uint64_t{alike} * width;
  }
  for (std::size_t held = 0; left != 0;) {
    const std::size_t room = size - held;
    std::uint8_t* const to = rows.get() + held;
    PackBitsKernel::Place at = {packets, to + left};
    if (left > room) {  // stops less than one packet short of the room
      at = packBitsKernel().unpack({packets, to}, end, to + room);
    } else if (!packBitsDecode(packets, static_cast<std::size_t>(end - packets), to,
                               static_cast<std::size_t>(left))) {
      return nullptr;
    }
    packets = at.packed;
    left -= static_cast<std::uint64_t>(at.to - to);
    const std::uint8_t* row = rows.get();
    if (at.to - row < width) return nullptr;  // the packets have ended
    for (; at.to - row >= width; row += width) packer.pack(row);
    held = static_cast<std::size_t>(at.to - row);
    std::memmove(rows.get(), row, held);
  }
  return packer.take(packedLength);
}

bool packBitsDecode(const std::uint8_t* packed, std::size_t packedLength, std::uint8_t* to,
                    std::size_t size) {
  const std::uint8_t* const packedEnd = packed + packedLength;
  std::uint8_t* const toEnd = to + size;
  const PackBitsKernel::Place end = packBitsKernel().unpack({packed, to}, packedEnd, toEnd);
  return end.to == toEnd || unpackCut(end.packed, static_cast<std::size_t>(packedEnd - end.packed),
                                      end.to, static_cast<std::size_t>(toEnd - end.to));
}

}  // namespace morvane
