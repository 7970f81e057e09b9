#include <algorithm>
#include <cmath>
#include <nlohmann/json.hpp>

#include "tests/end_to_end/Program.h"

namespace {

using Json = nlohmann::json;

class Export : public ProgramTest {
 protected:
  Json goblins(const std::string& file) {
    const Outcome outcome = morvane({"goblins", file, "--json", "--full"});
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    return Json::parse(outcome.out, nullptr, false);
  }
};

// A text, nothing, and a picture of 4 x 32 - 5 = 123 bytes for a blob of 128 take no goblins.
TEST_F(Export, SevenTilesOfWhichThreeFail) {
  write("scenes/scene.ma", sceneOfTiles({"a.psd", "tex/b.tga", "c.psd", "tex/d.TGA", "gone.psd",
                                         "small.psd", "e.PSD"}));
  for (const char* psd : {"a.psd", "e.PSD"}) write(std::string("scenes/") + psd, psdBytes(32, 16));
  for (const char* tga : {"b.tga", "d.TGA"})
    write(std::string("scenes/tex/") + tga, tgaBytes(16, 16));
  write("scenes/c.psd", "not a picture");
  write("scenes/small.psd", psdBytes(4, 8));

  const Outcome outcome = shell("$morvane export scenes/scene.ma");
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(outcome.out,
            "Exporting tile |tile1...\nExporting tile |tile2...\nExporting tile |tile3...\n"
            "*** Error : couldn't load psd\n*** Error exporting tile 2\n"
            "Exporting tile |tile4...\nExporting tile |tile5...\n"
            "*** Error : couldn't load psd\n*** Error exporting tile 4\n"
            "Exporting tile |tile6...\n"
            "*** Error : goblin geometry exceeds layer size\n*** Error exporting tile 5\n"
            "Exporting tile |tile7...\n");
  for (const char* named :
       {"|tile3", "c.psd", "|tile5", "gone.psd does not exist", "|tile6", "larger texture"}) {
    EXPECT_NE(outcome.err.find(named), std::string::npos) << named << outcome.err;
  }
  for (const char* good : {"|tile1", "|tile2", "|tile4", "|tile7"})
    EXPECT_EQ(outcome.err.find(good), std::string::npos) << outcome.err;

  EXPECT_EQ(names("scenes"),
            (std::vector<std::string>{"a.psd", "c.psd", "e.PSD", "scene.ma", "small.psd", "tex"}));
  EXPECT_EQ(names("scenes/tex"), (std::vector<std::string>{"b.psd", "b.tga", "d.TGA", "d.psd"}));
  EXPECT_EQ(read("scenes/c.psd"), "not a picture");
  EXPECT_EQ(read("scenes/small.psd"), psdBytes(4, 8));
  EXPECT_EQ(read("scenes/tex/b.tga"), tgaBytes(16, 16));
  for (const char* file : {"a.psd", "tex/b.psd", "tex/d.psd", "e.PSD"}) {
    const Json json = goblins(std::string("scenes/") + file);
    EXPECT_EQ(json["layout"], "tagged") << file;
    EXPECT_EQ(json["vertices"], 3) << file;
    EXPECT_EQ(json["goblins"].size(), 1u) << file;
  }
}

// Textures and a reference in metres come from the project, the stool is an instance on both
// tiles, and a curve turns the gate.
// Triangles by the primitives' subdivisions: a ball of 8 x 6, 18 quads of boards, 12 quads with two
// caps of 12 corners, 8 sides of a roof with one of 8.
TEST_F(Export, AProjectWithHistoriesReferencesAndInstances) {
  std::filesystem::copy(MORVANE_SOURCE_DIR "/examples/garden", folder_ / "garden",
                        std::filesystem::copy_options::recursive);
  const Outcome outcome = shell("$morvane export garden/scenes/garden.ma");
  EXPECT_EQ(outcome.status, 0) << outcome.err;
  const std::vector<std::pair<const char*, std::vector<std::size_t>>> kTiles = {
      {"lawn", {2 * 8 + 4 * 8 * 2, 18 * 2, 12 * 2 + 2 * 10, 8 + 6}}, {"yard", {2 * 8 + 4 * 8 * 2}}};
  for (const auto& [name, triangles] : kTiles) {
    const Json json = goblins("garden/sourceimages/" + std::string(name) + ".psd");
    ASSERT_EQ(json["goblins"].size(), triangles.size()) << name;
    for (std::size_t i = 0; i < triangles.size(); ++i)
      EXPECT_EQ(json["goblins"][i]["faces"], triangles[i]) << name << i;
    // The stool's radius is 0.35, its middle (2.5, 1, -2) on a tile of side 10.
    float low = 1;
    for (std::size_t i = 0; i < json["goblins"][0]["vertices"]; ++i)
      low = std::min(low, json["pool"][i][0].get<float>());
    EXPECT_NEAR(low, 0.5 + (2.5 - 0.35) / 10, 1e-6) << name;
  }
  // The gate's boards are 2 long and 0.1 thick, hinged at (-3, 3), and turn by 80 degrees from
  // frame 0 to 24; the scene was saved at frame 12.
  for (const auto& [option, degrees] :
       {std::pair<const char*, double>("", 40.0), {" --frame 24", 80.0}}) {
    const Outcome again = shell("$morvane export garden/scenes/garden.ma" + std::string(option));
    EXPECT_EQ(again.status, 0) << again.err;
    const Json json = goblins("garden/sourceimages/lawn.psd");
    float high = 0;
    const std::size_t first = json["goblins"][0]["vertices"];
    for (std::size_t i = 0; i < json["goblins"][1]["vertices"]; ++i)
      high = std::max(high, json["pool"][first + i][0].get<float>());
    const double angle = degrees * 3.14159265358979 / 180;
    const double reach = 2 * std::cos(angle) + 0.05 * std::sin(angle);
    EXPECT_NEAR(high, 0.5 + (-3 + reach) / 10, 1e-6) << option;
  }
}

// A box from (-2, 0, -4) to (2, 1, 4) has the factors 1/4, 3/16 and 1/8; a goblin at its middle
// stands at (1/2, 0, 1/2), and the file keeps z from the other side.
TEST_F(Export, StoresTileSpace) {
  write("scene.ma", sceneOfTiles({"a.psd"}));
  write("a.psd", psdBytes(64, 64));
  ASSERT_EQ(morvane({"export", "scene.ma"}).status, 0);
  const Json expected = {{"layout", "tagged"},
                         {"vertices", 3},
                         {"pool",
                          {{0.5, 0, 0.5, 0, 1, 0, 0.5, 0.5},
                           {0.75, 0, 0.5, 0, 1, 0, 0.75, 0.5},
                           {0.5, 0, 0.625, 0, 1, 0, 0.5, 0.625}}},
                         {"goblins",
                          {{{"name", ""},
                            {"texture", ""},
                            {"vertices", 3},
                            {"faces", 1},
                            {"triangles", {{0, 1, 2}}}}}}};
  EXPECT_EQ(goblins("a.psd"), expected);
  const Outcome info = morvane({"info", "--json", "a.psd"});
  const Json report = Json::parse(info.out, nullptr, false);
  EXPECT_EQ(
      report["goblinGeometry"],
      (Json{{"layout", "tagged"}, {"bytes", 128}, {"vertices", 3}, {"goblins", 1}, {"faces", 1}}));
  ASSERT_EQ(report["layers"].size(), 2u);
  EXPECT_EQ(report["layers"][1]["name"], "GoblinGeometry");
  EXPECT_EQ(report["layers"][1]["hidden"], true);
  EXPECT_EQ(report["bytes"], read("a.psd").size());
}

TEST_F(Export, AgainGivesTheSameFile) {
  write("scene.ma", sceneOfTiles({"a.psd", "b.tga"}));
  write("a.psd", psdBytes(32, 32));
  write("b.tga", tgaBytes(32, 32));
  ASSERT_EQ(morvane({"export", "scene.ma"}).status, 0);
  const std::string once = read("b.psd");
  ASSERT_EQ(morvane({"export", "scene.ma"}).status, 0);
  EXPECT_EQ(read("b.psd"), once);
  const std::string psd = read("a.psd");
  ASSERT_EQ(morvane({"export", "scene.ma", "tile1"}).status, 0);
  // The layer is taken out and put back; only the layer groups resource keeps an entry for each
  // that ever was.
  EXPECT_EQ(read("a.psd").size(), psd.size() + 2);
}

TEST_F(Export, NamesAndPatternsChooseTiles) {
  write("scene.ma", sceneOfTiles({"a.tga", "b.tga", "c.tga"}));
  for (const char* file : {"a.tga", "b.tga", "c.tga"}) write(file, tgaBytes(16, 16));
  const Outcome missing = morvane({"export", "scene.ma", "tile1", "noSuchTile"});
  EXPECT_EQ(missing.status, 1);
  EXPECT_NE(missing.err.find("noSuchTile"), std::string::npos) << missing.err;
  EXPECT_FALSE(exists("a.psd"));
  EXPECT_EQ(morvane({"export", "scene.ma", "tile2"}).status, 0);
  EXPECT_TRUE(exists("b.psd") && !exists("a.psd") && !exists("c.psd"));
  EXPECT_EQ(morvane({"export", "scene.ma", "tile*"}).status, 0);
  EXPECT_TRUE(exists("a.psd") && exists("c.psd"));
  write("empty.ma", sceneOfTiles({}));
  EXPECT_NE(morvane({"export", "empty.ma"}).err.find("no tile found"), std::string::npos);
  EXPECT_NE(morvane({"export", "scene.ma", "wall*"}).err.find("wall*"), std::string::npos);
}

class Import : public Export {
 protected:
  void SetUp() override {
    write("full.ma", sceneOfTiles({"a.psd"}));
    write("bare.ma", sceneOfTiles({"a.psd"}, true));
    write("a.psd", psdBytes(32, 32));
  }

