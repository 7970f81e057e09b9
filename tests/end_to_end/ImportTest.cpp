#include <algorithm>
#include <nlohmann/json.hpp>

#include "tests/end_to_end/Program.h"

namespace {

using Json = nlohmann::json;

class Import : public ProgramTest {
 protected:
  void SetUp() override {
    write("full.ma", sceneOfTiles({"a.psd"}));
    write("bare.ma", sceneOfTiles({"a.psd"}, true));
    write("a.psd", psdBytes(32, 32));
  }

  Json goblins(const std::string& file) {
    const Outcome outcome = morvane({"goblins", file, "--json", "--full"});
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    return Json::parse(outcome.out, nullptr, false);
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
  const Json sent = goblins("tile.psd");
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
  const Json back = goblins("again.psd");
  EXPECT_EQ(back["goblins"].size(), 1u);
  EXPECT_EQ(back["goblins"][0]["name"], "pebble");
  ASSERT_EQ(back["pool"].size(), 3u);
  std::vector<Json> places[2];
  for (const Json& v : sent["pool"]) places[0].push_back({v[0], v[1], v[2]});
  for (const Json& v : back["pool"]) places[1].push_back({v[0], v[1], v[2]});
  for (auto& list : places) std::sort(list.begin(), list.end());
  for (int i = 0; i < 3; ++i) {
    for (int axis = 0; axis < 3; ++axis) {
      EXPECT_NEAR(places[0][i][axis].get<double>(), places[1][i][axis].get<double>(), 1e-5);
    }
  }
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
