#include <maya/MItDag.h>

#include <ctime>

#include "host/scene/Sets.h"
#include "tests/scene/SceneTest.h"

namespace host {
namespace {

// Work that grows with the square of the number of nodes takes minutes here; what is allowed is
// many times what is needed.
class Scale : public SceneTest {
 protected:
  static constexpr int kMany = 40000;
  static constexpr double kAllowedSeconds = 20.0;

  void TearDown() override {
    SceneTest::TearDown();
    const auto ticks = static_cast<double>(std::clock() - start_);
    EXPECT_LT(ticks / static_cast<double>(CLOCKS_PER_SEC), kAllowedSeconds);
  }

 private:
  std::clock_t start_ = std::clock();  // processor time: other work on the machine does not count
};

TEST_F(Scale, ManyNodesOfOneNameUnderDifferentParents) {
  for (int i = 0; i < kMany; ++i) {
    const NodePtr tile = make("transform", "tile");
    const NodePtr leaf = make("transform", "leaf", tile);
    ASSERT_EQ(scene.findPath(tile->name() + "|leaf").node(), leaf);
    if (i == 0) continue;  // alone with its name
    ASSERT_EQ(scene.displayName(leaf), tile->name() + "|leaf");
  }
  EXPECT_EQ(scene.match("tile9?|leaf").size(), 10u);
  const NodePtr group = make("transform", "group");
  for (const SelectionItem& item : scene.match("tile*")) {
    ASSERT_TRUE(scene.reparent(item.node, nullptr, group));
  }
  MItDag it;
  int met = 0;
  for (it.reset(MObject(group)); !it.isDone(); it.next()) ++met;
  EXPECT_EQ(met, 1 + 2 * kMany);
  EXPECT_TRUE(scene.deleteNode(group));
  EXPECT_TRUE(matched("leaf").empty());
}

TEST_F(Scale, ManyMembersAndConnections) {
  const NodePtr parent = make("transform", "group");
  const NodePtr groups[] = {make("shadingEngine", "a"), make("shadingEngine", "b")};
  for (const NodePtr& group : groups) joinPartition(group, scene.findNode("renderPartition"));
  std::vector<SelectionItem> items;
  Selection chosen;
  for (int i = 0; i < kMany; ++i) items.push_back(SelectionItem::of(make("mesh", "m", parent)));
  for (const NodePtr& group : groups) {
    for (const SelectionItem& item : items) ASSERT_TRUE(forceMember(group, item));
  }
  EXPECT_TRUE(membersOf(groups[0]).empty());
  EXPECT_EQ(membersOf(groups[1]).size(), items.size());
  for (int twice = 0; twice < 2; ++twice) {
    for (const SelectionItem& item : items) chosen.addIfMissing(item);
  }
  EXPECT_EQ(chosen.size(), items.size());
}

TEST_F(Scale, ManyInstancesOfOneShape) {
  const NodePtr mesh = makeMesh("rock", 2);
  const NodePtr group = make("shadingEngine", "SG");
  constexpr int kInstances = 4000;
  for (int i = 1; i < kInstances; ++i) {
    ASSERT_TRUE(scene.addInstance(mesh, make("transform", "copy")));
  }
  const std::vector<DagPath> paths = allPaths(mesh);
  ASSERT_EQ(paths.size(), static_cast<std::size_t>(kInstances));
  for (const DagPath& path : paths) ASSERT_TRUE(addMember(group, SelectionItem::of(path)));
  EXPECT_EQ(membersOf(group).back().path, paths.back());
}

}  // namespace
}  // namespace host
