#include <nlohmann/json.hpp>
#include <sstream>

#include "tests/end_to_end/Program.h"

namespace {

using Json = nlohmann::json;

std::string sceneWithRaisedPebbles(const std::vector<std::string>& textures) {
  return withGoblinsAt(sceneOfTiles(textures), "0 1 0 1 0 0 0 0 -1");
}

// Exports of what was exported before.
class Repeat : public ProgramTest {
 protected:
  void SetUp() override {
    write("level.ma", sceneOfTiles({"a.psd", "b.tga"}));
    write("a.psd", psdBytes(32, 32));
    write("b.tga", tgaBytes(32, 32));
  }

  // The value of a key in each record, in the order of the tiles.
  Json valuesOf(const std::string& options, const char* key, int status = 0) {
    const Outcome outcome = shell("$morvane export --json " + options);
    EXPECT_EQ(outcome.status, status) << outcome.err;
    std::istringstream lines(outcome.out);
    std::map<std::string, Json> values;
    for (std::string line; std::getline(lines, line);) {
      const Json record = Json::parse(line);
      values[record["scene"].get<std::string>() + record["tile"].get<std::string>()] = record[key];
    }
    Json list = Json::array();
    for (const auto& value : values) list.push_back(value.second);
    return list;
  }

  std::string timeOf(const std::string& file) { return shell("stat -c %Y " + file).out; }
};

TEST_F(Repeat, LeavesFilesAloneThatHoldTheGoblins) {
  const std::string again = "level.ma --skip-unchanged";
  EXPECT_EQ(valuesOf(again, "action"), (Json{"written", "written"}));
  ASSERT_EQ(shell("touch -d @1000000000 a.psd b.psd").status, 0);
  EXPECT_EQ(valuesOf(again, "action"), (Json{"unchanged", "unchanged"}));
  EXPECT_EQ(valuesOf(again, "goblins"), (Json{1, 1}));
  EXPECT_EQ(timeOf("a.psd") + timeOf("b.psd"), "1000000000\n1000000000\n");
  EXPECT_NE(morvane({"export", "level.ma", "level.ma", "--skip-unchanged"})
                .err.find("2/2 level.ma: 2 tiles exported (2 unchanged)"),
            std::string::npos);
  // The file beside a TGA image has its pixels, too.
  std::string image = tgaBytes(32, 32);
  image.back() = '\x10';
  write("b.tga", image);
  EXPECT_EQ(valuesOf(again, "action"), (Json{"unchanged", "written"}));
  EXPECT_EQ(timeOf("a.psd"), "1000000000\n");
  write("level.ma", sceneWithRaisedPebbles({"a.psd", "b.tga"}));
  EXPECT_EQ(valuesOf(again, "action"), (Json{"written", "written"}));
  EXPECT_EQ(valuesOf("level.ma", "action"), (Json{"written", "written"}));
}

// A file has room for the goblins of one tile: what is left alone is a tile's, too.
TEST_F(Repeat, KnowsWhoseGoblinsAreLostInWhatIsLeftAlone) {
  write("other.ma", sceneWithRaisedPebbles({"a.psd"}));
  EXPECT_EQ(morvane({"export", "level.ma"}).status, 0);
  for (const char* how :
       {"--skip-unchanged --jobs 1", "--dry-run --jobs 2", "--dry-run --jobs 1"}) {
    const Outcome outcome = shell("$morvane export level.ma other.ma " + std::string(how));
    EXPECT_EQ(outcome.status, 1) << how;
    const bool isPlan = std::string(how).find("--dry-run") == 0;
    EXPECT_EQ(outcome.err.find(isPlan ? " exported, " : " planned, "), std::string::npos) << how;
    EXPECT_NE(outcome.err.find("level.ma: |tile1: its goblins were replaced by those of |tile1 of "
                               "other.ma"),
              std::string::npos)
        << how << outcome.err;
    EXPECT_EQ(morvane({"export", "level.ma"}).status, 0);
  }
}

TEST_F(Repeat, SaysWhatWouldBeWritten) {
  write("level.ma", sceneOfTiles({"a.psd", "b.tga", "gone.psd"}));
  const auto before = names();
  const std::string picture = read("a.psd");
  Outcome outcome = morvane({"export", "level.ma", "--dry-run"});
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(outcome.out, "would write " + path("a.psd") + ": 1 goblin of |tile1\nwould write " +
                             path("b.psd") + ": 1 goblin of |tile2\n");
  EXPECT_NE(outcome.err.find("gone.psd does not exist"), std::string::npos) << outcome.err;
  EXPECT_EQ(valuesOf("level.ma --dry-run", "action", 1), (Json{"planned", "planned", nullptr}));
  EXPECT_EQ(valuesOf("level.ma --dry-run", "vertices", 1), (Json{3, 3, nullptr}));
  EXPECT_EQ(names(), before);
  EXPECT_TRUE(read("a.psd") == picture);
  EXPECT_EQ(morvane({"export", "level.ma", "tile1"}).status, 0);
  outcome = morvane({"export", "level.ma", "tile[12]", "--dry-run", "--skip-unchanged"});
  EXPECT_EQ(morvane({"export", "level.ma", "tile1", "--dry-run", "--skip-unchanged"}).out,
            "unchanged " + path("a.psd") + ": 1 goblin of |tile1\n");
}

TEST_F(Repeat, TakesUpWhereARunEnded) {
  write("part.ma", sceneOfTiles({"c.psd", "gone.psd"}));
  write("late.ma", sceneOfTiles({"d.psd"}));
  for (const char* psd : {"c.psd", "d.psd"}) write(psd, psdBytes(32, 32));
  ASSERT_EQ(shell("$morvane export level.ma part.ma late.ma --json --ordered >all.jsonl").status,
            1);
  // Stopped in the middle of the last scene's record.
  const std::string records = read("all.jsonl");
  write("stopped.jsonl", records.substr(0, records.size() - 20));
  write("gone.psd", psdBytes(32, 32));
  ASSERT_EQ(shell("touch -d @1000000000 a.psd b.psd c.psd").status, 0);
  const std::string scenes = "level.ma part.ma late.ma --resume ";
  const Outcome outcome =
      shell("$morvane export --json --ordered " + scenes + "stopped.jsonl >rest.jsonl");
  EXPECT_EQ(outcome.status, 0) << outcome.err;
  for (const char* line : {"1 of 3 scenes were done before", "1 tile exported, 1 done before"})
    EXPECT_NE(outcome.err.find(line), std::string::npos) << outcome.err;
  EXPECT_EQ(timeOf("c.psd") + timeOf("a.psd"), "1000000000\n1000000000\n");
  for (const char* psd : {"gone.psd", "d.psd"}) EXPECT_EQ(morvane({"goblins", psd}).status, 0);
  const Outcome done = shell("$morvane export " + scenes + "stopped.jsonl --resume rest.jsonl");
  EXPECT_EQ(done.status, 0);
  EXPECT_NE(done.err.find("3 of 3 scenes were done before"), std::string::npos) << done.err;

  write("damaged.jsonl", "{\"scene\":\"level.ma\"\n" + records);
  write("other.jsonl", "{\"layers\":1}\n" + records);
  for (const char* file : {"damaged.jsonl", "other.jsonl", "missing.jsonl"}) {
    const Outcome refused = shell("$morvane export " + scenes + file);
    EXPECT_EQ(refused.status, 2) << file;
    EXPECT_NE(refused.err.find("--resume: " + std::string(file) + ":"), std::string::npos)
        << refused.err;
  }
}

}  // namespace
