#include "psd/PackBits.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

namespace morvane {
namespace {

using Plane = std::vector<std::uint8_t>;

Plane encodedRow(const Plane& row) {
  std::vector<std::uint8_t> scratch(2 * row.size() + 1);
  std::uint32_t length = 0;
  const auto packed =
      packBitsEncodeRow(static_cast<std::uint32_t>(row.size()), row.data(), scratch.data(), length);
  return Plane(packed.get(), packed.get() + length);
}

Plane encodedPlane(std::uint32_t width, std::uint32_t height, const Plane& plane) {
  std::uint32_t length = 0;
  const auto packed = packBitsEncodePlane(width, height, plane.data(), length);
  return Plane(packed.get(), packed.get() + length);
}

// The decoder gets a copy of exactly that size, so that the sanitizers see a read past its end.
std::unique_ptr<std::uint8_t[]> decoded(std::uint32_t width, std::uint32_t height,
                                        const Plane& packed) {
  const Plane exact(packed);
  return packBitsDecodePlane(width, height, exact.data(), exact.size());
}

TEST(PackBits, PacksRowsIntoRunsOnly) {
  struct {
    Plane row, packed;
  } const cases[] = {{Plane(256, 7), {0x81, 7, 0x81, 7}},
                     {Plane(129, 7), {0x81, 7, 0x00, 7}},
                     {Plane(128, 7), {0x81, 7}},
                     {{5}, {0x00, 5}},
                     {{1, 2, 3}, {0, 1, 0, 2, 0, 3}},
                     {{1, 1, 2, 2, 2, 1}, {0xFF, 1, 0xFE, 2, 0, 1}},
                     {{}, {}}};
  for (const auto& test : cases) EXPECT_EQ(encodedRow(test.row), test.packed);
}

TEST(PackBits, PutsRowLengthsBeforeTheRows) {
  EXPECT_EQ(encodedPlane(3, 2, {1, 1, 1, 2, 3, 3}), (Plane{0, 2, 0, 4, 0xFE, 1, 0x00, 2, 0xFF, 3}));
  EXPECT_EQ(encodedPlane(0, 2, {}), (Plane{0, 0, 0, 0}));
  Plane wide(33000);
  for (std::size_t i = 0; i < wide.size(); ++i) wide[i] = static_cast<std::uint8_t>(i);
  const Plane packed =
      encodedPlane(33000, 1, wide);  // 66000 bytes, of whose count 16 bits are kept
  EXPECT_EQ(packed.size(), 66002u);
  EXPECT_EQ(packed[0] << 8 | packed[1], 66000 - 65536);
}

TEST(PackBits, DecodesWhatItEncodes) {
  std::mt19937 random(1);
  for (int round = 0; round < 300; ++round) {
    const auto width = static_cast<std::uint32_t>(random() % 400);
    const auto height = static_cast<std::uint32_t>(random() % 6);
    const std::size_t repeat = 1 + random() % 200;
    Plane plane(std::size_t{width} * height);
    for (auto& byte : plane)
      byte = random() % repeat == 0 ? static_cast<std::uint8_t>(random()) : 9;
    const auto back = decoded(width, height, encodedPlane(width, height, plane));
    ASSERT_TRUE(back);
    ASSERT_EQ(Plane(back.get(), back.get() + plane.size()), plane) << width << 'x' << height;
  }
}

TEST(PackBits, EncodesAFilledPlaneAsItsWholePlane) {
  std::mt19937 random(2);
  for (const auto& [width, height] : {std::pair(1u, 1u), {5u, 4u}, {300u, 3u}, {129u, 2u}}) {
    for (std::uint32_t head = 0; head <= width * height; ++head) {
      Plane plane(std::size_t{width} * height, 0xFF);
      for (std::uint32_t i = 0; i < head; ++i)
        plane[i] = static_cast<std::uint8_t>(random() % 3 - 1);
      std::uint32_t length = 0;
      const auto packed =
          packBitsEncodeFilledPlane(width, height, plane.data(), head, 0xFF, length);
      ASSERT_EQ(Plane(packed.get(), packed.get() + length), encodedPlane(width, height, plane))
          << width << 'x' << height << ' ' << head;
    }
  }
}

TEST(PackBits, DecodesPacketsOfEveryForm) {
  const Plane expected = {1, 2, 3, 4, 4, 4};
  const Plane cases[] = {
      {9, 9, 9, 9, 0, 1, 0, 2, 0, 3, 0xFE, 4},                    // runs of one, lengths that lie
      {0, 0, 0, 0, 2, 1, 2, 3, 0xFE, 4},                          // a literal
      {0, 0, 0, 0, 0x80, 2, 1, 2, 3, 0x80, 0x80, 0xFE, 4, 0x80},  // headers that hold nothing
      {0, 0, 0, 0, 3, 1, 2, 3, 4, 0xFF, 4},                       // a packet across the rows' end
      {0, 0, 0, 0, 2, 1, 2, 3, 0x81, 4},                          // a run beyond the plane
      {0, 0, 0, 0, 6, 1, 2, 3, 4, 4, 4},  // a literal beyond it, cut as well
  };
  for (const Plane& packed : cases) {
    const auto plane = decoded(3, 2, packed);
    ASSERT_TRUE(plane) << packed.size();
    EXPECT_EQ(Plane(plane.get(), plane.get() + 6), expected);
  }
}

TEST(PackBits, RefusesDataThatEndsBeforeThePlaneIsFull) {
  const Plane whole = {0, 0, 0, 0, 2, 1, 2, 3, 0xFE, 4};
  for (std::size_t size = 0; size < whole.size(); ++size) {
    EXPECT_FALSE(decoded(3, 2, Plane(whole.begin(), whole.begin() + static_cast<long>(size))))
        << size;
  }
  // Two bytes give 128 at most, so that no memory is taken for the four gigabytes asked for here.
  EXPECT_FALSE(decoded(1u << 31, 2, Plane(1000, 0x81)));
}

}  // namespace
}  // namespace morvane
