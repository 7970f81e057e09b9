#include <algorithm>
#include <map>
#include <nlohmann/json.hpp>
#include <regex>
#include <sstream>

#include "tests/end_to_end/Program.h"

namespace {

using Json = nlohmann::json;

// Scenes whose work is shared out among processes: one that fails in part, one that is none, one
// whose name is no UTF-8, and many that all write one texture, each other goblins.
class Jobs : public ProgramTest {
 protected:
  void SetUp() override {
    write("ok.ma", sceneOfTiles({"a.psd", "b.tga"}));
    write("part.ma", sceneOfTiles({"c.psd", "gone.psd"}));
    write("broken.ma", "no scene");
    write("odd\xFF.ma", sceneOfTiles({"odd\xFF.psd"}));
    write("b.tga", tgaBytes(32, 32));
    for (const char* psd : {"a.psd", "c.psd", "odd\xFF.psd", "p.psd"}) write(psd, psdBytes(32, 32));
    write("tga.ma", sceneOfTiles({"p.tga"}));  // would become p.psd, the texture of rival 0
    write("p.tga", tgaBytes(32, 32));
    for (int i = 0; i < kRivals; ++i) {
      std::string scene = sceneOfTiles({"p.psd"});
      const std::string pebble = "createNode transform -n \"pebble1\" -p \"tile1\";\n";
      scene.insert(scene.find(pebble) + pebble.size(),
                   "\tsetAttr \".t\" 0 0." + std::to_string(i + 1) + " 0;\n");
      write("rival" + std::to_string(i) + ".ma", scene);
    }
  }

  // Without what is another time in each run.
  static std::string timeless(const std::string& text) {
    return std::regex_replace(text, std::regex("\"milliseconds\":[0-9.]+|[0-9.]+ s\n"), "");
  }

  // What the plug-in and the host say at once comes in any order.
  static std::vector<std::string> sortedLines(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream in(timeless(text));
    for (std::string line; std::getline(in, line);) lines.push_back(line);
    std::sort(lines.begin(), lines.end());
    return lines;
  }

  std::map<std::string, std::string> textures() {
    std::map<std::string, std::string> bytes;
    for (const std::string& name : names())
      if (name.substr(name.size() - 4) == ".psd") bytes[name] = read(name);
    return bytes;
  }

  static constexpr int kRivals = 4;
  const std::string scenes_ = " ok.ma part.ma broken.ma odd*.ma rival?.ma tga.ma --map P:/art=art ";
};

TEST_F(Jobs, DoWhatOneDoes) {
  for (const char* command : {"export --json", "export", "info"}) {
    const std::string line = "$morvane " + std::string(command) + scenes_;
    SetUp();
    const Outcome one = shell(line + "--jobs 1");
    const auto expected = textures();
    SetUp();
    const Outcome several = shell(line + "--jobs 3 --ordered");
    EXPECT_EQ(several.status, one.status) << command << several.err;
    EXPECT_EQ(timeless(several.out), timeless(one.out)) << command;
    EXPECT_EQ(sortedLines(several.err), sortedLines(one.err)) << command;
    EXPECT_TRUE(textures() == expected) << command;
  }
}

TEST_F(Jobs, WriteRecordsWholeAsScenesEnd) {
  const Outcome one = shell("$morvane export --json --jobs 1" + scenes_);
  SetUp();
  const Outcome several = shell("$morvane export --json --jobs 3" + scenes_);
  const auto linesOf = [](const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream in(timeless(text));
    for (std::string line; std::getline(in, line);) lines.push_back(line);
    return lines;
  };
  std::vector<std::string> expected = linesOf(one.out);
  std::vector<std::string> found = linesOf(several.out);
  std::sort(expected.begin(), expected.end());
  std::sort(found.begin(), found.end());
  EXPECT_EQ(found, expected);
}

TEST_F(Jobs, AKilledProcessIsTheFailureOfItsScene) {
  const Outcome outcome = shell(
      "set -- $(yes rival1.ma | head -20); $morvane export \"$@\" --jobs 2 --json & main=$!\n"
      "until child=$(cat /proc/$main/task/*/children 2>/dev/null | cut -d' ' -f1)\n"
      "  [ -n \"$child\" ]; do sleep 0.01; done\n"
      "kill -s KILL $child; wait $main");
  EXPECT_EQ(outcome.status, 1) << outcome.err;
  const std::string why = "its export was ended by signal 9 (Killed)";
  EXPECT_NE(outcome.err.find("morvane: rival1.ma: " + why), std::string::npos) << outcome.err;
  EXPECT_NE(outcome.err.find("1 with failures; 19 tiles exported, 0 failed"), std::string::npos);
  EXPECT_NE(outcome.err.find("with failures: rival1.ma"), std::string::npos);
  std::vector<Json> failed;
  std::istringstream lines(outcome.out);
  for (std::string line; std::getline(lines, line);) {
    const Json record = Json::parse(line);
    if (record["status"] != 0) failed.push_back(record);
  }
  ASSERT_EQ(failed.size(), 1u) << outcome.out;
  EXPECT_EQ(failed[0]["error"], why);
  EXPECT_EQ(failed[0]["status"], 1);
}

// A shell lets what it starts in the background ignore SIGINT.
TEST_F(Jobs, EndWithTheProcessThatStartedThem) {
  for (const char* signal : {"INT", "KILL"}) {
    const Outcome outcome = shell(
        "set -- $(yes ok.ma | head -500); env --default-signal=INT $morvane export \"$@\" --jobs 2 "
        ">out.txt & "
        "main=$!\n"
        "sleep 0.7; children=$(cat /proc/$main/task/*/children)\n"
        "kill -s " +
        std::string(signal) +
        " $main; wait $main; status=$?\n"
        "sleep 0.3; for child in $children; do\n"
        "  [ -d /proc/$child ] && ! grep -q '^State:.Z' /proc/$child/status && echo left; done\n"
        "set -- $children; echo $# children; exit $status");
    EXPECT_EQ(outcome.out, "2 children\n") << signal;
    const bool isKilled = signal[0] == 'K';
    EXPECT_EQ(outcome.status, isKilled ? 137 : 130) << outcome.err;
    EXPECT_EQ(outcome.err.find(" of 500 scenes are done") == std::string::npos, isKilled);
  }
}

}  // namespace
