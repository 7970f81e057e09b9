#include "bench/Planes.h"

#include <algorithm>
#include <cmath>
#include <random>

namespace bench {
namespace {

void fillFlatArt(Bytes& plane, std::uint32_t side, std::mt19937& random) {
  constexpr int kDiscs = 600;
  for (int disc = 0; disc < kDiscs; ++disc) {
    const auto centreX = static_cast<std::int64_t>(random() % side);
    const auto centreY = static_cast<std::int64_t>(random() % side);
    const auto radius = static_cast<std::int64_t>(2 + random() % (side / 12));
    const auto colour = static_cast<std::uint8_t>(random() % 12 * 20);
    for (std::int64_t y = std::max<std::int64_t>(0, centreY - radius);
         y < std::min<std::int64_t>(side, centreY + radius); ++y) {
      const auto half = static_cast<std::int64_t>(
          std::sqrt(static_cast<double>(radius * radius - (y - centreY) * (y - centreY))));
      const std::int64_t left = std::max<std::int64_t>(0, centreX - half);
      const std::int64_t right = std::min<std::int64_t>(side, centreX + half);
      for (std::int64_t x = left; x < right; ++x) plane[y * side + x] = colour;
    }
  }
}

void fillPhoto(Bytes& plane, std::uint32_t side, std::mt19937& random) {
  const double step = 40.0 / side;
  for (std::uint32_t y = 0; y < side; ++y) {
    for (std::uint32_t x = 0; x < side; ++x) {
      const double wave = std::sin(x * step) + std::sin(y * step * 0.7 + x * step * 0.3);
      plane[std::size_t{y} * side + x] =
          static_cast<std::uint8_t>(128 + 50 * wave + static_cast<double>(random() & 1));
    }
  }
}

}  // namespace

const char* nameOf(Content content) {
  constexpr const char* kNames[] = {"constant", "flat art", "photo", "noise"};
  return kNames[static_cast<int>(content)];
}

Bytes makePlane(Content content, std::uint32_t side, std::uint32_t seed) {
  std::mt19937 random(seed);
  Bytes plane(std::size_t{side} * side, 90);
  if (content == Content::kFlatArt) fillFlatArt(plane, side, random);
  if (content == Content::kPhoto) fillPhoto(plane, side, random);
  if (content == Content::kNoise)
    for (std::uint8_t& byte : plane) byte = static_cast<std::uint8_t>(random());
  return plane;
}

std::string squareOf(std::uint32_t side) {
  return std::to_string(side) + "²";
}

std::uint8_t* packByteByByte(const std::uint8_t* plane, std::uint32_t width, std::uint32_t height,
                             std::uint8_t* to) {
  for (std::uint32_t y = 0; y < height; ++y, plane += width) {
    for (std::uint32_t x = 0; x < width;) {
      std::uint32_t run = 1;
      while (x + run < width && run < 128 && plane[x + run] == plane[x]) ++run;
      *to++ = static_cast<std::uint8_t>(1 - static_cast<int>(run));
      *to++ = plane[x];
      x += run;
    }
  }
  return to;
}

void unpackByteByByte(const std::uint8_t* packed, std::uint8_t* to, std::size_t size) {
  std::uint8_t* const end = to + size;
  while (to != end) {
    const auto header = static_cast<std::int8_t>(*packed++);
    if (header >= 0) {
      for (int i = 0; i <= header && to != end; ++i) *to++ = *packed++;
    } else if (header != -128) {
      for (int i = 0; i < 1 - header && to != end; ++i) *to++ = *packed;
      ++packed;
    }
  }
}

}  // namespace bench