  // The import fails, says why, and leaves no scene behind.
  void refuses(const std::string& scene, const std::string& node, const std::string& file,
               int status, const std::string& named) {
    const Outcome outcome = morvane({"import", scene, node, file, "-o", "out.ma"});
    EXPECT_EQ(outcome.status, status) << file << outcome.err;
    EXPECT_NE((outcome.out + outcome.err).find(named), std::string::npos)
        << outcome.out << outcome.err;
    EXPECT_FALSE(exists("out.ma"));
  }
};

TEST_F(Import, WhatWentOutComesBack) {
  const Outcome out = morvane({"export", "full.ma", "tile1", "--to", "tile.psd"});
  ASSERT_EQ(out.status, 0) << out.err;
  EXPECT_EQ(read("a.psd"), psdBytes(32, 32)) << "the tile's own texture was touched";
  Json sent = goblins("tile.psd");
  EXPECT_EQ(sent["layout"], "named");
  EXPECT_EQ(sent["goblins"], (Json{{{"name", "pebble"},
                                    {"texture", ""},
                                    {"vertices", 3},
                                    {"faces", 1},
                                    {"triangles", {{2, 1, 0}}}}}));
  EXPECT_EQ(sent["pool"], (Json{{0.5, 0, 0.5, 0, 1, 0, 0.5, 0.5},
                                {0.75, 0, 0.5, 0, 1, 0, 0.75, 0.5},
                                {0.5, 0, 0.375, 0, 1, 0, 0.5, 0.375}}));

  const Outcome in = morvane({"import", "bare.ma", "tile1", "tile.psd", "-o", "in.ma"});
  ASSERT_EQ(in.status, 0) << in.out << in.err;
  const Outcome noted =
      morvane({"run", "in.ma", "-c", "print (`getAttr \"tileShape1.psdFileName\"` + \"\\n\")"});
  EXPECT_EQ(noted.out, path("tile.psd") + '\n') << noted.err;
  ASSERT_EQ(morvane({"export", "in.ma", "tile1", "--to", "again.psd"}).status, 0);
  Json back = goblins("again.psd");
  for (Json* pool : {&sent["pool"], &back["pool"]}) std::sort(pool->begin(), pool->end());
  EXPECT_EQ(back["goblins"][0]["name"], "pebble");
  EXPECT_EQ(back["pool"], sent["pool"]);
}

TEST_F(Import, ATgaGivesTheTileATexture) {
  write("b.tga", tgaBytes(8, 8));
  const Outcome outcome = morvane({"import", "bare.ma", "tile1", "b.tga", "-o", "out.ma"});
  EXPECT_EQ(outcome.status, 0) << outcome.err;
  EXPECT_NE(outcome.out.find("Warning: no GoblinGeometry layer found.\n"), std::string::npos)
      << outcome.out;
  EXPECT_NE(read("out.ma").find("b.tga"), std::string::npos);
}

TEST_F(Import, AFailedImportSavesNothing) {
  write("cut.psd", psdBytes(16, 16).substr(0, 30));
  refuses("bare.ma", "tile1", "missing.psd", 1, "missing.psd");
  refuses("bare.ma", "tile1", "cut.psd", 1, "cut.psd");
  refuses("bare.ma", "tile1", "bare.ma", 1, "bare.ma");
  refuses("bare.ma", "noSuchTile", "a.psd", 1, "noSuchTile");
  refuses("missing.ma", "tile1", "a.psd", 3, "missing.ma");
  ASSERT_EQ(morvane({"export", "full.ma"}).status, 0);
  refuses("bare.ma", "tile1", "a.psd", 1,
          "Error: GoblinGeometry layer is in the exportTile layout!\n");
}

TEST_F(Import, AFileHoldsOneTile) {
  write("two.ma", sceneOfTiles({"a.psd", "a.psd"}));
  for (const char* nodes : {"", "tile1 tile2"}) {
    const Outcome outcome = shell(std::string("$morvane export two.ma ") + nodes + " --to out.psd");
    EXPECT_EQ(outcome.status, 2) << outcome.err;
    EXPECT_NE(outcome.err.find("exactly one"), std::string::npos) << outcome.err;
  }
  EXPECT_EQ(morvane({"export", "two.ma", "tile1", "--to", "no/such/folder/out.psd"}).status, 1);
  EXPECT_FALSE(exists("out.psd"));
}

}  // namespace
