#include <algorithm>
#include <nlohmann/json.hpp>
#include <regex>
#include <sstream>

#include "psd/PsdDocument.h"
#include "tests/end_to_end/Program.h"

namespace {

using Json = nlohmann::json;

// Two scenes that export, one whose second texture is missing, and one that is not a scene.
class Batch : public ProgramTest {
 protected:
  void SetUp() override {
    write("one/a.ma", sceneOfTiles({"a.psd", "b.tga"}));
    write("two/b.ma", sceneOfTiles({"a.psd", "gone.psd"}));
    write("broken.ma", "no scene");
    write("c.ma", sceneOfTiles({"P:/art/c.psd"}));
    for (const char* psd : {"one/a.psd", "two/a.psd", "art/c.psd"}) write(psd, psdBytes(32, 32));
    write("one/b.tga", tgaBytes(32, 32));
  }

  const std::string scenes_ = " one/a.ma two/b.ma broken.ma c.ma --map P:/art=art --ordered ";
};

TEST_F(Batch, GoesOnAfterAFailedSceneAndSumsUp) {
  const Outcome outcome = shell("$morvane export" + scenes_);
  EXPECT_EQ(outcome.status, 3);  // the worst: a scene that cannot be opened
  EXPECT_EQ(outcome.out,
            "Exporting tile |tile1...\nExporting tile |tile2...\nExporting tile |tile1...\n"
            "Exporting tile |tile2...\n*** Error : couldn't load psd\n*** Error exporting tile 1\n"
            "Exporting tile |tile1...\n");
  for (const char* line :
       {"1/4 one/a.ma: 2 tiles exported\n", "2/4 two/b.ma: 1 tile exported, 1 failed\n",
        "3/4 broken.ma: not exported\n", "4/4 c.ma: 1 tile exported\n", "gone.psd does not exist",
        "4 scenes, 2 with failures; 4 tiles exported, 1 failed"}) {
    EXPECT_NE(outcome.err.find(line), std::string::npos) << line << outcome.err;
  }
  for (const char* psd : {"one/a.psd", "one/b.psd", "two/a.psd", "art/c.psd"})
    EXPECT_EQ(morvane({"goblins", psd}).status, 0) << psd;
  EXPECT_EQ(shell("$morvane export one/a.ma two/b.ma tile1").status, 0);
  EXPECT_EQ(shell("$morvane export one/a.ma two/b.ma tile1 --to x.psd").status, 2);
  EXPECT_EQ(shell("$morvane export c.ma --map P:/art").status, 2);
}

TEST_F(Batch, TellsHowFarItWasWhenInterrupted) {
  const Outcome outcome = shell(
      "timeout --preserve-status -s INT 1 $morvane export "
      "$(yes one/a.ma | head -5000) >/dev/null");
  EXPECT_EQ(outcome.status, 130);
  EXPECT_NE(outcome.err.find(" of 5000 scenes are done"), std::string::npos) << outcome.err;
}

TEST_F(Batch, QuietLeavesThePlugInsLinesOut) {
  const Outcome outcome = shell("$morvane export --quiet" + scenes_);
  EXPECT_EQ(outcome.status, 3);
  EXPECT_EQ(outcome.out, "");
  for (const char* line :
       {"two/b.ma: |tile2: couldn't load psd; its texture gone.psd",
        "morvane: with failures: broken.ma\n", "morvane: with failures: two/b.ma\n"}) {
    EXPECT_NE(outcome.err.find(line), std::string::npos) << line << outcome.err;
  }
}

// Triangles of 1 by 1 about the middle of a tile 4 wide and 8 deep: one is moved by 4 in x, another
// by 12 in z.
TEST_F(Batch, GoblinsOutsideAreNamedWithHowFar) {
  std::string scene = sceneOfTiles({"a.psd"});
  const std::string pebble = "createNode transform -n \"pebble1\" -p \"tile1\";\n";
  const std::size_t at = scene.find(pebble);
  std::string stone = scene.substr(at, scene.find("createNode lambert") - at);
  for (std::size_t name; (name = stone.find("pebble")) != stone.npos;)
    stone.replace(name, 6, "stone");
  stone.insert(stone.find('\n') + 1, "\tsetAttr \".t\" 0 0 12;\n");
  scene.insert(at + pebble.size(), "\tsetAttr \".t\" 4 0 0;\n");
  write("one/far.ma", scene + stone);
  const Outcome outcome = morvane({"export", "one/far.ma", "--json"});
  EXPECT_EQ(outcome.status, 0);
  for (const char* line : {"|tile1|pebble1|pebbleShape1 reaches 0.75 of the tile's side",
                           "|tile1|stone1|stoneShape1 reaches 1.00 of the tile's side"}) {
    EXPECT_NE(outcome.err.find(line), std::string::npos) << outcome.err;
  }
  const Json expected = Json::parse(R"([{"text":"goblin outside of tile boundary","count":6,
      "goblins":[{"goblin":"|tile1|stone1|stoneShape1","distance":1.0},
                 {"goblin":"|tile1|pebble1|pebbleShape1","distance":0.75}]}])");
  EXPECT_EQ(Json::parse(outcome.out)["warnings"], expected);
}

