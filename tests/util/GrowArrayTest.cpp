#include "util/GrowArray.h"

#include <gtest/gtest.h>

#include <limits>

namespace morvane {
namespace {

GrowArray<std::int32_t> counted(std::int32_t count) {
  GrowArray<std::int32_t> array;
  for (std::int32_t i = 0; i < count; ++i) array.append(i, 10);
  return array;
}

TEST(GrowArray, GrowsToWhatIsNeededPlusTheSlack) {
  GrowArray<std::int32_t> array;
  EXPECT_EQ(array.append(7, 10), 0);
  EXPECT_EQ(array.capacity(), 11);
  const std::int32_t* const block = array.data();
  for (std::int32_t i = 1; i <= 10; ++i) EXPECT_EQ(array.append(i, 10), i);
  EXPECT_EQ(array.data(), block);
  array.append(11, 10);
  EXPECT_EQ(array.capacity(), 22);
  EXPECT_EQ(array.size(), 12);
  for (std::int32_t i = array.size(); i < array.capacity(); ++i) EXPECT_EQ(array[i], 0);
}

TEST(GrowArray, SetCapacityCutsAndReleases) {
  GrowArray<std::int32_t> array = counted(8);
  EXPECT_EQ(array.setCapacity(5), 1);
  EXPECT_EQ(array.size(), 5);
  EXPECT_EQ(array.capacity(), 5);
  EXPECT_EQ(array[4], 4);
  EXPECT_EQ(array.setCapacity(9), 1);
  EXPECT_EQ(array[8], 0);
  EXPECT_EQ(array.setCapacity(0), 0);
  EXPECT_EQ(array.size(), 0);
  EXPECT_EQ(array.data(), nullptr);
  EXPECT_EQ(array.append(3, 0), 0);
  EXPECT_EQ(array.capacity(), 1);
}

TEST(GrowArray, InsertsWhatFitsAndOtherwiseStaysAsItWas) {
  GrowArray<std::int32_t> array = counted(3);
  const std::int32_t added[] = {-2, -1};
  EXPECT_EQ(array.insert(0, 2, added, 0), 0);
  EXPECT_EQ(array.insert(4, 0, added, 0), 4);
  EXPECT_EQ(array.insert(6, 1, added, 0), -1);
  EXPECT_EQ(array.insert(-1, 1, added, 0), -1);
  array.setCapacity(5);
  EXPECT_EQ(array.append(9, std::numeric_limits<std::uint32_t>::max()), -1);
  ASSERT_EQ(array.size(), 5);
  for (std::int32_t i = 0; i < 5; ++i) EXPECT_EQ(array[i], i - 2);
}

TEST(GrowArray, AppendsItsOwnElementWhileItGrows) {
  GrowArray<std::int32_t> array;
  array.append(42, 0);
  for (int i = 0; i < 5; ++i) array.append(array[0], 0);
  EXPECT_EQ(array[5], 42);
}

}  // namespace
}  // namespace morvane
