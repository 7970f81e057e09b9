#include "tests/scene/SceneTest.h"

namespace host {
namespace {

class Names : public SceneTest {};

TEST_F(Names, NewNodesGetTheHostsNames) {
  const struct {
    const char* type;
    const char* names[2];
  } kCases[] = {
      {"transform", {"transform1", "transform2"}},
      {"lambert", {"lambert2", "lambert3"}},
      {"file", {"file1", "file2"}},
      {"objectSet", {"set1", "set2"}},
      {"PSDTextureNode", {"PSDTextureNode1", "PSDTextureNode2"}},
  };
  for (const auto& c : kCases)
    for (const char* name : c.names) EXPECT_EQ(make(c.type, "")->name(), name);
  const NodePtr parent = make("transform", "tile");
  EXPECT_EQ(make("mesh", "", parent)->name(), "polySurfaceShape1");
  const NodePtr alone = make("mesh", "");
  EXPECT_EQ(alone->name(), "polySurfaceShape2");
  ASSERT_EQ(alone->parents().size(), 1u);
  EXPECT_EQ(alone->parents()[0]->name(), "polySurface1");
}

TEST_F(Names, AClashIncreasesTheTrailingNumber) {
  const struct {
    const char* wanted;
    const char* given;
  } kCases[] = {
      {"rock", "rock"},
      {"rock", "rock1"},
      {"rock", "rock2"},
      {"rock1", "rock3"},
      {"cube12", "cube12"},
      {"cube12", "cube13"},
      {"a b-c", "a_b_c"},
      {"7up", "_7up"},
      {":summit", "summit"},
      {"ns:part", "ns:part"},
      {"lambert1", "lambert2"},
      {"x9999999999", "x9999999999"},
      {"x9999999999", "x99999999991"},
  };
  for (const auto& c : kCases) EXPECT_EQ(make("transform", c.wanted)->name(), c.given);
}

TEST_F(Names, OnlySiblingsMustDiffer) {
  const NodePtr a = make("transform", "a");
  const NodePtr b = make("transform", "b");
  EXPECT_EQ(make("transform", "leaf", a)->name(), "leaf");
  const NodePtr second = make("transform", "leaf", b);
  EXPECT_EQ(second->name(), "leaf");
  EXPECT_EQ(scene.displayName(second), "b|leaf");
  EXPECT_EQ(make("transform", "leaf", a)->name(), "leaf1");
  EXPECT_EQ(make("lambert", "leaf")->name(), "leaf2");
  EXPECT_TRUE(scene.reparent(second, b, a));
  EXPECT_EQ(second->name(), "leaf3");
  EXPECT_EQ(scene.displayName(second), "leaf3");
}

TEST_F(Names, FreedNumbersAreUsedAgain) {
  std::vector<NodePtr> nodes;
  for (int i = 0; i < 5; ++i) nodes.push_back(make("transform", ""));
  EXPECT_TRUE(scene.deleteNode(nodes[1]));
  EXPECT_TRUE(scene.rename(nodes[3], "other"));
  EXPECT_EQ(make("transform", "")->name(), "transform2");
  EXPECT_EQ(make("transform", "")->name(), "transform4");
  EXPECT_EQ(make("transform", "")->name(), "transform6");
}

TEST_F(Names, RenamingTakesShapesAlong) {
  const NodePtr mesh = makeMesh("rock", 1);
  const NodePtr transform = scene.findNode("rock");
  EXPECT_TRUE(scene.rename(mesh, "rockShape"));  // its own name is not in its way
  EXPECT_EQ(mesh->name(), "rockShape");
  EXPECT_TRUE(scene.rename(transform, "stone3", true));
  EXPECT_EQ(mesh->name(), "stoneShape3");
  EXPECT_TRUE(scene.rename(transform, "pebble"));
  EXPECT_EQ(mesh->name(), "stoneShape3");
  EXPECT_FALSE(scene.findNode("rock"));
  std::string error;
  EXPECT_FALSE(scene.rename(transform, "", false, &error));
  EXPECT_FALSE(scene.rename(scene.findNode("lambert1"), "mine", false, &error));
  EXPECT_NE(error, "");
}

TEST_F(Names, TextsMatchNodesAndPaths) {
  const NodePtr a = make("transform", "a");
  const NodePtr b = make("transform", "b", a);
  make("transform", "leaf", b);
  make("transform", "leaf", a);
  make("transform", "leafy");
  make("transform", "ns:leaf");
  makeMesh("rock", 4);
  const struct {
    const char* text;
    Strings matches;
  } kCases[] = {
      {"leaf", {"|a|b|leaf", "|a|leaf"}},
      {"b|leaf", {"|a|b|leaf"}},
      {"a|leaf", {"|a|leaf"}},
      {"|a|leaf", {"|a|leaf"}},
      {"|leaf", {}},
      {"|a", {"|a"}},
      {"leaf*", {"|a|b|leaf", "|a|leaf", "|leafy"}},
      {"?eaf", {"|a|b|leaf", "|a|leaf"}},
      {"l*f?", {"|leafy"}},
      {"*|leaf", {"|a|b|leaf", "|a|leaf"}},
      {"|*|leaf", {"|a|leaf"}},
      {"ns:*", {"|ns:leaf"}},
      {":ns:leaf", {"|ns:leaf"}},
      {":lambert1", {"lambert1"}},
      {"|lambert1", {}},
      {"", {}},
      {"|", {}},
      {"||", {}},
      {"a||b", {}},
      {"nothing", {}},
      {"a.t", {}},
      {"world", {}},
      {"lambert1.f[0]", {}},
      {"|rock.f[1:2]", {"|rock|rockShape"}},
      {"rockShape.f[1:2]", {"|rock|rockShape"}},
      {"rock.f[x]", {}},
  };
  for (const auto& c : kCases) EXPECT_EQ(matched(c.text), c.matches) << c.text;
  EXPECT_EQ(matched("leaf", true), (Strings{"|a|b|leaf", "|a|leaf", "|ns:leaf"}));
}

TEST_F(Names, WhatNamesNothingOrTooMuchIsSaid) {
  make("transform", "x", make("transform", "p"));
  make("transform", "x", make("transform", "q"));
  std::string error;
  EXPECT_FALSE(scene.findNode("x", &error));
  EXPECT_EQ(error, "More than one object matches name: x");
  EXPECT_FALSE(scene.findNode("y", &error));
  EXPECT_EQ(error, "No object matches name: y");
  EXPECT_TRUE(scene.findPlug("p|x", &error).isNull());
  EXPECT_TRUE(scene.findPlug("p|x.nothing", &error).isNull());
  EXPECT_EQ(error, "No object matches name: p|x.nothing");
  EXPECT_EQ(scene.findPlug("p|x.tx").name(), "p|x.translateX");
  EXPECT_TRUE(scene.findPath("lambert1", &error).isEmpty());
}

TEST_F(Names, ANewSceneHasWhatFilesRelyOn) {
  for (const char* name : {"time1", "renderPartition", "lambert1", "initialShadingGroup",
                           "initialParticleSE", "topShape", "|front|frontShape", "side"}) {
    const NodePtr node = scene.findNode(std::string(name[0] == '|' ? "" : ":") + name);
    ASSERT_TRUE(node) << name;
    EXPECT_TRUE(node->isDefault);
    EXPECT_FALSE(scene.deleteNode(node));
  }
  make("transform", "gone");
  scene.selection.add(SelectionItem::of(scene.findNode("gone")));
  scene.clear();
  EXPECT_FALSE(scene.findNode("gone"));
  EXPECT_EQ(scene.selection.size(), 0u);
}

}  // namespace
}  // namespace host
