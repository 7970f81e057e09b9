#include <filesystem>
#include <nlohmann/json.hpp>

#include "tests/end_to_end/Program.h"

// What is made for people to look at: binary glTF and the page, opened in a real browser.

namespace {

using Json = nlohmann::json;
using Texts = std::vector<std::string>;

const std::string kTools = MORVANE_SOURCE_DIR "/tests/view";

#define NEEDS_NODE_MODULE(name)                                                        \
  if (!hasCommand("node") || !std::filesystem::exists(kTools + "/node_modules/" name)) \
  GTEST_SKIP() << "install Node.js and run npm ci in tests/view first"

#define NEEDS_PAGE()                                                                \
  if (morvane({"view", "missing.psd", "-o", "x.html"}).err.find("built without") != \
      std::string::npos)                                                            \
  GTEST_SKIP() << "the program was built without the page (MORVANE_VIEW)"

class View : public ProgramTest {
 protected:
  void copyMeadow() {
    std::filesystem::copy(MORVANE_SOURCE_DIR "/examples/meadow", folder_,
                          std::filesystem::copy_options::recursive);
  }

  // What use-page.mjs saw.
  Json use(const std::string& page) {
    const Outcome used =
        shell("node " + shellWord(kTools + "/use-page.mjs") + ' ' + shellWord(path(page)));
    EXPECT_EQ(used.status, 0) << used.err;
    return Json::parse(used.out, nullptr, false);
  }

