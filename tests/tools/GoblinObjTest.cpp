#include "tools/model/GoblinObj.h"

#include <gtest/gtest.h>

#include <sstream>

#include "tests/tools/Triangles.h"

namespace tools {
namespace {

using morvane::GoblinBlobKind;

std::vector<std::string> linesOf(const std::string& text, const std::string& keyword) {
  std::vector<std::string> lines;
  std::istringstream in(text);
  for (std::string line; std::getline(in, line);)
    if (line.compare(0, keyword.size() + 1, keyword + ' ') == 0) lines.push_back(line);
  return lines;
}

TEST(GoblinObj, BothLayoutsGiveTheSameMesh) {
  const std::string tagged = goblinsToObj(triangle(GoblinBlobKind::kTagged, {"a"}));
  EXPECT_EQ(tagged, goblinsToObj(triangle(GoblinBlobKind::kNamed, {"a"})));
  EXPECT_EQ(linesOf(tagged, "v"),
            (std::vector<std::string>{"v 0 0 0", "v 0 0 1", "v 1 0 1", "v 1 0 0", "v 0.25 0.5 0.25",
                                      "v 0.25 0.5 0.75", "v 0.75 0.5 0.75"}));
  EXPECT_EQ(linesOf(tagged, "vt").at(4), "vt 0.25 0.75");
  EXPECT_EQ(linesOf(tagged, "f"),
            (std::vector<std::string>{"f 1/1/1 2/2/1 3/3/1 4/4/1", "f 5/5/2 6/6/3 7/7/4"}));
}

TEST(GoblinObj, EveryGoblinIsAnObjectOfItsOwnAndNoNameBreaksTheFile) {
  const std::string obj = goblinsToObj(
      triangle(GoblinBlobKind::kNamed, {"rock", "rock", "", "tile", "a b#c\nf 1 2 3", "rock_2"}));
  EXPECT_EQ(linesOf(obj, "o"),
            (std::vector<std::string>{"o tile", "o rock", "o rock_2", "o goblin3", "o tile_2",
                                      "o a_b_c_x0Af_1_2_3", "o rock_2_2"}));
  EXPECT_EQ(linesOf(obj, "f").size(), 7u);
}

TEST(GoblinObj, AMaterialColoursEverything) {
  const std::string obj = goblinsToObj(triangle(GoblinBlobKind::kNamed, {"a"}), "a tile.mtl");
  EXPECT_EQ(obj.find("mtllib a tile.mtl\nusemtl picture\no tile\n"), 0u);
  EXPECT_NE(objMaterial("a tile.png").find("\nmap_Kd a tile.png\n"), std::string::npos);
  EXPECT_EQ(objMaterial("").find("map_Kd"), std::string::npos);
}

}  // namespace
}  // namespace tools
