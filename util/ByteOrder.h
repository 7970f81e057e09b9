#ifndef MORVANE_UTIL_BYTEORDER_H_
#define MORVANE_UTIL_BYTEORDER_H_

#include <cstdint>
#include <cstring>

// Loads and stores of fixed-width numbers at any address, whatever the machine's own byte order.
// Layered images and binary scenes are big-endian; TGA headers and the goblin geometry blob are
// little-endian. Each function touches exactly the bytes of its number.

namespace morvane {

inline std::uint16_t loadBe16(const std::uint8_t* from) {
  return static_cast<std::uint16_t>(from[0] << 8 | from[1]);
}

inline std::uint32_t loadBe32(const std::uint8_t* from) {
  return std::uint32_t{loadBe16(from)} << 16 | loadBe16(from + 2);
}

inline std::uint64_t loadBe64(const std::uint8_t* from) {
  return std::uint64_t{loadBe32(from)} << 32 | loadBe32(from + 4);
}

inline float loadBeFloat(const std::uint8_t* from) {
  const std::uint32_t bits = loadBe32(from);
  float value;
  std::memcpy(&value, &bits, sizeof value);
  return value;
}

inline double loadBeDouble(const std::uint8_t* from) {
  const std::uint64_t bits = loadBe64(from);
  double value;
  std::memcpy(&value, &bits, sizeof value);
  return value;
}

inline std::uint16_t loadLe16(const std::uint8_t* from) {
  return static_cast<std::uint16_t>(from[1] << 8 | from[0]);
}

inline std::uint32_t loadLe32(const std::uint8_t* from) {
  return std::uint32_t{loadLe16(from + 2)} << 16 | loadLe16(from);
}

inline float loadLeFloat(const std::uint8_t* from) {
  const std::uint32_t bits = loadLe32(from);
  float value;
  std::memcpy(&value, &bits, sizeof value);
  return value;
}

inline void storeBe16(std::uint8_t* to, std::uint16_t value) {
  to[0] = static_cast<std::uint8_t>(value >> 8);
  to[1] = static_cast<std::uint8_t>(value);
}

inline void storeBe32(std::uint8_t* to, std::uint32_t value) {
  storeBe16(to, static_cast<std::uint16_t>(value >> 16));
  storeBe16(to + 2, static_cast<std::uint16_t>(value));
}

inline void storeLe16(std::uint8_t* to, std::uint16_t value) {
  to[0] = static_cast<std::uint8_t>(value);
  to[1] = static_cast<std::uint8_t>(value >> 8);
}

inline void storeLe32(std::uint8_t* to, std::uint32_t value) {
  storeLe16(to, static_cast<std::uint16_t>(value));
  storeLe16(to + 2, static_cast<std::uint16_t>(value >> 16));
}

inline void storeLeFloat(std::uint8_t* to, float value) {
  std::uint32_t bits;
  std::memcpy(&bits, &value, sizeof bits);
  storeLe32(to, bits);
}

}  // namespace morvane

#endif  // MORVANE_UTIL_BYTEORDER_H_