  void expectGoodPage(const Json& seen) {
    EXPECT_EQ(seen["events"], Json::array());  // no error, no request, no dialog
    EXPECT_GT(seen["colours"], 200);
    for (const char* works :
         {"nameHides", "spaceHides", "pickedShows", "escapeLetsGo", "arrowTurns", "clickPicks"})
      EXPECT_EQ(seen[works], true) << works;
    EXPECT_EQ(seen["sideways"], 0);
    EXPECT_EQ(seen["unnamed"], 0);
  }
};

// The scene's text names each goblin once; a file of meshes has the tile besides.
TEST_F(View, MeshesOfTheMeadowAreAllThereAndValid) {
  copyMeadow();
  write("bare.ma", sceneOfTiles({"bare.tga"}, true));
  write("bare.tga", tgaBytes(8, 8));
  const Outcome made = shell(
      "$morvane export meadow.ma && $morvane export bare.ma && $morvane export meadow.ma hillTile "
      "--to named.psd && "
      "for f in textures/*.psd named.psd bare.psd; do $morvane goblins $f --glb $f.glb --obj "
      "$f.obj || exit 9; done");
  ASSERT_EQ(made.status, 0) << made.err;
  EXPECT_EQ(made.err.find("warning"), std::string::npos) << made.err;
  EXPECT_NE(made.err.find("wrote named.psd.glb: 15 goblins\n"), std::string::npos) << made.err;
  const Outcome counts = shell(
      "grep -c 'setAttr -k on \".goblinName\"' meadow.ma; cat textures/*.obj | grep -c '^o '");
  EXPECT_EQ(counts.out, "59\n63\n");
  EXPECT_NE(read("named.psd.glb").find("\"name\":\"toadstool\""), std::string::npos);

  NEEDS_NODE_MODULE("gltf-validator");
  const Outcome judged = shell("node " + kTools + "/validate-glb.mjs *.glb textures/*.glb");
  EXPECT_EQ(
      judged.out,
      "bare.psd.glb: 0 errors, 0 warnings\nnamed.psd.glb: 0 errors, 0 warnings\n"
      "textures/field.psd.glb: 0 errors, 0 warnings\ntextures/hill.psd.glb: 0 errors, 0 warnings\n"
      "textures/path.psd.glb: 0 errors, 0 warnings\ntextures/pond.psd.glb: 0 errors, 0 warnings\n");
}

TEST_F(View, FilesWithDamageAndHostileNamesMakeAPageThatWorks) {
  NEEDS_PAGE();
  const std::string evil = "</script><img src=x onerror=alert(1)>";
  std::string scene = sceneOfTiles({"plain.psd"});
  const std::string name = "-type \"string\" \"pebble\"";
  const std::string points = "0 0 0 1 0 0 0 0 -1";
  scene.replace(scene.find(name), name.size(), "-type \"string\" \"" + evil + '"');
  scene.replace(scene.find(points), points.size(), "0 2 0 1 2 0 0 2 -1");  // above the ground
  write("named.ma", scene);
  write("plain.psd", psdBytes(16, 16));
  write("cut.psd", psdBytes(16, 16).substr(0, 30));
  ASSERT_EQ(
      shell("$morvane export named.ma tile1 --to '<b>.psd' && $morvane export named.ma").status, 0);
  // 128 bytes, the tag, and a pool of 3, which becomes one of 127.
  std::string damaged = read("plain.psd");
  const std::string start("\x00\x80\xFE\x00\x00\x01\xFE\x00\x00\x03", 10);
  const std::size_t at = damaged.find(start);
  ASSERT_NE(at, std::string::npos);
  damaged[at + 9] = '\x7F';
  write("damaged.psd", damaged);
  const Outcome made = morvane({"view", "named.ma", "<b>.psd", "cut.psd", "missing.psd",
                                "damaged.psd", "-o", "a page.html"});
  EXPECT_EQ(made.status, 1);
  for (const char* file :
       {"cut.psd: ", "missing.psd: ", "damaged.psd: the goblin geometry is damaged"})
    EXPECT_NE(made.err.find(file), std::string::npos) << made.err;

  NEEDS_NODE_MODULE("playwright-core");
  if (!hasCommand("chromium")) GTEST_SKIP() << "chromium is not installed; scripts/test does that";
  const Json seen = use("a page.html");
  expectGoodPage(seen);
  EXPECT_EQ(seen["files"], Json({"tile1", "<b>.psd", "cut.psd", "missing.psd", "damaged.psd"}));
  EXPECT_EQ(seen["goblins"], Json({evil}));
  EXPECT_EQ(seen["picked"], evil);
  const Json& faults = seen["faults"];
  EXPECT_EQ(faults[0], "");
  EXPECT_EQ(faults[1], "");
  EXPECT_NE(faults[2].get<std::string>().find("cannot be shown"), std::string::npos) << faults;
  EXPECT_NE(faults[3].get<std::string>().find("No such file"), std::string::npos) << faults;
  EXPECT_NE(faults[4].get<std::string>().find("goblin geometry is damaged"), std::string::npos);
}

TEST_F(View, AScenesTilesAreShownAndNothingIsExported) {
  NEEDS_PAGE();
  copyMeadow();
  const std::string sums = "find . -path ./page -prune -o -type f -exec sha256sum {} + | sort ";
  ASSERT_EQ(shell("mkdir page; " + sums + ">page/before").status, 0);
  const Outcome made = morvane({"view", "meadow.ma", "-o", "page/meadow.html"});
  EXPECT_EQ(made.status, 0) << made.err;
  EXPECT_EQ(made.err, "morvane: wrote page/meadow.html: 4 tiles, 59 goblins\n");
  EXPECT_EQ(shell(sums + "| cmp - page/before").status, 0);
  EXPECT_EQ(morvane({"view", "meadow.ma", "-o", "meadow.ma"}).status, 2);

  NEEDS_NODE_MODULE("playwright-core");
  if (!hasCommand("chromium")) GTEST_SKIP() << "chromium is not installed; scripts/test does that";
  const Json seen = use("page/meadow.html");
  expectGoodPage(seen);
  EXPECT_EQ(seen["files"], Json({"hillTile", "pathTile", "pondTile", "fieldTile"}));
  EXPECT_EQ(seen["title"], "hillTile \u2013 tiles and goblins");
}

TEST_F(View, WhatCannotBeShownLeavesAnOldPageAlone) {
  NEEDS_PAGE();
  write("cut.psd", psdBytes(16, 16).substr(0, 30));
  write("plain.psd", psdBytes(16, 16));
  write("empty.ma", "//Maya ASCII 2018 scene\n");
  write("lost.ma", sceneOfTiles({"nowhere.psd", "plain.psd"}));
  write("page.html", "old");
  const struct {
    const char* line;
    int status;
    const char* named;
  } cases[] = {
      {"view cut.psd -o page.html", 1, "cut.psd"},
      {"view missing.ma -o page.html", 3, "missing.ma"},
      {"view empty.ma -o page.html", 1, "no tile found"},
      {"view plain.psd", 2, "--output"},
      {"view -o page.html", 2, "FILE"},
      {"view plain.psd -o ./plain.psd", 2, "plain.psd"},
      {"view plain.psd -o no/such/page.html", 1, "no/such/page.html"},
      {"view binary.mb -o page.html", 3, "binary.mb"},
      {"goblins cut.psd --glb page.glb", 1, "cut.psd"},
  };
  for (const auto& test : cases) {
    const Outcome outcome = shell(std::string("$morvane ") + test.line);
    EXPECT_EQ(outcome.status, test.status) << test.line;
    EXPECT_NE(outcome.err.find(test.named), std::string::npos) << outcome.err;
    EXPECT_EQ(read("page.html"), "old") << test.line;
    EXPECT_EQ(read("plain.psd"), psdBytes(16, 16)) << test.line;
  }
  const Outcome lost = morvane({"view", "lost.ma", "cut.psd", "-o", "page.html"});
  EXPECT_EQ(lost.status, 1);
  EXPECT_NE(lost.err.find("tile1: texture nowhere.psd"), std::string::npos) << lost.err;
  EXPECT_NE(read("page.html").find("\"tile2\""), std::string::npos);
}

TEST_F(View, WhatIsNotEvaluatedIsNamedBesideTheRest) {
  NEEDS_PAGE();
  write("plain.psd", psdBytes(16, 16));
  write("half.ma", sceneOfTiles({"plain.psd"}) +
                       "createNode transform -n \"stump\" -p \"tile1\";\ncreateNode mesh -n "
                       "\"stumpShape\" -p \"stump\";\ncreateNode polyBevel3 -n \"bevel\";\n"
                       "connectAttr \"bevel.out\" \"stumpShape.i\";\n");
  const Outcome made = morvane({"view", "half.ma", "-o", "page.html"});
  const std::string missing =
      "|tile1|stump|stumpShape is made by bevel (polyBevel3), which is not evaluated; ";
  EXPECT_EQ(made.status, 1);
  EXPECT_NE(made.err.find("half.ma: tile1: " + missing), std::string::npos) << made.err;
  EXPECT_NE(made.err.find("page.html: 1 tile, 1 goblin"), std::string::npos) << made.err;
  const std::string page = read("page.html");
  EXPECT_NE(page.find("\"missing\":\"" + missing), std::string::npos);
  EXPECT_NE(page.find("\"fault\":\"\",\"missing\""), std::string::npos);
}

}  // namespace
