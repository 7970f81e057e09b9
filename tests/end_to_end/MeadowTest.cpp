#include <filesystem>
#include <nlohmann/json.hpp>

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

  // How often `text` stands in the scene between a tile's transform and the next one's.
  std::size_t countBelow(const std::string& tile, const std::string& text) {
    const std::string scene = read("meadow.ma");
    std::size_t at = scene.find("createNode transform -n \"" + tile + '"');
    std::size_t end = scene.find("Tile\";\n", at + tile.size() + 32);
    if (end == std::string::npos) end = scene.size();
    std::size_t count = 0;
    while ((at = scene.find(text, at + 1)) < end) ++count;
    return count;
  }

  Outcome exported_;
};

TEST_F(Meadow, EveryGoblinOfEveryTileArrives) {
  std::size_t all = 0;
  for (const std::string tile : {"hill", "path", "pond", "field"}) {
    SCOPED_TRACE(tile);
    const std::size_t expected = countBelow(tile + "Tile", ".goblinName\"");
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
