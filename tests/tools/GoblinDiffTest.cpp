#include "tools/model/GoblinDiff.h"

#include <gtest/gtest.h>

#include <functional>
#include <limits>

#include "tests/tools/Triangles.h"

namespace tools {
namespace {

using morvane::GoblinBlobKind;

// "moved 1>2 a 0.5 0 0", in the order of the result; numbers from 1, "-" for none.
std::string told(const Goblins& before, const Goblins& after) {
  const GoblinSide sides[] = {GoblinSide(before), GoblinSide(after)};
  std::string text;
  const auto number = [](const std::optional<std::size_t>& n) {
    return n ? std::to_string(*n + 1) : std::string("-");
  };
  for (const GoblinChange& change : diffGoblins(sides[0], sides[1]).changes) {
    text += std::string(text.empty() ? "" : "; ") + fateName(change.fate) + ' ' +
            number(change.before) + '>' + number(change.after) + ' ' +
            changedName(change, sides[0], sides[1]);
    for (const std::string& what : change.what) text += ", " + what;
    if (change.by != std::array<float, 3>{})
      text += " by " + std::to_string(change.by[0]).substr(0, 4);
  }
  return text;
}

Goblins named(const std::vector<std::string>& names) {
  return triangle(GoblinBlobKind::kNamed, names);
}

void shift(Goblins& goblins, std::size_t goblin, float by) {
  for (std::size_t i = 3 * goblin; i < 3 * goblin + 3; ++i) goblins.pool[i].x += by;
}

TEST(GoblinDiff, TellsWhatHappenedToEachGoblin) {
  const auto moved = [](std::size_t goblin, float by) {
    return [goblin, by](Goblins& goblins) { shift(goblins, goblin, by); };
  };
  const struct {
    std::vector<std::string> before, after;
    std::function<void(Goblins&)> change;
    const char* told;
  } cases[] = {
      {{"a", "b"}, {"a", "b"}, nullptr, ""},
      {{"a", "b"}, {"b", "c", "a"}, moved(1, 2), "added ->2 c"},
      {{"a", "b"}, {"a"}, nullptr, "gone 2>- b"},
      {{"a"}, {"a"}, moved(0, 0.5F), "moved 1>1 a by 0.50"},
      {{"a"}, {"a"}, moved(0, 0.0000005F), ""},
      {{"a"}, {"b"}, nullptr, "changed 1>1 b, name"},
      {{"a"}, {"b"}, moved(0, 0.5F), "added ->1 b; gone 1>- a"},
      {{"a", "a"}, {"a", "a"}, moved(0, 0.5F), "moved 2>1 a by 0.50"},
      {{"a"}, {"a"}, [](Goblins& g) { g.pool[1].z = 0.5F; }, "changed 1>1 a, shape"},
      {{"a"}, {"a"}, [](Goblins& g) { g.pool[1].u = 0; }, "changed 1>1 a, texture coordinates"},
      {{"a"}, {"a"}, [](Goblins& g) { g.pool[1].ny = -1; }, "changed 1>1 a, normals"},
      {{"a"}, {"a"}, [](Goblins& g) { g.goblins[0].texture = "t"; }, "changed 1>1 a, texture"},
      {{"a"},
       {"a"},
       [](Goblins& g) {
         g.goblins[0].faces.push_back({0, 1, 2});
       },
       "changed 1>1 a, triangles 1 to 2"},
      // A quarter turn about the corner at (0.25, 0.25) swings the others over to x = -0.25.
      {{"a"},
       {"a"},
       [](Goblins& g) {
         for (auto& p : g.pool) {
           const float x = p.x;
           p.x = 0.25F - (p.z - 0.25F);
           p.z = 0.25F + (x - 0.25F);
         }
       },
       "moved 1>1 a by -0.5"},
      {{"a"},
       {"a"},
       [](Goblins& g) { g.pool[0].x = std::numeric_limits<float>::quiet_NaN(); },
       "changed 1>1 a, triangles 1 to 0, vertices 3 to 0 by -0.5"},
  };
  for (const auto& test : cases) {
    Goblins after = named(test.after);
    if (test.change) test.change(after);
    EXPECT_EQ(told(named(test.before), after), test.told);
  }
}

// The tagged layout has no names: what stands in one place, or has one shape, belongs together.
TEST(GoblinDiff, LayoutsDoNotMatter) {
  const Goblins before = triangle(GoblinBlobKind::kTagged, {"", ""});
  EXPECT_EQ(told(before, named({"a", "b"})), "");
  Goblins after = triangle(GoblinBlobKind::kTagged, {"", ""});
  shift(after, 0, 0.25F);
  EXPECT_EQ(told(before, after), "moved 2>1 goblin 1 by 0.25");
  after.pool[1].y = 1;
  EXPECT_EQ(told(before, after), "changed 2>1 goblin 1, shape by 0.25");
  shift(after, 0, 7);
  EXPECT_EQ(told(before, after), "added ->1 goblin 1; gone 2>- goblin 2");
}

// Everything has moved, and each could be each.
TEST(GoblinDiff, ManyGoblinsOfOneShapeEnd) {
  Goblins after = named(std::vector<std::string>(20'000, "a"));
  const Goblins before = after;
  for (std::size_t i = 0; i < 20'000; ++i) shift(after, i, 1);
  const GoblinSide sides[] = {GoblinSide(before), GoblinSide(after)};
  EXPECT_EQ(diffGoblins(sides[0], sides[1]).changes.size(), 20'000u);
}

}  // namespace
}  // namespace tools