TEST_F(Batch, WritesARecordForEachTile) {
  const Outcome outcome = shell("$morvane export --json" + scenes_);
  EXPECT_EQ(outcome.status, 3);
  EXPECT_NE(outcome.err.find("Exporting tile |tile1...\n"), std::string::npos) << outcome.err;
  std::vector<Json> records;
  std::istringstream lines(outcome.out);
  for (std::string line; std::getline(lines, line);) {
    records.push_back(Json::parse(line, nullptr, false));
    ASSERT_TRUE(records.back().is_object()) << line;
    EXPECT_GE(records.back()["milliseconds"], 0);
    records.back().erase("milliseconds");
  }
  const Json none = Json::array();
  const auto record = [&](const char* scene, Json tiles, Json tile, Json texture, Json goblins,
                          Json error, int status = 0) {
    return Json{{"scene", scene},
                {"tile", tile},
                {"tiles", tiles},
                {"texture", texture.is_null() ? texture : Json(path(texture))},
                {"goblins", goblins},
                {"vertices", goblins.is_null() ? Json() : Json(3)},
                {"warnings", none},
                {"error", error},
                {"action", texture.is_null() ? Json() : Json("written")},
                {"status", status}};
  };
  EXPECT_EQ(
      records,
      (std::vector<Json>{
          record("one/a.ma", 2, "|tile1", "one/a.psd", 1, nullptr),
          record("one/a.ma", 2, "|tile2", "one/b.psd", 1, nullptr),
          record("two/b.ma", 2, "|tile1", "two/a.psd", 1, nullptr),
          record("two/b.ma", 2, "|tile2", nullptr, nullptr,
                 "couldn't load psd: gone.psd: No such file or directory", 1),
          record("broken.ma", nullptr, nullptr, nullptr, nullptr,
                 path("broken.ma") + " is not a scene file: it does not begin with //Maya; save "
                                     "it as Maya ASCII",
                 3),
          record("c.ma", 1, "|tile1", "art/c.psd", 1, nullptr)}));
}

// A file holds the goblins of one tile only. Tiles that are alike lose nothing.
TEST_F(Batch, GoblinsThatAnotherTileReplacedAreNotExported) {
  const std::string same = sceneOfTiles({"a.psd", "./a.psd"});
  const std::string pebble = "createNode transform -n \"pebble2\" -p \"tile2\";\n";
  std::string moved = same;
  moved.insert(same.find(pebble) + pebble.size(), "\tsetAttr \".t\" 0.5 0 0;\n");
  write("one/same.ma", same);
  write("one/moved.ma", moved);
  EXPECT_EQ(morvane({"export", "one/same.ma", "one/same.ma"}).status, 0);
  const Outcome outcome = morvane({"export", "one/same.ma", "one/moved.ma", "--json"});
  EXPECT_EQ(outcome.status, 1);
  for (const char* line :
       {"one/same.ma: |tile2: its goblins were replaced by those of |tile2 of one/moved.ma",
        "|tile1: its goblins were replaced by those of |tile2, which writes ",
        "2 scenes, 2 with failures; 1 tile exported, 3 failed"}) {
    EXPECT_NE(outcome.err.find(line), std::string::npos) << line << outcome.err;
  }
  EXPECT_NE(outcome.out.find(
                "{\"scene\":\"one/same.ma\",\"tile\":\"|tile1\",\"tiles\":null,\"texture\":null"),
            std::string::npos)
      << outcome.out;
}

TEST_F(Batch, GoblinsOfAnEarlierSceneThatWereReplacedAreAFailure) {
  const std::string moved = withGoblinsAt(sceneOfTiles({"a.psd"}), "0 1 0 1 0 0 0 0 -1");
  write("one/first.ma", sceneOfTiles({"a.psd"}));
  write("one/second.ma", moved);
  EXPECT_EQ(morvane({"export", "one/first.ma", "one/first.ma"}).status, 0);
  EXPECT_EQ(morvane({"export", "one/first.ma", "one/second.ma"}).status, 1);
}

