#include <algorithm>

#include "host/mesh/MeshData.h"
#include "host/scene/Node.h"
#include "host/text/Text.h"
#include "tests/file/SceneText.h"

namespace host {
namespace {

class HostileScenes : public SceneFiles {
 protected:
  void expectStable(const std::string& text) const;
};

constexpr char kMesh[] = "createNode mesh -n \"m\";\n";

// Ranges, counts and indices at their extremes: refused in words, without the memory that they ask
// for.
TEST_F(HostileScenes, RangesAndCountsPromiseNothing) {
  const char* const kStatements[] = {
      "setAttr \".vt[0:999999999]\" 1 2 3;",
      "setAttr \".vt[999999999]\" 1 2 3;",
      "setAttr -s 999999999 \".vt[0:2147483647]\" 1 2 3;",
      "setAttr \".vt[5:2]\" 1 2 3;",
      "setAttr \".vt[-1:2]\" 1 2 3;",
      "setAttr \".vt[99999999999999999999]\" 1 2 3;",
      "setAttr \".vt[0:1]\" 1 2 three 4 5 6;",
      "setAttr \".vt[0:1]\" 1 2 3 4;",
      "setAttr \".pt[2147483647]\" 1 2 3;",
      "setAttr \".ed[0:2]\" 0 2147483647 1 -1 0 0 99999999999 1 1;",
      "setAttr \".uvst[2147483647].uvsp[0]\" 0 0;",
      "setAttr \".uvst[0].uvsp[2147483646:2147483647]\" 0 0 1 1;",
      "setAttr \".clst[0].rprt\" 77;",
      "setAttr \".clst[0].clsp[0:5]\" 1;",
      "setAttr \".fc[0:999999999]\" -type \"polyFaces\" f 4 0 1 2 3;",
      "setAttr \".fc[0]\" -type \"polyFaces\" f 999999999 0 1 2 3;",
      "setAttr \".fc[0]\" -type \"polyFaces\" f -1 0 1 2;",
      "setAttr \".fc[0]\" -type \"polyFaces\" mu 0 3 0 1 2;",
      "setAttr \".fc[0]\" -type \"polyFaces\" h 3 0 1 2;",
      "setAttr \".fc[0]\" -type \"polyFaces\" f 3 0 1 2 mu 2147483647 3 0 1 2;",
      "setAttr \".fc[0]\" -type \"polyFaces\" f 3 0 1 2 mu 0 999999 0 1 2;",
      "setAttr \".fc[0]\" -type \"polyFaces\" f;",
      "setAttr \".n[7:9]\" 1 2 3;",
      "setAttr \".ia[0:2147483647]\" 1;",
      "setAttr \".iog[2147483647].og[2147483647].gcl\" -type \"componentList\" 1 \"f[0:9]\";",
      "setAttr \".tgi[0].ni[0:99999999].x\" 1;",
      "setAttr \".vt[[0]\" 1 2 3;",
      "setAttr \".uvst[0].uvsn[3].x\" 1;",
      "setAttr \".\" 1;",
      "setAttr \"..\" 1;",
  };
  for (const char* statement : kStatements) {
    open(std::string(kMesh) + statement);
    const NodePtr mesh = node("m");
    ASSERT_NE(mesh, nullptr) << statement;
    EXPECT_LE(mesh->mesh->pointCount(), 3) << statement;
    EXPECT_EQ(mesh->mesh->triangles().list.size(), 0u) << statement;
    EXPECT_TRUE(save("saved.ma"));
    EXPECT_LT(fs::file_size(pathOf("saved.ma")), 100000u) << statement;
  }
}

TEST_F(HostileScenes, FacesThatDoNotFitAreNamed) {
  const std::string warnings =
      open(std::string(kMesh) +
           "setAttr \".vt[0:2]\" 0 0 0 1 0 0 0 0 1;\nsetAttr \".ed[0:1]\" 0 1 1 1 2 1;\n"
           "setAttr \".fc[0]\" -type \"polyFaces\" f 3 0 1 7;\n");
  EXPECT_NE(warnings.find("'m' has no usable faces: "), std::string::npos) << warnings;
  EXPECT_EQ(node("m")->mesh->faceCount(), 0);
}

TEST_F(HostileScenes, DeepAndLongTextsEnd) {
  std::string parentheses = "createNode transform -n ";
  parentheses += std::string(1000000, '(');
  open(parentheses + ";");
  std::string chain = "createNode transform -n \"t0\";\n";
  for (int i = 1; i < 3000; ++i) {
    chain += "createNode transform -n \"t" + std::to_string(i) + "\" -p \"t" +
             std::to_string(i - 1) + "\";\n";
  }
  open(chain);
  EXPECT_EQ(run("objExists t900"), "1");
  EXPECT_TRUE(save("deep.ma"));
  open("addAttr -ln " + std::string(1000000, 'x') + " -at long persp;");
  open("/*" + std::string(3000000, '*'));
  open("//" + std::string(3000000, '/'));
  open("createNode transform -n \"" + std::string(3000000, '\\') + "\";");
}

constexpr char kSmall[] =
    "//Maya ASCII 2018 scene\nrequires maya \"2018\";\ncurrentUnit -l meter -a degree -t film;\n"
    "createNode transform -n \"a\";\n\tsetAttr -l on \".t\" -type \"double3\" 1 2 3;\n"
    "\taddAttr -ci true -sn \"g\" -ln \"goblinName\" -dt \"string\";\n\tsetAttr \".g\" -type "
    "\"string\" \"o\\\"k\\n\";\n"
    "createNode mesh -n \"aShape\" -p \"|a\";\n\tsetAttr \".iog[0].og[0].gcl\" -type "
    "\"componentList\" 1 \"f[0]\";\n"
    "\tsetAttr \".uvst[0].uvsn\" -type \"string\" \"map1\";\n\tsetAttr \".uvst[0].uvsp[0:2]\" 0 0 "
    "1 0 1 1;\n"
    "\tsetAttr -s 3 \".vt[0:2]\" 0 0 0 1 0 0 1 0 1;\n\tsetAttr -s 3 \".ed[0:2]\" 0 1 1 1 2 1 2 0 "
    "0;\n"
    "\tsetAttr -s 1 \".fc[0]\" -type \"polyFaces\" f 3 0 1 2 mu 0 3 0 1 2;\n"
    "createNode lambert -n \"m\";\ncreateNode shadingEngine -n \"mSG\";\n\tsetAttr \".ro\" yes;\n"
    "connectAttr \"m.oc\" \"mSG.ss\";\nconnectAttr \"aShape.iog.og[0]\" \"mSG.dsm\" -na;\n"
    "parent -s -nc -r -add \"|a|aShape\" \"persp\" ;\nselect -ne :time1;\n";

// Whatever is read is written such that it reads the same, and gives no commands of its own.
void HostileScenes::expectStable(const std::string& text) const {
  writeText("changed.ma", text);
  const std::string warnings = openPath(pathOf("changed.ma"));
  ASSERT_EQ(warnings.substr(0, 6) == "failed", text.size() < 6) << text;
  std::string saved[2];
  for (std::string& bytes : saved) {
    ASSERT_TRUE(save("saved.ma"));
    bytes = readAll(pathOf("saved.ma"));
    ASSERT_EQ(openPath(pathOf("saved.ma")).find("unknown command"), std::string::npos) << text;
  }
  ASSERT_EQ(saved[0], saved[1]) << text.substr(text.size() > 2000 ? text.size() - 2000 : 0);
}

// A small scene with each byte as a zero, as 0xFF, and turned over, and cut short at each; and real
// scenes cut short.
TEST_F(HostileScenes, EveryChangedByteAndEveryCutIsHandled) {
  for (std::size_t length = 0; length < sizeof kSmall; ++length)
    expectStable(std::string(kSmall, length));
  for (std::size_t at = 24; at + 1 < sizeof kSmall; ++at) {
    for (const char value : {'\0', '\xFF', static_cast<char>(~kSmall[at])}) {
      std::string text = kSmall;
      text[at] = value;
      expectStable(text);
    }
  }
  for (const fs::path& scene : corpusScenes()) {
    if (fs::file_size(scene) >= 80000) continue;
    const std::string text = readAll(scene);
    for (std::size_t length = 6; length < text.size(); length += 1 + text.size() / 40)
      expectStable(text.substr(0, length));
  }
}

// What once was read and then written such that it read otherwise.
TEST_F(HostileScenes, OddStatementsReadTheSameOnceSaved) {
  for (const char* statement : {
           "setAttr \".kept\" -type \"double2\" -113break;",  // no flag, though not a number
           "setAttr -cb on \".kept]\";",                      // a flag of what has no value
       }) {
    SCOPED_TRACE(statement);
    expectStable(std::string("//Maya\ncreateNode transform -n \"a\";\n") + statement + "\n");
  }
}

// What multiplies: primitives of few words, and files that refer to others many times.
TEST_F(HostileScenes, FewWordsMakeNoGiants) {
  std::string giants;
  for (const char* name : {"a", "b", "c"}) {
    giants += std::string("createNode mesh -n \"") + name + "m\";\ncreateNode polyPlane -n \"" +
              name + "p\";\nsetAttr \".sw\" 1200;\nsetAttr \".sh\" 1000;\nconnectAttr \"" + name +
              "p.out\" \"" + name + "m.i\";\n";
  }
  EXPECT_NE(open(giants).find("the primitives before it have too many points"), std::string::npos);
  EXPECT_EQ(node("bm")->mesh->pointCount(), 1201 * 1001);
  EXPECT_EQ(node("cm")->mesh->pointCount(), 0);

  for (int level = 0; level < 3; ++level) {
    std::string text = "//Maya\n";
    for (int i = 0; i < 30; ++i) {
      text += "file -r -ns \"n" + std::to_string(i) + "\" \"level" + std::to_string(level + 1) +
              ".ma\";\n";
    }
    writeText("level" + std::to_string(level) + ".ma", text);
  }
  writeText("level3.ma", "//Maya\n");
  const std::string warnings = openPath(pathOf("level0.ma"));  // 30 + 900 + 27000 files
  EXPECT_NE(warnings.find("the scene refers to too many files"), std::string::npos);
}

// Every way to ask for a thousand million of something, and to lead back to where one is.
TEST_F(HostileScenes, WhatCannotEndIsNamed) {
  const struct {
    const char* type;
    const char* attribute;
  } kPrimitives[] = {{"polyPlane", "sw"},  {"polyCube", "sd"},     {"polySphere", "sa"},
                     {"polySphere", "sh"}, {"polyCylinder", "sa"}, {"polyCylinder", "sc"},
                     {"polyCone", "sa"},   {"polyCone", "sh"},     {"polyTorus", "sh"},
                     {"polyPyramid", "sh"}};
  for (const auto& c : kPrimitives) {
    const std::string warnings =
        open(std::string(kMesh) + "createNode " + c.type + " -n \"p\";\nsetAttr \"." + c.attribute +
             "\" 1000000000;\nconnectAttr \"p.out\" \"m.i\";\n");
    EXPECT_NE(warnings.find("'p' (" + std::string(c.type) +
                            "), but its subdivisions ask for too many points"),
              std::string::npos)
        << c.attribute << warnings;
    EXPECT_EQ(node("m")->mesh->pointCount(), 0);
  }
  open(
      "createNode transform -n \"a\";\ncreateNode transform -n \"b\";\nconnectAttr \"a.t\" "
      "\"b.t\";\nconnectAttr \"b.t\" \"a.t\";\nconnectAttr \"a.tx\" \"a.ry\";\nconnectAttr "
      "\"a.ry\" \"a.tz\";\n");
  EXPECT_EQ(run("size(`getAttr a.wm`)"), "16");
  EXPECT_EQ(run("size(`getAttr b.t`)"), "3");

  const auto refersTo = [this](const std::string& name, const std::vector<std::string>& others) {
    std::string text = "//Maya\ncreateNode transform -n \"t\";\n";
    for (const std::string& other : others)
      text += "file -r -ns \"n\" -rfn \"" + other + "RN\" \"" + other + ".ma\";\n";
    writeText(name + ".ma", text);
  };
  refersTo("self", {"self"});
  refersTo("ring", {"ring1"});
  refersTo("ring1", {"ring"});
  for (int i = 0; i < 20; ++i) {
    const std::string next = "tree" + std::to_string(i + 1);
    refersTo("tree" + std::to_string(i), {next, next});
  }
  refersTo("tree20", {});
  const struct {
    const char* scene;
    const char* named;
    const char* reason;
  } kReferences[] = {
      {"self", "self.ma", " refers to itself; remove that reference"},
      {"ring", "ring.ma", " refers to itself; remove that reference"},
      {"tree0", "tree16.ma", " is not loaded: files refer to one another more than 16 deep"}};
  for (const auto& c : kReferences) {
    const std::string warnings = openPath(pathOf(std::string(c.scene) + ".ma"));
    EXPECT_NE(warnings.find(pathOf(c.named) + c.reason), std::string::npos) << warnings;
    EXPECT_EQ(std::count(warnings.begin(), warnings.end(), '\n'), 1) << warnings;
    EXPECT_LT(Scene::current().nodes().size(), 11000u);
  }
}

// A scene that was opened and saved is commands for whoever opens it next.
TEST_F(HostileScenes, TextsOfASceneAreNeverCommandsOfASavedOne) {
  const std::string statements[] = {
      "currentUnit -l centimeter -t ?;",
      "createNode ? -n \"x\";\nsetAttr \".v\" 1;",
      "createNode transform -n ?;\nsetAttr \".v\" 0;",
      "createNode transform -n \"x\" -p ?;",
      "createNode transform -n \"x\";\nrename -uid ?;\nsetAttr ! 1;",
      "createNode unknown -n \"x\";\nsetAttr ! 1;\nsetAttr \".a\" -type ? ?;\nsetAttr \".b\" ?;",
      "select -ne :defaultRenderGlobals;\nsetAttr ! 1;\nselect -ne ?;",
      "createNode transform -n \"x\";\naddAttr -ln \"n\" -dt \"string\" -nn ?;\n"
      "setAttr \".n\" -type \"string\" ?;",
      "createNode transform -n \"x\";\naddAttr -ln \"n\" -at \"enum\" -en ?;\naddAttr -ln ? -at "
      "long;",
      "createNode transform -n \"x\";\naddAttr -ln \"n\" -at ?;\naddAttr -sn ? -ln \"m\" -dt ?;",
      "createNode transform -n \"x\";\naddAttr -ln \"n\" -dt \"stringArray\";\n"
      "setAttr \".n\" -type \"stringArray\" 2 ? ?;\nsetAttr -k ? -l ? \".v\" no;",
      "createNode mesh -n \"x\";\nsetAttr \".uvst[0].uvsn\" -type \"string\" ?;\n"
      "setAttr \".uvst[0].uvsp[0]\" 0 0;\nsetAttr \".cuvs\" -type \"string\" ?;",
      "createNode mesh -n \"x\";\nsetAttr \".clst[0].clsn\" -type \"string\" ?;\n"
      "setAttr \".clst[0].clsp[0]\" 1 1 1 1;\nsetAttr \".ccls\" -type \"string\" ?;",
      "requires ? ?;\nrequires -nodeType ? \"x\" \"1\";\nfileInfo ? ?;",
      "file -rdi 1 -ns ? -rfn ? ?;\nfile -r -ns ? -dr 1 -op ? -typ ? ?;",
      "dataStructure -fmt ? -as ?;\napplyMetadata -fmt ? -v ? -scn;",
      "relationship ? \":lightLinker1.message\" ?;\nlockNode -l ?;",
      "connectAttr ? \":time1.o\";\nparent -s -nc -r -add ? ?;\nunknownCommand ?;",
      "createNode file -n \"x\";\nsetAttr \".ftn\" -type \"string\" ?;",
  };
  const std::string texts[] = {"x\"; trace; \"",
                               "x; trace;",
                               "x\\\"; trace; \"",
                               "x\\",
                               "`trace`",
                               "$(trace) {trace;}",
                               "x\n trace;\n",
                               "x\r trace;\r",
                               "// x",
                               "/* x",
                               "*/ trace; /*",
                               "x + trace",
                               "gr\xC3\xBCn",
                               "-n",
                               std::string("x\0; trace;", 10),
                               std::string(100000, '"')};
  for (const std::string& statement : statements) {
    for (const std::string& text : texts) {
      std::string filled;
      for (const char c : statement) {
        filled += c == '?'   ? mel::quoted(text)
                  : c == '!' ? mel::quoted("." + text)
                             : std::string(1, c);
      }
      expectStable("//Maya ASCII 2018 scene\n" + filled);
    }
  }
}

}  // namespace
}  // namespace host
