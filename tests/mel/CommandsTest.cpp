#include <gtest/gtest.h>
#include <maya/MGlobal.h>

#include <string>

#include "host/Host.h"
#include "host/mel/Interpreter.h"

namespace host::mel {
namespace {

// Scripts whose value tells what commands did to the scene. Arrays show as their elements with
// blanks between.
class Commands : public testing::Test {
 protected:
  void SetUp() override { newScene(); }

  static std::string run(const std::string& script) {
    const Outcome outcome = Interpreter::current().execute(script, "s");
    std::string shown;
    for (const std::string& word : outcome.value.toWords()) {
      shown += (shown.empty() ? "" : " ") + word;
    }
    return outcome.ok ? shown : "failed: " + outcome.failure.text;
  }

  static void check(const std::string& script, const std::string& expected) {
    EXPECT_EQ(run(script), expected) << script;
  }
};

TEST_F(Commands, AttributesAreAddedSetLockedAndRead) {
  run("createNode transform -n t;");
  check("attributeQuery -n \"|t\" -ex goblinName;", "0");
  run("addAttr -ln \"goblinName\" -dt \"string\" |t;");
  check("attributeQuery -n \"|t\" -ex goblinName;", "1");
  check("getAttr |t.goblinName;", "");
  run("setAttr -type \"string\" |t.goblinName \"oak\";");
  check("getAttr t.goblinName;", "oak");
  run("addAttr -ln \"lockUVs\" -at bool |t; setAttr |t.lockUVs 1; addAttr -ln \"count\" -at long "
      "t; setAttr t.count -7;");
  check("getAttr t.lockUVs;", "1");
  check("getAttr t.count;", "-7");
  run("setAttr -lock true t.goblinName;");
  check("setAttr -type \"string\" t.goblinName \"elm\";",
        "failed: setAttr: The attribute 't.goblinName' is locked or connected and cannot be "
        "modified.");
  check("getAttr t.goblinName;", "oak");
  check("getAttr -lock t.goblinName;", "1");
  run("setAttr -lock false t.goblinName; setAttr -type \"string\" t.goblinName \"elm\";");
  check("getAttr t.goblinName;", "elm");
  run("setAttr t.translate 1 2 3;");
  check("getAttr t.t;", "1 2 3");
  check("getAttr t.ty;", "2");
  check("setAttr t.tx 1 2;", "failed: setAttr: too many values for 't.translateX'");
  check("setAttr t.t 1 2;", "failed: setAttr: too few values for 't.translateZ'");
  check("setAttr t.tx apple;", "failed: setAttr: 'apple' is no number for 't.translateX'");
  check("addAttr -ln count -at long t;", "failed: addAttr: 't' has an attribute 'count' already");
  run("addAttr -ln offs -at double3 t; addAttr -ln offsX -at double -p offs t; "
      "addAttr -ln offsY -at double -p offs t; "
      "addAttr -ln offsZ -at double -p offs t; setAttr t.offs 4 5 6;");
  check("getAttr t.offs;", "4 5 6");
  run("deleteAttr t.offs;");
  check("attributeQuery -n t -ex offs;", "0");
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
  run("createNode file -n g;");
  EXPECT_EQ(run("connectAttr g.outColor m.color;").substr(0, 7), "failed:");
  run("connectAttr -f g.outColor m.color;");
  check("listConnections m.color;", "g");
  run("disconnectAttr g.outColor m.color;");
  check("listConnections m.color;", "");
}

TEST_F(Commands, ShadingGroupsOfThePartitionHoldAFaceOnce) {
  run("polyCreateFacet -n quad -p 0 0 0 -p 1 0 0 -p 1 0 1; sets -renderable true -noSurfaceShader "
      "true -empty -n aSG; "
      "sets -renderable true -noSurfaceShader true -empty -n bSG;");
  check("sets -q initialShadingGroup;", "quadShape");
  check("sets -edit -forceElement aSG quadShape;", "aSG");
  check("sets -q aSG;", "quadShape");
  check("sets -q initialShadingGroup;", "");
  run("sets -e -forceElement bSG quad.f[0];");
  check("sets -im bSG quad.f[0];", "1");
  check("size(`sets -q bSG`);", "1");
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
  check("delete persp;", "failed: delete: 'persp' is a default node and cannot be deleted");
}

TEST_F(Commands, ParentingKeepsThePlaceInTheWorld) {
  run("group -em -n a; setAttr a.t 1 2 3; setAttr a.r 0 90 0; setAttr a.s 2 2 2; group -em -n b; "
      "setAttr b.t 5 0 0; "
      "setAttr b.r 10 20 30; setAttr b.rotateOrder 4; setAttr b.rotatePivot 1 1 1;");
  const auto matrix = [] {
    return Interpreter::current().execute("xform -q -ws -m b;", "s").value;
  };
  const Value before = matrix();
  run("parent b a;");
  const Value after = matrix();
  for (std::size_t i = 0; i < 16; ++i) {
    EXPECT_NEAR(before.element(i).toFloat(), after.element(i).toFloat(), 1e-12) << i;
  }
  run("parent -w b; parent -r b a;");
  EXPECT_NE(run("xform -q -ws -t b;"), "5 0 0");
}

// Every number is one of arithmetic: angles come back from the matrix that they made, in every
// order.
TEST_F(Commands, MatricesDecomposeInEveryRotateOrder) {
  for (int order = 0; order < 6; ++order) {
    newScene();
    run("group -em -n a; setAttr a.rotateOrder " + std::to_string(order) +
        "; setAttr a.r 10 -20 30; setAttr a.s 1 2 -3; setAttr a.sh 0.1 0.2 0.3; setAttr a.t 4 5 "
        "6;");
    const Value matrix = Interpreter::current().execute("xform -q -m a;", "s").value;
    std::string numbers;
    for (const std::string& word : matrix.toWords()) {
      numbers += " " + word;
    }
    run("group -em -n b; setAttr b.rotateOrder " + std::to_string(order) + "; xform -m" + numbers +
        " b;");
    const Value back = Interpreter::current().execute("xform -q -m b;", "s").value;
    for (std::size_t i = 0; i < 16; ++i) {
      EXPECT_NEAR(matrix.element(i).toFloat(), back.element(i).toFloat(), 1e-12)
          << order << ' ' << i;
    }
    const Value turned = Interpreter::current().execute("getAttr b.r;", "s").value;
    EXPECT_NEAR(turned.element(1).toFloat(), -20, 1e-9) << order;
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
  EXPECT_EQ(MGlobal::executeCommand("setAttr t.tx 2", texts), MStatus::kSuccess);
  EXPECT_EQ(texts.length(), 0u);
  double real = 0;
  EXPECT_EQ(MGlobal::executeCommand("getAttr t.tx", real), MStatus::kSuccess);
  EXPECT_EQ(real, 2.0);
  EXPECT_EQ(MGlobal::executeCommand("nosuch", texts), MStatus::kFailure);
}

}  // namespace
}  // namespace host::mel
