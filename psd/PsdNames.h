#ifndef MORVANE_PSD_PSDNAMES_H_
#define MORVANE_PSD_PSDNAMES_H_

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace morvane {

constexpr std::size_t kMaxNameLength = 255;  // the length of a name in a file is one byte

// Names in a file are padded to a multiple of this many bytes, the length byte included.
constexpr std::uint32_t kResourceNameAlignment = 2;
constexpr std::uint32_t kLayerNameAlignment = 4;

// The bytes that a name of `length` takes in a file: its length byte, itself, and the padding.
inline std::uint32_t paddedNameSize(std::size_t length, std::uint32_t alignment) {
  return static_cast<std::uint32_t>((1 + length + alignment - 1) / alignment * alignment);
}

// The same for the name of a resource or a layer.
template <typename Record>
std::uint32_t nameFieldSize(const Record& record, std::uint32_t alignment) {
  if (record.nameField.bytes) return record.nameField.length;
  return paddedNameSize(record.name ? std::strlen(record.name.get()) : std::size_t{0}, alignment);
}

}  // namespace morvane

#endif  // MORVANE_PSD_PSDNAMES_H_
