#include "host/commands/Builtin.h"
#include "host/state/HostState.h"
#include "tests/file/SceneText.h"

namespace host {
namespace {

// The first scene says all that a host keeps: units, header statements, types and names, damage.
constexpr char kFirst[] =
    "requires \"someone\" \"1.0\";\ncurrentUnit -l meter -a radian -t film;\n"
    "fileInfo \"application\" \"first\";\n"
    "file -r -ns \"r\" \"other.ma\";\n"
    "createNode someonesNode -n \"box\";\ncreateNode transform -n \"hill\";\n"
    "relationship \"link\" \":box\";\n"
    "select -ne :initialShadingGroup;\nsetAttr \".v\" 1;\nsetAttr \".gone";
constexpr char kSecond[] =
    "createNode transform -n \"box\";\nsetAttr \".t\" -type \"double3\" 1 2 3;\n"
    "setAttr \".r\" -type \"double3\" 10 20 30;\n// End of second.ma\n";

class TwoScenes : public SceneFiles {
 protected:
  void SetUp() override {
    SceneFiles::SetUp();
    startOver();
    writeText("first.ma", std::string("//Maya ASCII 2018 scene\n") + kFirst);
    writeText("other.ma", "//Maya ASCII 2018 scene\ncreateNode transform -n \"rock\";\n");
    writeText("second.ma", std::string("//Maya ASCII 2018 scene\n") + kSecond);
  }

  void startOver() {
    HostState::reset();
    mel::addBuiltinCommands(mel::Interpreter::current().commands());
    mel::Interpreter::current().setCallerFolder(folder_.generic_string());
  }

  // What the second scene is saved as.
  std::string second() {
    EXPECT_EQ(openPath(pathOf("second.ma")), "");
    EXPECT_TRUE(save("saved.ma"));
    return readAll(pathOf("saved.ma"));
  }
};

TEST_F(TwoScenes, TheSecondHasNothingOfTheFirst) {
  const std::string alone = second();
  EXPECT_EQ(run("getAttr box.t"), "1 2 3");  // centimetres, whatever the first scene's units
  EXPECT_NE(openPath(pathOf("first.ma")), "");
  EXPECT_EQ(run("getAttr r:rock.v"), "1");
  run("select hill");
  EXPECT_EQ(second(), alone);
  EXPECT_TRUE(Scene::current().selection.items().empty());
  EXPECT_EQ(run("objExists hill"), "0");
}

TEST_F(TwoScenes, AResetHostHasNoPast) {
  EXPECT_NE(openPath(pathOf("first.ma")), "");
  EXPECT_EQ(run("dirmap -en true; dirmap -m \"/far\" \"/near\"; global int $kept = 3;"
                "global proc left() {} left; $kept"),
            "3");
  EXPECT_GT(HostState::current().problems.damages, 0u);
  startOver();
  const SceneProblems& problems = HostState::current().problems;
  EXPECT_TRUE(problems.list.empty() && problems.end == SceneProblems::End::kWhole);
  EXPECT_TRUE(HostState::current().folders.all().empty());
  EXPECT_EQ(run("left"), "failed: unknown command 'left'");
  EXPECT_EQ(run("$kept"), "failed: $kept is an undeclared variable");
  EXPECT_EQ(run("objExists box"), "0");
}

}  // namespace
}  // namespace host
