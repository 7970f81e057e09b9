#include "goblin/GoblinSearch.h"
#include "host/Host.h"
#include "plugin/SceneAttributes.h"
#include "tests/plugin/HostFixture.h"

namespace morvane {
namespace {

class GoblinName : public HostFixture {
 protected:
  static std::string meshes(const std::string& name, const std::string& parent = "") {
    return transformText(name, parent) + meshText(name + "Shape", name, triangleShape());
  }
  static std::string nameOf(const char* shape) {
    MString name("missing");
    getStringAttr(getNodeByName(shape), "goblinName", name, false);
    return name.asChar();
  }
};

const char* const kBanner = "---------- begin goblin_name (v1.0) ----------\n";

TEST_F(GoblinName, NamesEveryMeshBelowTheSelection) {
  open(transformText("group") + meshes("a", "group") + meshes("b", "group") +
       transformText("deep", "group") + meshes("c", "deep") + meshes("other"));
  run("addAttr -ln goblinName -dt \"string\" bShape; setAttr -type \"string\" bShape.goblinName "
      "\"old\"; addAttr -ln lockUVs -at bool bShape; setAttr bShape.lockUVs 1; select -r group");
  EXPECT_EQ(run("goblin_name rock second"), std::string(kBanner) +
                                                "    Adding aShape\n"
                                                "    Adding bShape\n"
                                                "    Adding cShape\n"
                                                "Found 3 meshes:\n"
                                                "   kMesh   \taShape   \t\n"
                                                "   kMesh   \tbShape   \told\n"
                                                "   kMesh   \tcShape   \t\n");
  for (const char* shape : {"aShape", "bShape", "cShape"}) {
    EXPECT_EQ(nameOf(shape), "rock");
    EXPECT_TRUE(isGoblin(getNodeByName(shape)));
    EXPECT_EQ(ask(std::string("getAttr ") + shape + ".lockUVs"), "0");
  }
  EXPECT_EQ(nameOf("otherShape"), "missing");

  run("select -r bShape; goblin_name");
  EXPECT_EQ(nameOf("bShape"), "");
  EXPECT_FALSE(isGoblin(getNodeByName("bShape")));
  EXPECT_TRUE(isGoblin(getNodeByName("aShape")));
}

TEST_F(GoblinName, ReportsWhatItCannotSearch) {
  open(materialText("grass", "none.psd"));
  EXPECT_EQ(run("select -cl; goblin_name rock"), std::string(kBanner) + "Found 0 meshes:\n");
  EXPECT_EQ(
      run("select -r grass; goblin_name rock"),
      std::string(kBanner) + "Error: Dag node doesn't have a DagNode function!\nFound 0 meshes:\n");
}

TEST_F(GoblinName, KeepsAnyTextAndRunsNoneOfIt) {
  // The literal in the command language, and the text that it stands for.
  const struct {
    const char* literal;
    const char* text;
  } cases[] = {
      {"say \\\"rock\\\"", "say \"rock\""},
      {"back\\\\slash\\\\n", "back\\slash\\n"},
      {"two\\nlines\\tand a tab", "two\nlines\tand a tab"},
      {"\xC3\xBC\xE5\xB2\xA9\xD0\x96", "\xC3\xBC\xE5\xB2\xA9\xD0\x96"},
      {"x\\\"; createNode transform -n \\\"trace", "x\"; createNode transform -n \"trace"},
      {"`createNode transform -n trace`; $a;", "`createNode transform -n trace`; $a;"},
      {"end\\\\", "end\\"},
  };
  for (const auto& c : cases) {
    open(meshes("a"));
    run(std::string("select -r a; goblin_name \"") + c.literal + "\"");
    EXPECT_EQ(nameOf("aShape"), c.text);
    EXPECT_EQ(ask("objExists trace"), "0") << c.literal;
    ASSERT_TRUE(host::saveScene(path("saved.ma")));
    ASSERT_TRUE(host::openScene(path("saved.ma")));
    EXPECT_EQ(nameOf("aShape"), c.text);
    EXPECT_EQ(ask("objExists trace"), "0") << c.literal;
  }
}

}  // namespace
}  // namespace morvane
