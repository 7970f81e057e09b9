#include <filesystem>
#include <nlohmann/json.hpp>
#include <sstream>

#include "tests/end_to_end/Program.h"

namespace {

using Json = nlohmann::json;

// The example scene, exported into a copy of its folder.
class Meadow : public ProgramTest {
 protected:
  void SetUp() override {
    std::filesystem::copy(MORVANE_SOURCE_DIR "/examples/meadow", folder_,
                          std::filesystem::copy_options::recursive);
    exported_ = morvane({"export", "meadow.ma"});
    ASSERT_EQ(exported_.status, 0) << exported_.err;
  }

  // How many goblins the scene's text has between a tile's transform and the next tile's.
  std::size_t goblinsBelow(const std::string& tile) {
    const std::string scene = read("meadow.ma");
    std::size_t at = scene.find("createNode transform -n \"" + tile + '"');
    const std::string rest = scene.substr(at + 1);
    std::size_t count = 0;
    std::istringstream lines(rest);
    for (std::string line; std::getline(lines, line);) {
      if (line.find("createNode transform") == 0 && line.find("Tile\"") < line.find("-p")) break;
      if (line.find("setAttr -k on \".goblinName\"") != std::string::npos) ++count;
    }
    return count;
  }

  Outcome exported_;
};

TEST_F(Meadow, EveryGoblinOfEveryTileArrives) {
  std::size_t all = 0;
  for (const std::string tile : {"hill", "path", "pond", "field"}) {
    SCOPED_TRACE(tile);
    const std::size_t expected = goblinsBelow(tile + "Tile");
    const Json json = Json::parse(morvane({"goblins", "textures/" + tile + ".psd", "--json"}).out,
                                  nullptr, false);
    EXPECT_EQ(json["goblins"].size(), expected);
    EXPECT_GT(expected, 8u);
    all += expected;
  }
  EXPECT_GE(all, 40u);
}

TEST_F(Meadow, OnlyTheGoblinsAtItsEdgeAreWarnedOf) {
  const std::string warning = "*** Warning : goblin outside of tile boundary\n";
  const std::size_t first = exported_.out.find(warning);
  ASSERT_NE(first, std::string::npos);
  EXPECT_LT(exported_.out.find("|hillTile"), first);
  EXPECT_EQ(exported_.out.find("*** Error"), std::string::npos);
  EXPECT_EQ(exported_.out.substr(exported_.out.find("Exporting tile |pathTile")).find(warning),
            std::string::npos);
}

TEST_F(Meadow, ObjHasTheTileAndEveryGoblin) {
  ASSERT_EQ(morvane({"goblins", "textures/pond.psd", "--obj", "pond.obj"}).status, 0);
  const Outcome counts = shell(
      "grep -c '^o ' pond.obj; grep '^o ' pond.obj | sort -u | wc -l; grep -c '^f ' pond.obj");
  const Json json =
      Json::parse(morvane({"goblins", "textures/pond.psd", "--json"}).out, nullptr, false);
  std::size_t faces = 1;
  for (const Json& goblin : json["goblins"]) faces += goblin["faces"].get<std::size_t>();
  const std::string objects = std::to_string(json["goblins"].size() + 1);
  EXPECT_EQ(counts.out, objects + '\n' + objects + '\n' + std::to_string(faces) + '\n');
}

}  // namespace
