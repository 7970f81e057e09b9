#include <maya/MGlobal.h>

#include "tests/mel/Script.h"

namespace host::mel {
namespace {

// Scripts whose value tells what commands did to the scene.
class Commands : public testing::Test {
 protected:
  void SetUp() override { newScene(); }

  static void check(const std::string& script, const std::string& expected) {
    EXPECT_EQ(run(script), expected) << script;
  }
  static Value valueOf(const std::string& script) {
    return Interpreter::current().execute(script, "s").value;
  }
  static void expectSameMatrix(const Value& a, const Value& b) {
    for (std::size_t i = 0; i < 16; ++i)
      EXPECT_NEAR(a.element(i).toFloat(), b.element(i).toFloat(), 1e-12) << i;
  }
};

TEST_F(Commands, AttributesAreAddedSetLockedAndRead) {
  check("createNode transform -n t; attributeQuery -n \"|t\" -ex goblinName;", "0");
  check("addAttr -ln \"goblinName\" -dt \"string\" |t; getAttr |t.goblinName;", "");
  check("attributeQuery -n \"|t\" -ex goblinName;", "1");
  check("setAttr -type \"string\" |t.goblinName \"oak\"; getAttr t.goblinName;", "oak");
  check("addAttr -ln \"lockUVs\" -at bool |t; setAttr |t.lockUVs 1; getAttr t.lockUVs;", "1");
  check("addAttr -ln \"count\" -at long t; setAttr t.count -7; getAttr t.count;", "-7");
  check("setAttr -lock true t.goblinName; setAttr -type \"string\" t.goblinName \"elm\";",
        "failed: setAttr: The attribute 't.goblinName' is locked or connected and cannot be "
        "modified.");
  check("getAttr -lock t.goblinName;", "1");
  check("getAttr t.goblinName;", "oak");
  run("setAttr -lock false t.goblinName; setAttr -type \"string\" t.goblinName \"elm\";");
  check("getAttr t.goblinName;", "elm");
  check("setAttr t.translate 1 2 3; getAttr t.t;", "1 2 3");
  check("getAttr t.ty;", "2");
  check("setAttr t.tx 1 2;", "failed: setAttr: too many values for 't.translateX'");
  check("setAttr t.t 1 2;", "failed: setAttr: too few values for 't.translateZ'");
  check("setAttr t.tx apple;", "failed: setAttr: 'apple' is not a number for 't.translateX'");
  check("addAttr -ln count -at long t;", "failed: addAttr: 't' has an attribute 'count' already");
  run("addAttr -ln offs -at double3 t; addAttr -ln offsX -at double -p offs t; "
      "addAttr -ln offsY -at double -p offs t; addAttr -ln offsZ -at double -p offs t;");
  check("setAttr t.offs 4 5 6; getAttr t.offs;", "4 5 6");
  check("deleteAttr t.offs; attributeQuery -n t -ex offs;", "0");
}

TEST_F(Commands, ConnectionsAreListedInOrderAndPerDirection) {
  run("createNode lambert -n m; createNode file -n f; sets -renderable true -noSurfaceShader true "
      "-empty -name mSG; "
      "connectAttr -f m.outColor mSG.surfaceShader; connectAttr f.outColor m.color;");
  check("listConnections m;", "mSG f");
  check("listConnections m.color;", "f");
  check("listConnections m.transparency;", "");
  check("listConnections nothing.color;",
        "failed: listConnections: No object matches name: nothing");
  check("listConnections -s 1 -d 0 m;", "f");
  check("listConnections -s 0 -d 1 -p 1 -c 1 m;", "m.outColor mSG.surfaceShader");
  check("listConnections -type lambert f;", "m");
  check("isConnected f.outColor m.color;", "1");
  EXPECT_EQ(run("createNode file -n g; connectAttr g.outColor m.color;").substr(0, 7), "failed:");
  check("connectAttr -f g.outColor m.color; listConnections m.color;", "g");
  check("disconnectAttr g.outColor m.color; listConnections m.color;", "");
}

TEST_F(Commands, ShadingGroupsOfThePartitionHoldAFaceOnce) {
  run("polyCreateFacet -n quad -p 0 0 0 -p 1 0 0 -p 1 0 1; sets -renderable true -noSurfaceShader "
      "true -empty -n aSG; "
      "sets -renderable true -noSurfaceShader true -empty -n bSG;");
  check("sets -q initialShadingGroup;", "quadShape");
  check("sets -edit -forceElement aSG quadShape; sets -q initialShadingGroup;", "");
  check("sets -e -forceElement bSG quad.f[0]; sets -im bSG quad.f[0];", "1");
  EXPECT_EQ(run("sets -e -forceElement persp quad;").substr(0, 7), "failed:");
}

TEST_F(Commands, NodesForShadingHaveTheirNames) {
  check("hyperShade -createNode \"PSDTextureNode\" \"hyperShadePanel1HyperShadeEd\";",
        "PSDTextureNode1");
  check("objectType PSDTextureNode1;", "PSDTextureNode");
  check("shadingNode -asShader lambert;", "lambert2");
  check("shadingNode -asTexture file -n wood;", "wood");
  check("hyperShade -createNode noSuchType;", "failed: hyperShade: unknown node type 'noSuchType'");
}

TEST_F(Commands, TheDagIsBuiltAndListed) {
  check("group -em -n root;", "root");
  check("createNode transform -n low -p root;", "low");
  check("createNode mesh -p low;", "polySurfaceShape1");
  check("listRelatives -ad root;", "polySurfaceShape1 low");
  check("listRelatives -c -f root;", "|root|low");
  check("listRelatives -p low;", "root");
  check("ls -l low;", "|root|low");
  check("ls -type mesh;", "polySurfaceShape1");
  check("instance low;", "low1");
  check("ls -ap -type mesh;", "low|polySurfaceShape1 low1|polySurfaceShape1");
  check("select -r \"lo*\"; ls -sl;", "low low1");
  check("rename low1 leaf;", "leaf");
  check("parent -w leaf; delete root; objExists low;", "0");
  check("objExists polySurfaceShape1;", "1");
  check("objExists leaf;", "1");
  check("select leaf; delete; objExists leaf;", "0");
  check("delete persp;", "failed: delete: 'persp' is a default node and cannot be deleted");
}

TEST_F(Commands, ParentingKeepsThePlaceInTheWorld) {
  run("group -em -n a; setAttr a.t 1 2 3; setAttr a.r 0 90 0; setAttr a.s 2 2 2; group -em -n b; "
      "setAttr b.t 5 0 0; "
      "setAttr b.r 10 20 30; setAttr b.rotateOrder 4; setAttr b.rotatePivot 1 1 1;");
  const Value before = valueOf("xform -q -ws -m b;");
  expectSameMatrix(valueOf("parent b a; xform -q -ws -m b;"), before);
  run("parent -w b; parent -r b a;");
  EXPECT_NE(run("xform -q -ws -t b;"), "5 0 0");
}

// Every number is one of arithmetic: angles come back from the matrix that they made, in every
// order.
TEST_F(Commands, MatricesDecomposeInEveryRotateOrder) {
  for (int order = 0; order < 6; ++order) {
    SCOPED_TRACE(order);
    newScene();
    run("group -em -n a; group -em -n b; setAttr a.r 10 -20 30; setAttr a.s 1 2 -3; "
        "setAttr a.sh 0.1 0.2 0.3; setAttr a.t 4 5 6;");
    for (const char* node : {"a", "b"})
      run(std::string("setAttr ") + node + ".rotateOrder " + std::to_string(order) + ";");
    const Value matrix = valueOf("xform -q -m a;");
    run("xform -m " + run("xform -q -m a;") + " b;");
    expectSameMatrix(valueOf("xform -q -m b;"), matrix);
    EXPECT_NEAR(valueOf("getAttr b.r;").element(1).toFloat(), -20, 1e-9);
  }
}

TEST_F(Commands, ResultsThatAVariableCannotHoldAreFailures) {
  run("createNode transform -n t; addAttr -ln note -dt \"string\" t; setAttr -type \"string\" "
      "t.note \"x\";");
  int number = 41;
  MString text("kept");
  MStringArray texts;
  EXPECT_EQ(MGlobal::executeCommand("getAttr t.note", number), MStatus::kFailure);
  EXPECT_EQ(number, 41);
  EXPECT_EQ(MGlobal::executeCommand("objExists t", text), MStatus::kFailure);
  EXPECT_STREQ(text.asChar(), "kept");
  EXPECT_EQ(MGlobal::executeCommand("objExists t", texts), MStatus::kFailure);
  EXPECT_EQ(MGlobal::executeCommand("objExists t", number), MStatus::kSuccess);
  EXPECT_EQ(number, 1);
  EXPECT_EQ(MGlobal::executeCommand("getAttr t.note", texts), MStatus::kSuccess);
  ASSERT_EQ(texts.length(), 1u);
  EXPECT_STREQ(texts[0].asChar(), "x");
  double real = 0;
  EXPECT_EQ(MGlobal::executeCommand("setAttr t.tx 2", texts), MStatus::kSuccess);
  EXPECT_EQ(texts.length(), 0u);
  EXPECT_EQ(MGlobal::executeCommand("getAttr t.tx", real), MStatus::kSuccess);
  EXPECT_EQ(real, 2.0);
  EXPECT_EQ(MGlobal::executeCommand("nosuch", texts), MStatus::kFailure);
}

}  // namespace
}  // namespace host::mel
