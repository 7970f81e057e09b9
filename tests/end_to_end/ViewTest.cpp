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

  // What a script of tests/view saw.
  Json use(const std::string& page, const std::string& script = "/use-page.mjs") {
    const Outcome used =
        shell("node " + shellWord(kTools + script) + ' ' + shellWord(path(page)) + " saved");
    EXPECT_EQ(used.status, 0) << used.err;
    return Json::parse(used.out, nullptr, false);
  }

  void expectGoodPage(const Json& seen) {
    EXPECT_EQ(seen["events"], Json::array());  // no error, no request, no dialog
    EXPECT_GT(seen["colours"], 200);
    for (const char* works : {"eyeHides", "spaceHides", "pickedShows", "escapeLetsGo", "oneStop",
                              "arrowTurns", "clickPicks", "uvs", "layerSwitches"})
      EXPECT_EQ(seen[works], true) << works;
    EXPECT_EQ(seen["switches"], Json::array());
    EXPECT_EQ(seen["looks"], 3);
    EXPECT_EQ(seen["linkOpens"], seen["picked"]);
    EXPECT_EQ(seen["zoom"], 4000);
    EXPECT_NE(seen["pixel"], "");
    EXPECT_EQ(read("saved/view.png").substr(0, 8), "\x89PNG\r\n\x1A\n");
    if (!std::filesystem::exists(kTools + "/node_modules/gltf-validator")) return;
    const Outcome judged = shell("node " + kTools + "/validate-glb.mjs saved/tile.glb");
    EXPECT_EQ(judged.out, "saved/tile.glb: 0 errors, 0 warnings\n");
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
  std::string scene = withGoblinsAt(sceneOfTiles({"plain.psd"}), "0 2 0 1 2 0 0 2 -1");  // high up
  const std::string name = "-type \"string\" \"pebble\"";
  scene.replace(scene.find(name), name.size(), "-type \"string\" \"" + evil + '"');
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
  EXPECT_EQ(seen["files"], Json({"Whole level", "hillTile", "pathTile", "pondTile", "fieldTile"}));
  EXPECT_EQ(seen["title"], "Whole level \u2013 tiles and goblins");
  EXPECT_EQ(seen["entered"], true);
  // The first rock's box in the scene, whose tiles are 10 cm wide.
  EXPECT_NE(seen["details"].get<std::string>().find(" cm ("), std::string::npos) << seen["details"];
}

// The scene's tile reaches from (-2, 0, -4) to (2, 1, 4), so that tile space is 4 and 8 cm wide,
// and 1 cm high is the mean of the two factors.
TEST_F(View, AFileGetsTheSurfaceOfItsScene) {
  NEEDS_PAGE();
  write("plain.psd", psdBytes(16, 16));
  write("other.psd", psdBytes(16, 16));
  write("scene.ma", sceneOfTiles({"plain.psd"}));
  const Outcome made = morvane({"view", "--scene", "scene.ma", "plain.psd", "other.psd", "-o",
                                "page.html", "--budget", "2000", "--texture-budget", "8"});
  EXPECT_EQ(made.status, 0) << made.err;
  const std::string page = read("page.html");
  const std::size_t start = page.find("id=\"items\">") + 11;
  const Json shown =
      Json::parse(page.substr(start, page.find("</script>", start) - start), nullptr, false);
  EXPECT_EQ(shown["budget"], Json({{"triangles", 2000}, {"pixels", 8}}));
  const Json& placement = shown["items"][0]["placement"];
  ASSERT_EQ(placement.size(), 16u) << placement;
  EXPECT_NEAR(placement[0].get<double>(), 4, 1e-5);
  EXPECT_NEAR(placement[10].get<double>(), 8, 1e-5);
  EXPECT_NEAR(placement[12].get<double>(), -2, 1e-5);
  EXPECT_NEAR(placement[14].get<double>(), -4, 1e-5);
  EXPECT_EQ(shown["items"][0]["unit"], "cm");
  EXPECT_EQ(shown["items"][1]["placement"], nullptr);
}

TEST_F(View, ChangesAreListedAndPicked) {
  NEEDS_PAGE();
  const std::string scene = sceneOfTiles({"plain.psd"});
  write("scene.ma", scene);
  write("moved.ma", withGoblinsAt(scene, "1 0 0 2 0 0 1 0 -1"));
  write("plain.psd", psdBytes(16, 16));
  const Outcome made = shell(
      "mkdir old new && $morvane export scene.ma tile1 --to old/a.psd && cp plain.psd new/b.psd && "
      "$morvane export moved.ma tile1 --to new/a.psd && cp old/a.psd old/gone.psd && $morvane view "
      "--before old new -o page.html --texture-budget 8");
  ASSERT_EQ(made.status, 0) << made.err;
  EXPECT_EQ(morvane({"view", "--before", "old", "new/a.psd", "-o", "page.html"}).status, 2);
  EXPECT_EQ(morvane({"view", "--before", "old", "old", "new", "-o", "page.html"}).status, 2);

  NEEDS_NODE_MODULE("playwright-core");
  if (!hasCommand("chromium")) GTEST_SKIP() << "chromium is not installed; scripts/test does that";
  const Json seen = use("page.html", "/use-changes.mjs");
  EXPECT_EQ(seen["events"], Json::array());
  EXPECT_EQ(seen["look"], "Changes");
  EXPECT_EQ(seen["over"], 1);
  EXPECT_EQ(seen["rows"], Json({"Moved, 1 goblin, \u00d7 1", "pebble, 1 \u25b3"}));
  EXPECT_NE(seen["picked"].get<std::string>().find("moved, by 0.25, 0, 0"), std::string::npos)
      << seen["picked"];
  EXPECT_NE(seen["hint"].get<std::string>().find("One finger turns"), std::string::npos);
}

// The merged image of the file is black, and it has no layers.
TEST_F(View, NothingIsShownBlackOnBlack) {
  std::string black = psdBytes(16, 16);
  std::fill(black.end() - 3 * 16 * 16, black.end(), '\0');
  write("plain.psd", black);
  write("scene.ma", sceneOfTiles({"plain.psd"}));
  const Outcome made =
      shell("$morvane export scene.ma tile1 && $morvane goblins plain.psd --obj a.obj --glb a.glb");
  ASSERT_EQ(made.status, 0) << made.err;
  EXPECT_EQ(read("a.glb").find("image/png"), std::string::npos);
  EXPECT_EQ(read("a.obj").find("mtllib a.mtl\n"), 0u);
  EXPECT_EQ(read("a.mtl").find("map_Kd"), std::string::npos);
  write("scene.ma", sceneOfTiles({"gray.psd"}));
  write("gray.psd", psdBytes(16, 16));
  const Outcome seen = shell("$morvane export scene.ma && $morvane goblins gray.psd --obj b.obj");
  EXPECT_NE(read("b.mtl").find("\nmap_Kd b-picture.png\n"), std::string::npos) << seen.err;
  EXPECT_EQ(read("b-picture.png").substr(1, 3), "PNG");
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
