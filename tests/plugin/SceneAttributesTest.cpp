#include "tile/SceneAttributes.h"

#include "tests/plugin/HostFixture.h"

namespace morvane {
namespace {

class SceneAttributes : public HostFixture {
 protected:
  // A transform with one mesh, one above it, and a transform with two meshes.
  void SetUp() override {
    open(transformText("outer") + transformText("single", "outer") +
         meshText("singleShape", "single", triangleShape()) + transformText("double") +
         meshText("firstShape", "double", triangleShape()) +
         meshText("secondShape", "double", triangleShape()));
  }
};

TEST_F(SceneAttributes, FindsAndNamesNodes) {
  EXPECT_EQ(getNodeName(getShapeNode(getNodeByName("outer"))), "singleShape");
  EXPECT_EQ(getNodeName(getShapeNode(getNodeByName("double"))), "double");
  EXPECT_EQ(getFullPathName(getNodeByName("singleShape")), "|outer|single|singleShape");
  EXPECT_TRUE(getNodeByName("*Shape").isNull());
  EXPECT_TRUE(getNodeByName("nothing").isNull());
}

TEST_F(SceneAttributes, WritesToTheShapeWhenAsked) {
  const MObject single = getNodeByName("single");
  EXPECT_EQ(setStringAttr(single, "goblinName", "bob", true), MStatus::kSuccess);
  EXPECT_EQ(setStringAttr(single, "goblinName", "ann", true), MStatus::kSuccess);
  EXPECT_TRUE(attributeExists(getNodeByName("singleShape"), "goblinName"));
  EXPECT_FALSE(attributeExists(single, "goblinName"));
  MString value;
  EXPECT_EQ(getStringAttr(getNodeByName("singleShape"), "goblinName", value, false),
            MStatus::kSuccess);
  EXPECT_EQ(value, "ann");

  EXPECT_EQ(setStringAttr(getNodeByName("double"), "goblinName", "twins", true), MStatus::kSuccess);
  EXPECT_TRUE(attributeExists(getNodeByName("double"), "goblinName"));
}

TEST_F(SceneAttributes, WhatIsMissingKeepsTheValueAndNumbersHaveTheirTypes) {
  const MObject single = getNodeByName("single");
  int value = 7;
  MString text = "mine";
  EXPECT_NE(getStringAttr(single, "goblinName", text, true), MStatus::kSuccess);
  EXPECT_EQ(text, "mine");
  EXPECT_NE(getIntAttr(single, "lockUVs", value, true), MStatus::kSuccess);
  EXPECT_EQ(value, 7);
  EXPECT_EQ(setIntAttr(single, "lockUVs", 1, true, true), MStatus::kSuccess);
  EXPECT_EQ(getIntAttr(single, "lockUVs", value, true), MStatus::kSuccess);
  EXPECT_EQ(value, 1);
  EXPECT_EQ(setIntAttr(single, "count", -12345, false, false), MStatus::kSuccess);
  EXPECT_EQ(getIntAttr(single, "count", value, false), MStatus::kSuccess);
  EXPECT_EQ(value, -12345);
  EXPECT_EQ(ask("getAttr -type singleShape.lockUVs"), "bool");
  EXPECT_EQ(ask("getAttr -type single.count"), "long");
}

TEST_F(SceneAttributes, ANullNodeIsAFailure) {
  const MObject none;
  MString text;
  int number = 0;
  EXPECT_EQ(setStringAttr(none, "goblinName", "x", true), MStatus::kFailure);
  EXPECT_EQ(getStringAttr(none, "goblinName", text, true), MStatus::kFailure);
  EXPECT_EQ(setIntAttr(none, "lockUVs", 1, true, true), MStatus::kFailure);
  EXPECT_EQ(getIntAttr(none, "lockUVs", number, true), MStatus::kFailure);
}

TEST_F(SceneAttributes, AnyTextArrivesAsThatText) {
  const MObject shape = getNodeByName("singleShape");
  for (const char* text :
       {"", "a \"quoted\" word", "C:\\art\\new\\tile", "two\nlines\r\n\tindented",
        "\"; createNode transform -n \"trace\"; \"", "`createNode transform -n trace`",
        "$x \\\" \\\\\" // /* */ ;", "gr\xC3\xBCn \x01\x7F"}) {
    MString value = "unset";
    EXPECT_EQ(setStringAttr(shape, "goblinName", text, false), MStatus::kSuccess) << text;
    EXPECT_EQ(getStringAttr(shape, "goblinName", value, false), MStatus::kSuccess) << text;
    EXPECT_EQ(value, text);
    EXPECT_EQ(ask("objExists trace"), "0") << text;
  }
}

}  // namespace
}  // namespace morvane
