#ifndef MORVANE_BENCH_PLANES_H_
#define MORVANE_BENCH_PLANES_H_

#include <cstdint>
#include <string>
#include <vector>

// Image planes of the kinds that textures are made of, the same in every run.
namespace bench {

using Bytes = std::vector<std::uint8_t>;

enum class Content {
  kConstant,
  kFlatArt,  // overlapping discs of few colours: runs of some tens of bytes
  kPhoto,    // slow gradients with the last bit at random: runs of about two bytes
  kNoise
};

const char* nameOf(Content content);

// side x side bytes.
Bytes makePlane(Content content, std::uint32_t side, std::uint32_t seed = 1);

// "4096²"
std::string squareOf(std::uint32_t side);

// The straightforward way to pack and to unpack, one byte at a time: what the library's is measured
// against. Packs rows into runs of at most 128, without their lengths; returns the end of what was
// written.
std::uint8_t* packByteByByte(const std::uint8_t* plane, std::uint32_t width, std::uint32_t height,
                             std::uint8_t* to);
void unpackByteByByte(const std::uint8_t* packed, std::uint8_t* to, std::size_t size);

}  // namespace bench

#endif  // MORVANE_BENCH_PLANES_H_
