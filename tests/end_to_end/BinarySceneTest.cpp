#include <algorithm>
#include <filesystem>
#include <regex>

#include "host/Host.h"
#include "tests/end_to_end/Program.h"
#include "tests/file/BinaryTwin.h"

namespace {

// The same scene and textures in two folders, in each of the two forms.
class BinaryScenes : public ProgramTest {
 protected:
  void SetUp() override {
    static const bool started = (host::start(folder_.string()), true);
    ASSERT_TRUE(started);
    for (const char* const folder : {"text", "binary"}) {
      std::filesystem::create_directory(path(folder));
      for (const char* const texture : {"/a.psd", "/b.psd"})
        write(std::string(folder) + texture, psdBytes(32, 32));
    }
    write("text/scene.ma", sceneOfTiles({"a.psd", "P:/art/b.psd"}));
    ASSERT_TRUE(host::openScene(path("text/scene.ma")).ok());
    write("binary/scene.mb", host::twin::sceneFile({}));
    host::newScene();
  }

  // Runs the line in the folder of a form, with SCENE for that form's scene. What differs from one
  // run to the next is left out of what it prints.
  Outcome in(const std::string& folder, const std::string& line) {
    const std::string scene = folder == "text" ? "scene.ma" : "scene.mb";
    Outcome outcome = shell("cd " + folder + " && $morvane " +
                            std::regex_replace(line, std::regex("SCENE"), scene));
    for (std::string* const text : {&outcome.out, &outcome.err}) {
      *text = std::regex_replace(*text, std::regex(scene), "SCENE");
      *text = std::regex_replace(*text, std::regex("/" + folder + "/"), "/FOLDER/");
      *text = std::regex_replace(*text, std::regex("\"milliseconds\":[0-9.]+"), "");
    }
    return outcome;
  }
};

TEST_F(BinaryScenes, AreTakenByEverySubcommandAsTheirTwinsInText) {
  const struct {
    const char* line;
    int status;
  } kCases[] = {
      // one texture is not where the scene says
      {"info SCENE", 1},
      {"info SCENE --json --map P:/art=.", 0},
      {"run SCENE -c 'print `ls -type mesh`' -o saved.ma", 0},
      {"export SCENE tile1 --to one.psd", 0},
      {"import SCENE tile2 one.psd -o dressed.ma", 0},
      {"export SCENE", 1},
      {"export SCENE 't*2' --json --map P:/art=.", 0},
      {"view SCENE --map P:/art=. -o page.html", 0},
      {"run SCENE -o saved.mb", 2},
  };
  for (const auto& it : kCases) {
    const Outcome text = in("text", it.line);
    const Outcome binary = in("binary", it.line);
    EXPECT_EQ(text.status, it.status) << it.line << text.err;
    EXPECT_EQ(binary.status, it.status) << it.line << binary.err;
    EXPECT_EQ(binary.out, text.out) << it.line;
    EXPECT_EQ(binary.err, text.err) << it.line;
  }
  for (const char* const file : {"/a.psd", "/b.psd", "/one.psd"})
    EXPECT_TRUE(read(std::string("binary") + file) == read(std::string("text") + file)) << file;
  EXPECT_NE(read("text/b.psd"), psdBytes(32, 32));
}

// A scene that is cut off, and bytes that are none: the status is that of the other form, and the
// message names the byte.
TEST_F(BinaryScenes, ThatAreDamagedHaveTheStatusOfTheirTwins) {
  const std::string whole = read("binary/scene.mb");
  const std::string text = read("text/scene.ma");
  write("text/cut.ma", text.substr(0, text.find("createNode lambert") + 15));
  write("binary/cut.mb", whole.substr(0, whole.find("RLAM") - 3));
  for (const char* const command : {"export", "info", "run"}) {
    const Outcome cutText = shell("cd text && $morvane " + std::string(command) + " cut.ma");
    const Outcome cutBinary = shell("cd binary && $morvane " + std::string(command) + " cut.mb");
    EXPECT_EQ(cutBinary.status, cutText.status) << command << cutBinary.err;
    EXPECT_NE(cutBinary.err.find("byte " + std::to_string(whole.find("RLAM") - 3)),
              std::string::npos)
        << cutBinary.err;
    const Outcome none =
        shell("echo FOR8junk >junk.mb; $morvane " + std::string(command) + " junk.mb");
    EXPECT_EQ(none.status, 3) << command;
  }
  EXPECT_EQ(read("binary/a.psd"), psdBytes(32, 32));
}

}  // namespace