// A TGA image's goblins go into the PSD file beside it, unless that is somebody's.
TEST_F(Batch, APictureBesideATgaImageStays) {
  write("one/c.ma", sceneOfTiles({"p.psd", "p.tga"}));
  write("one/d.ma", sceneOfTiles({"p.tga"}));
  write("one/p.psd", psdBytes(32, 32));
  write("one/p.tga", tgaBytes(32, 32));
  Outcome outcome = morvane({"export", "one/c.ma", "one/d.ma", "--json"});
  EXPECT_EQ(outcome.status, 1);
  EXPECT_NE(outcome.err.find("|tile2: p.tga would be written as " + path("one/p.psd") +
                             ", the texture of |tile1; give"),
            std::string::npos)
      << outcome.err;
  EXPECT_NE(outcome.err.find(", the texture of |tile1 of one/c.ma; give"), std::string::npos);
  EXPECT_EQ(morvane({"goblins", "one/p.psd"}).status, 0);
  const std::string picture = read("one/p.psd");
  EXPECT_EQ(picture.find("$diffuse"), std::string::npos);

  morvane::PsdDocument painted(32, 32);
  ASSERT_EQ(painted.addLayer("sky"), 1);
  ASSERT_TRUE(painted.save(path("one/p.psd").c_str()));
  const std::string before = read("one/p.psd");
  for (const char* command : {"export", "info"}) {
    outcome = morvane({command, "one/d.ma"});
    EXPECT_EQ(outcome.status, 1) << command;
    for (const char* text : {"p.psd: somebody's picture (it has the layer \"sky\")", "p.tga"})
      EXPECT_NE(outcome.err.find(text), std::string::npos) << outcome.err;
  }
  EXPECT_EQ(morvane({"export", "one/d.ma", "tile1", "--to", "one/p.psd"}).status, 1);
  EXPECT_TRUE(read("one/p.psd") == before);
  EXPECT_EQ(morvane({"export", "one/d.ma", "tile1", "--to", "one/p.psd", "--force"}).status, 0);
  EXPECT_NE(shell("$morvane run one/d.ma -c 'file -rename \"one/p.psd\"; file -save'").status, 0);
}

TEST_F(Batch, ADamagedSceneIsExportedAndTold) {
  const std::string whole = "//Maya ASCII 2018 scene\n//Name: d.ma\n" + sceneOfTiles({"a.psd"});
  const std::size_t lines = static_cast<std::size_t>(std::count(whole.begin(), whole.end(), '\n'));
  const struct {
    std::string scene;
    int status;
    std::string told;  // on standard error
    Json damaged;      // the line; a notice has none
  } cases[] = {
      {whole + "// End of d.ma\n", 0, "", nullptr},
      {whole, 1, "d.ma:" + std::to_string(lines + 1) + "; what stood there", lines + 1},
      {whole + "\tsetAttr \".v\" \"n", 1,
       "the scene is cut off; 1 place of the scene is damaged: d.ma:" + std::to_string(lines + 1),
       lines + 1},
      {"//Maya\n}{;\n" + whole + "// End of d.ma\n", 1, "1 place of the scene is damaged: d.ma:2",
       2},
      {whole.substr(0, whole.find("requires")), 1,
       "no tile found: no top-level transform has a mesh whose colour comes from a file texture; "
       "the scene looks cut off; 1 place of the scene is damaged: d.ma:4; fetch the scene again or",
       4},
  };
  for (const auto& c : cases) {
    write("one/d.ma", c.scene);
    const Outcome outcome = morvane({"export", "one/d.ma", "--json"});
    EXPECT_EQ(outcome.status, c.status) << outcome.err;
    EXPECT_NE(outcome.err.find(c.told), std::string::npos) << outcome.err;
    const Json record = Json::parse(outcome.out.substr(0, outcome.out.find('\n')), nullptr, false);
    const bool exported = outcome.out.find("\"goblins\":1") != std::string::npos;
    EXPECT_EQ(exported, c.told.find("no tile") == std::string::npos) << outcome.out;
    if (c.told.empty()) continue;
    EXPECT_EQ(record["error"].is_null(), c.status == 0) << outcome.out;
    const Json& warning = record["warnings"].at(0);
    EXPECT_EQ(warning["kind"], c.damaged.is_null() ? "notice" : "damage") << outcome.out;
    EXPECT_TRUE(c.damaged.is_null() || warning["line"] == c.damaged) << outcome.out;
    EXPECT_EQ(warning["file"], path("one/d.ma"));
    EXPECT_EQ(morvane({"run", "one/d.ma", "-o", "e.ma"}).status, c.damaged.is_null() ? 0 : 1);
    EXPECT_TRUE(exists("e.ma"));
  }
}

TEST_F(Batch, ShowsABarOnATerminal) {
  if (!hasCommand("script")) GTEST_SKIP() << "there is no command to make a terminal";
  const Outcome outcome =
      shell("script -qec \"$morvane export --jobs 1 one/a.ma c.ma --map P:/art=art\" /dev/null");
  EXPECT_EQ(outcome.status, 0);
  EXPECT_NE(outcome.out.find("[#####---------------]  25%  scene 1/2 tile 2/2 |tile2"),
            std::string::npos)
      << outcome.out;
  // No line stands behind a bar: the bar is wiped off before it, or before a line that came with
  // it.
  const std::size_t line = outcome.out.find("Exporting tile |tile2...");
  ASSERT_NE(line, std::string::npos) << outcome.out;
  const std::string before = outcome.out.substr(0, line);
  EXPECT_TRUE(std::regex_search(before, std::regex("(\\r\\x1b\\[K|\\n)$"))) << outcome.out;
}

}  // namespace
