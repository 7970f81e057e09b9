#include "psd/PackBits.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

#include "psd/PlanePacker.h"
#include "psd/PlaneRows.h"

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

// All rows of a packed plane, one by one; fewer when the data ends before.
Plane rowsOf(std::uint32_t width, std::uint32_t height, const Plane& packed) {
  PlaneRows rows(1, packed.data(), packed.size(), width, height);
  Plane plane;
  for (std::uint32_t y = 0; y < height && rows.mayBeWhole(); ++y) {
    const std::uint8_t* const row = rows.next();
    if (row == nullptr) break;
    plane.insert(plane.end(), row, row + width);
  }
  return plane;
}

// The decoder gets a copy of exactly that size, so that the sanitizers see a read past its end. A
// plane that is unpacked row by row is the same, or ends early as well.
std::unique_ptr<std::uint8_t[]> decoded(std::uint32_t width, std::uint32_t height,
                                        const Plane& packed) {
  const Plane exact(packed);
  const Plane rows = rowsOf(width, height, exact);
  auto plane = packBitsDecodePlane(width, height, exact.data(), exact.size());
  const std::size_t size = std::size_t{width} * height;
  EXPECT_EQ(rows.size() == size, plane != nullptr) << width << " x " << height;
  EXPECT_TRUE(!plane || std::equal(rows.begin(), rows.end(), plane.get()));
  return plane;
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

// Long enough for loops that take many bytes at once. fuzz/PackBitsFuzz.cpp compares those and the
// portable ones with a plain decoder.
TEST(PackBits, DecodesLongPackets) {
  Plane packed(2), expected;
  for (int length = 1; length <= 128; ++length) {
    packed.push_back(static_cast<std::uint8_t>(length - 1));
    for (int i = 0; i < length; ++i) packed.push_back(static_cast<std::uint8_t>(i * length));
    expected.insert(expected.end(), packed.end() - length, packed.end());
    if (length == 1) continue;
    packed.insert(packed.end(), {static_cast<std::uint8_t>(257 - length), 99});
    expected.insert(expected.end(), length, 99);
  }
  const auto width = static_cast<std::uint32_t>(expected.size());
  const auto plane = decoded(width, 1, packed);
  ASSERT_TRUE(plane);
  EXPECT_EQ(Plane(plane.get(), plane.get() + width), expected);
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

// Bytes in runs of the lengths that make a difference to vectors of 32 bytes and packets of 128.
Plane runsOf(std::mt19937& random, std::size_t size) {
  constexpr std::size_t kLengths[] = {1,  1,  1,  2,  3,   15,  16,  17,
                                      31, 32, 33, 64, 127, 128, 129, 300};
  const std::size_t kinds = 1 + random() % std::size(kLengths);
  Plane bytes;
  while (bytes.size() < size) {
    const auto next =
        static_cast<std::uint8_t>(bytes.empty() ? 0 : bytes.back() + 1 + random() % 9);
    bytes.insert(bytes.end(), kLengths[random() % kinds], next);
  }
  bytes.resize(size);
  return bytes;
}

// Packets of every form, as other programs may mix them.
Plane packetsOf(std::mt19937& random, std::size_t count) {
  Plane packed;
  const auto kind = random() % 4;  // single bytes, short runs, spare headers as well, anything
  for (; count != 0; --count) {
    const auto any = static_cast<std::uint32_t>(random());
    const std::uint32_t header = kind == 0   ? (any % 40 == 0 ? any >> 8 : 0)
                                 : kind == 1 ? 256 - any % 17
                                 : kind == 2 ? (any % 3 == 0 ? 0x80 : any >> 8)
                                             : any >> 8;
    packed.push_back(static_cast<std::uint8_t>(header));
    const auto asSigned = static_cast<std::int8_t>(packed.back());
    const int data = asSigned == -128 ? 0 : asSigned < 0 ? 1 : asSigned + 1;
    for (int i = 0; i < data; ++i) packed.push_back(static_cast<std::uint8_t>(random()));
  }
  return packed;
}

// Rows that pack to little and then to much, so that the room first made for them does not do.
TEST(PackBits, PacksPlanesThatOutgrowTheirRoom) {
  constexpr std::uint32_t kWidth = 3000, kHeight = 1200;
  std::mt19937 random(5);
  Plane plane(kWidth * kHeight, 7);
  for (std::size_t i = 400 * kWidth; i < plane.size(); ++i)
    plane[i] = static_cast<std::uint8_t>(i < 800 * kWidth ? i : random() % 2);
  Plane rows, table;
  for (std::uint32_t y = 0; y < kHeight; ++y) {
    const auto start = plane.begin() + y * kWidth;
    const Plane row = encodedRow(Plane(start, start + kWidth));
    table.insert(table.end(), {static_cast<std::uint8_t>(row.size() >> 8),
                               static_cast<std::uint8_t>(row.size())});
    rows.insert(rows.end(), row.begin(), row.end());
  }
  table.insert(table.end(), rows.begin(), rows.end());
  EXPECT_EQ(encodedPlane(kWidth, kHeight, plane), table);
  PlanePacker unfinished(3, 2);
  unfinished.packConstant(1, 1);
  std::uint32_t length = 0;
  EXPECT_FALSE(unfinished.take(length));
}

// Rows that are alike, packets across the ends of rows, and planes that are not filled; and that
// what it packs unpacks to the same.
TEST(PackBits, RepacksWhatItUnpacksAndUnpacksWhatItPacks) {
  std::mt19937 random(6);
  int filled = 0;
  for (int round = 0; round < 1500; ++round) {
    const auto width = static_cast<std::uint32_t>(1 + random() % 300);
    const auto height = static_cast<std::uint32_t>(1 + random() % (round % 20 == 0 ? 600 : 6));
    const Plane row = encodedRow(runsOf(random, width));
    Plane packed(2 * height);  // no row's length matters
    for (auto alike = random() % (height + 1); alike != 0; --alike)
      packed.insert(packed.end(), row.begin(), row.end());
    const Plane others = packetsOf(random, random() % (2 * height));
    packed.insert(packed.end(), others.begin(), others.end());
    packed.shrink_to_fit();
    std::uint32_t length = 0;
    const auto repacked = packBitsRepack(width, height, packed.data() + 2 * height,
                                         packed.size() - 2 * height, length);
    const auto plane = decoded(width, height, packed);
    ASSERT_EQ(repacked != nullptr, plane != nullptr) << "round " << round;
    if (!plane) continue;
    ++filled;
    const Plane whole(plane.get(), plane.get() + std::size_t{width} * height);
    const Plane wanted = encodedPlane(width, height, whole);
    ASSERT_EQ(Plane(repacked.get(), repacked.get() + length), wanted);
    const auto again = decoded(width, height, wanted);
    ASSERT_TRUE(again && std::equal(whole.begin(), whole.end(), again.get())) << "round " << round;
  }
  EXPECT_GT(filled, 300);
}

}  // namespace
}  // namespace morvane
