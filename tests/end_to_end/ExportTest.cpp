#include <unistd.h>

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

TEST_F(Export, FiveTilesOfWhichOneFails) {
  const std::vector<std::string> textures = {"a.psd", "tex/b.tga", "c.psd", "tex/d.TGA", "e.PSD"};
  write("scenes/scene.ma", sceneOfTiles(textures));
  for (const char* psd : {"a.psd", "e.PSD"}) write(std::string("scenes/") + psd, psdBytes(32, 16));
  for (const char* tga : {"b.tga", "d.TGA"})
    write(std::string("scenes/tex/") + tga, tgaBytes(16, 16));
  write("scenes/c.psd", "not a picture");

  const Outcome outcome = shell("$morvane export scenes/scene.ma");
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(outcome.out,
            "Exporting tile |tile1...\nExporting tile |tile2...\nExporting tile |tile3...\n"
            "*** Error : couldn't load psd\n*** Error exporting tile 2\n"
            "Exporting tile |tile4...\nExporting tile |tile5...\n");
  EXPECT_NE(outcome.err.find("|tile3"), std::string::npos) << outcome.err;
  EXPECT_NE(outcome.err.find("c.psd"), std::string::npos) << outcome.err;
  for (const char* good : {"|tile1", "|tile2", "|tile4", "|tile5"}) {
    EXPECT_EQ(outcome.err.find(good), std::string::npos) << outcome.err;
  }

  EXPECT_EQ(names("scenes"),
            (std::vector<std::string>{"a.psd", "c.psd", "e.PSD", "scene.ma", "tex"}));
  EXPECT_EQ(names("scenes/tex"), (std::vector<std::string>{"b.psd", "b.tga", "d.TGA", "d.psd"}));
  EXPECT_EQ(read("scenes/c.psd"), "not a picture");
  EXPECT_EQ(read("scenes/tex/b.tga"), tgaBytes(16, 16));
  for (const char* file : {"a.psd", "tex/b.psd", "tex/d.psd", "e.PSD"}) {
    const Json json = goblins(std::string("scenes/") + file);
    EXPECT_EQ(json["layout"], "tagged") << file;
    EXPECT_EQ(json["vertices"], 3) << file;
    EXPECT_EQ(json["goblins"].size(), 1u) << file;
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
  EXPECT_NE(morvane({"export", "scene.ma", "wall*"}).err.find("wall*"), std::string::npos);
  const Outcome hostile = morvane({"export", "scene.ma", "x\"; print \"ran\\n"});
  EXPECT_EQ(hostile.status, 1);
  EXPECT_EQ(hostile.out, "");
}

TEST_F(Export, AMissingTextureIsNamed) {
  write("scene.ma", sceneOfTiles({"gone.psd"}));
  const Outcome outcome = morvane({"export", "scene.ma"});
  EXPECT_EQ(outcome.status, 1);
  EXPECT_NE(outcome.err.find("gone.psd does not exist"), std::string::npos) << outcome.err;
  EXPECT_EQ(names(), std::vector<std::string>{"scene.ma"});
}

TEST_F(Export, ATextureTooSmallForItsGoblinsStaysAsItWas) {
  write("scene.ma", sceneOfTiles({"small.psd"}));
  write("small.psd", psdBytes(4, 8));  // 4 x 32 - 5 = 123 bytes, and the blob has 128
  const Outcome outcome = morvane({"export", "scene.ma"});
  EXPECT_EQ(outcome.status, 1);
  EXPECT_NE(outcome.out.find("*** Error : goblin geometry exceeds layer size\n"),
            std::string::npos);
  EXPECT_NE(outcome.err.find("larger texture"), std::string::npos) << outcome.err;
  EXPECT_EQ(read("small.psd"), psdBytes(4, 8));
}

TEST_F(Export, ASceneWithoutTilesSaysSo) {
  write("empty.ma", sceneOfTiles({}));
  const Outcome outcome = morvane({"export", "empty.ma"});
  EXPECT_EQ(outcome.status, 1);
  EXPECT_NE(outcome.err.find("no tile found"), std::string::npos) << outcome.err;
}

// Root may write anywhere, so the program has to run as somebody else.
TEST_F(Export, AReadOnlyFolderFailsAndKeepsTheFile) {
  std::string as;
  if (geteuid() == 0) as = "setpriv --reuid=65534 --regid=65534 --clear-groups ";
  write("scene.ma", sceneOfTiles({"tex/a.psd", "tex/b.tga"}));
  write("tex/a.psd", psdBytes(16, 16));
  write("tex/b.tga", tgaBytes(16, 16));
  shell("chmod 755 . && chmod 555 tex");
  if (shell(as + "$morvane --version").status != 0)
    GTEST_SKIP() << "the program cannot be run as another user here";
  const Outcome outcome = shell(as + "$morvane export scene.ma");
  shell("chmod 755 tex");
  EXPECT_EQ(outcome.status, 1);
  EXPECT_NE(outcome.out.find("*** Error : couldn't save psd\n*** Error exporting tile 0\n"),
            std::string::npos)
      << outcome.out;
  EXPECT_NE(outcome.err.find("can be written"), std::string::npos) << outcome.err;
  EXPECT_EQ(names("tex"), (std::vector<std::string>{"a.psd", "b.tga"}));
  EXPECT_EQ(read("tex/a.psd"), psdBytes(16, 16));
}

TEST_F(Export, AFullDiskFailsAndKeepsTheFile) {
  write("scene.ma", sceneOfTiles({"disk/a.psd"}));
  shell("mkdir disk");
  if (shell("mount -t tmpfs -o size=64k none disk").status != 0)
    GTEST_SKIP() << "no file system can be mounted here";
  const std::string before = psdBytes(100, 100);
  write("disk/a.psd", before);
  const Outcome filled = shell("head -c 100000 /dev/zero > disk/filler");
  const Outcome outcome = morvane({"export", "scene.ma"});
  const std::string after = read("disk/a.psd");
  const auto left = names("disk");
  shell("umount disk");
  EXPECT_NE(filled.status, 0) << "the disk is not full";
  EXPECT_EQ(outcome.status, 1);
  EXPECT_NE(outcome.out.find("*** Error : couldn't save psd\n"), std::string::npos) << outcome.out;
  EXPECT_EQ(after, before);
  EXPECT_EQ(left, (std::vector<std::string>{"a.psd", "filler"}));
}

}  // namespace
