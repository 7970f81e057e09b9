#include "host/attribute/Component.h"

#include <gtest/gtest.h>

#include <random>
#include <set>

namespace host {
namespace {

TEST(Component, TextsReadBackAsTheyWere) {
  const struct {
    const char* text;
    const char* back;  // null: refused
  } kCases[] = {
      {"f[3]", "f[3]"},    {"f[0:5]", "f[0:5]"},  {"f[4:4]", "f[4]"},   {"f[*]", "f[*]"},
      {"f[0:*]", "f[*]"},  {"vtx[7]", "vtx[7]"},  {"e[1:2]", "e[1:2]"}, {"map[0]", "map[0]"},
      {"f[5:3]", nullptr}, {"f[-1]", nullptr},    {"f[]", nullptr},     {"f", nullptr},
      {"g[1]", nullptr},   {"f[1", nullptr},      {"", nullptr},        {"f[9999999999]", nullptr},
      {"f[1 ]", nullptr},  {"f[1:2:3]", nullptr},
  };
  for (const auto& c : kCases) {
    const ComponentPtr component = Component::parse(c.text);
    ASSERT_EQ(component != nullptr, c.back != nullptr) << c.text;
    if (component) EXPECT_EQ(component->toTexts(), std::vector<std::string>{c.back});
  }
}

TEST(Component, AHugeRangeCostsNoMoreThanTheMeshHas) {
  const IndexSet faces = parseFaces({"f[2:1999999999]", "vtx[0]", "f[0]"});
  EXPECT_EQ(faces.toIndices(5), (std::vector<int>{0, 2, 3, 4}));
  EXPECT_EQ(parseFaces({"f[3:*]"}).toIndices(5), (std::vector<int>{3, 4}));
}

// Against the same operations on plain sets of numbers.
TEST(Component, SetsOfNumbersAgreeWithPlainSets) {
  constexpr int kCount = 24;
  std::mt19937 random(7);
  for (int round = 0; round < 500; ++round) {
    std::set<int> plain[2];
    IndexSet sets[2];
    for (int side = 0; side < 2; ++side) {
      std::vector<IndexRange> ranges;
      for (auto i = random() % 5; i > 0; --i) {
        const int first = static_cast<int>(random() % kCount);
        const int last = std::min(kCount - 1, first + static_cast<int>(random() % 6));
        ranges.push_back({first, last});
        for (int n = first; n <= last; ++n) plain[side].insert(n);
      }
      sets[side] = IndexSet(ranges);
    }
    const IndexSet united = sets[0].unitedWith(sets[1]);
    const IndexSet without = sets[0].without(sets[1]);
    const IndexSet complement = IndexSet::all().without(sets[0]).below(kCount);
    for (int n = 0; n < kCount; ++n) {
      const bool first = plain[0].count(n) > 0;
      const bool second = plain[1].count(n) > 0;
      EXPECT_EQ(united.contains(n), first || second);
      EXPECT_EQ(without.contains(n), first && !second);
      EXPECT_EQ(complement.contains(n), !first);
    }
    EXPECT_EQ(sets[0].toIndices(kCount).size(), plain[0].size());
    EXPECT_EQ(sets[0] == sets[1], plain[0] == plain[1]);
  }
}

}  // namespace
}  // namespace host
