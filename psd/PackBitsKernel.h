#ifndef MORVANE_PSD_PACKBITSKERNEL_H_
#define MORVANE_PSD_PACKBITSKERNEL_H_

#include <cstddef>
#include <cstdint>

// The loops of PackBits over bytes, in two forms that give the same results: portable C++, and one
// for x86 processors with AVX2.

namespace morvane {

constexpr std::size_t kPackBitsMaxRun = 128;

struct PackBitsKernel {
  // packRow() may write this many bytes behind the packed row.
  static constexpr std::size_t kSlack = 16;

  // Where packets are read and bytes written.
  struct Place {
    const std::uint8_t* packed;
    std::uint8_t* to;
  };

  // Packs a row into one packet for each run; returns the end of the packed row.
  std::uint8_t* (*packRow)(const std::uint8_t* row, std::size_t length, std::uint8_t* to);

  // Unpacks packets until the next one is not whole before packedEnd, or does not fit before toEnd;
  // returns where it stopped. It may overwrite bytes before toEnd that it has not reached yet.
  Place (*unpack)(Place from, const std::uint8_t* packedEnd, std::uint8_t* toEnd);
};

// Its packRow() writes nothing behind the packed row.
extern const PackBitsKernel kPortablePackBits;

// Null where the processor or the compiler lacks what it needs.
const PackBitsKernel* avx2PackBits();

// The faster of the two that works here.
const PackBitsKernel& packBitsKernel();

}  // namespace morvane

#endif  // MORVANE_PSD_PACKBITSKERNEL_H_
