#ifndef MORVANE_PSD_PACKBITS_H_
#define MORVANE_PSD_PACKBITS_H_

#include <cstddef>
#include <cstdint>
#include <memory>

// The PackBits run-length scheme, as layered images use it for planes of bytes. A packed plane is
// `height` big-endian 16-bit row lengths, then the packed rows. A packet is a signed header n and
// data: 0 to 127: n + 1 literal bytes; -1 to -127: one byte, repeated 1 - n times; -128: nothing.
//
// Results are made with array new and belong to the caller; null when memory runs out.

namespace morvane {

constexpr std::size_t kMaxPackBitsExpansion = 64;  // a packet of two bytes gives at most 128

// Packs one row into two-byte packets, one for each run of up to 128 equal bytes, and no others.
// `scratch` has room for 2 x rowLength bytes.
std::unique_ptr<std::uint8_t[]> packBitsEncodeRow(std::uint32_t rowLength, const std::uint8_t* row,
                                                  std::uint8_t* scratch,
                                                  std::uint32_t& packedLength);

// Packs width x height bytes. A row longer than 32767 bytes may have a packed length that needs
// more than 16 bits: only the low 16 are stored. Null also when the packed plane would not fit 32
// bits.
std::unique_ptr<std::uint8_t[]> packBitsEncodePlane(std::uint32_t width, std::uint32_t height,
                                                    const std::uint8_t* plane,
                                                    std::uint32_t& packedLength);

// The same for a plane that starts with `headLength` bytes (at most width x height) and holds
// `fill` from there on; the plane itself is never laid out.
std::unique_ptr<std::uint8_t[]> packBitsEncodeFilledPlane(std::uint32_t width, std::uint32_t height,
                                                          const std::uint8_t* head,
                                                          std::size_t headLength, std::uint8_t fill,
                                                          std::uint32_t& packedLength);

// Unpacks a plane of width x height bytes. The row lengths are skipped, and the packets are read as
// one stream: a packet may run across the end of a row, and what it holds beyond the plane is cut.
// Null when the packed data ends before the plane is full; then no memory was taken for the missing
// part.
std::unique_ptr<std::uint8_t[]> packBitsDecodePlane(std::uint32_t width, std::uint32_t height,
                                                    const std::uint8_t* packed,
                                                    std::size_t packedLength);

// The first `size` bytes of a plane alone, unpacked in the same way.
std::unique_ptr<std::uint8_t[]> packBitsDecodeStart(std::uint32_t height,
                                                    const std::uint8_t* packed,
                                                    std::size_t packedLength, std::size_t size);

// Packs a plane that is given as packets of any form, without row lengths. Only some rows of the
// plane are held at a time. Null also when the packets end before the plane is full.
std::unique_ptr<std::uint8_t[]> packBitsRepack(std::uint32_t width, std::uint32_t height,
                                               const std::uint8_t* packets,
                                               std::size_t packetsLength,
                                               std::uint32_t& packedLength);

// Unpacks packets, without row lengths, until `size` bytes are written. False when the packets end
// before.
bool packBitsDecode(const std::uint8_t* packed, std::size_t packedLength, std::uint8_t* to,
                    std::size_t size);

}  // namespace morvane

#endif  // MORVANE_PSD_PACKBITS_H_
