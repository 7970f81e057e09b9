#include "goblin/GoblinSearch.h"
#include "tests/plugin/HostFixture.h"
#include "tile/SceneAttributes.h"

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

  run("select -r aShape; goblin_name \"x\\\"; createNode transform -n \\\"trace\"");
  EXPECT_EQ(nameOf("aShape"), "x\"; createNode transform -n \"trace");
  EXPECT_EQ(ask("objExists trace"), "0");
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

}  // namespace
}  // namespace morvane
