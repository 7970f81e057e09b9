#include "host/scene/Sets.h"

#include "host/scene/Shading.h"
#include "tests/scene/SceneTest.h"

namespace host {
namespace {

class Sets : public SceneTest {
 protected:
  void SetUp() override {
    SceneTest::SetUp();
    mesh = makeMesh("tile", 6);
    red = makeGroup("redSG");
    blue = makeGroup("blueSG");
  }

  NodePtr makeGroup(const char* name) {
    const NodePtr group = make("shadingEngine", name);
    joinPartition(group, scene.findNode("renderPartition"));
    return group;
  }

  SelectionItem item(const char* text) {
    const auto items = scene.match(text);
    EXPECT_EQ(items.size(), 1u) << text;
    return items.empty() ? SelectionItem() : items.front();
  }

  static Strings namesOf(const std::vector<SelectionItem>& items) {
    Strings names;
    for (const SelectionItem& each : items)
      for (std::string& name : each.names()) names.push_back(std::move(name));
    return names;
  }

  Strings members(const NodePtr& set) { return namesOf(membersOf(set)); }

  NodePtr mesh;
  NodePtr red;
  NodePtr blue;
};

// Each step and what the two groups hold after it. All but the first expectation follow from: what
// joins one group of a partition leaves the others.
TEST_F(Sets, ForcingTakesFromTheOtherGroupsOfThePartition) {
  const struct {
    char group;
    const char* item;
    Strings red;
    Strings blue;
  } kSteps[] = {
      {'r', "tile", {"tileShape"}, {}},
      {'r', "tileShape", {"tileShape"}, {}},
      {'b', "tile.f[2:3]", {"tile.f[0:1]", "tile.f[4:5]"}, {"tile.f[2:3]"}},
      {'b', "tile.f[5]", {"tile.f[0:1]", "tile.f[4]"}, {"tile.f[2:3]", "tile.f[5]"}},
      {'r', "tile.f[3]", {"tile.f[0:1]", "tile.f[3:4]"}, {"tile.f[2]", "tile.f[5]"}},
      {'r', "tile.f[2:*]", {"tile.f[0:5]"}, {}},
      {'b', "tile.f[*]", {}, {"tile.f[0:5]"}},
      {'r', "|tile|tileShape", {"tileShape"}, {}},
  };
  for (const auto& step : kSteps) {
    std::string error;
    EXPECT_TRUE(forceMember(step.group == 'r' ? red : blue, item(step.item), &error)) << error;
    EXPECT_EQ(members(red), step.red) << step.item;
    EXPECT_EQ(members(blue), step.blue) << step.item;
  }
  // Nothing is left of the groups of faces: no state, no groupId node.
  EXPECT_EQ(mesh->connections.inOrder().size(), 1u);
  EXPECT_TRUE(mesh->values.inWrittenOrder().empty());
  EXPECT_TRUE(matched("groupId*").empty());
}

TEST_F(Sets, AddingIsRefusedWhereAnotherGroupHoldsTheItem) {
  EXPECT_TRUE(addMember(red, item("tile.f[0:2]")));
  std::string error;
  EXPECT_FALSE(addMember(blue, item("tile.f[2:3]"), &error));
  EXPECT_NE(error.find("redSG"), std::string::npos);
  EXPECT_TRUE(addMember(blue, item("tile.f[3]")));
  const NodePtr free = make("objectSet", "free");
  EXPECT_TRUE(addMember(free, item("tile")));  // in no partition
  EXPECT_EQ(members(free), Strings{"tile"});
  EXPECT_EQ(members(red), Strings{"tile.f[0:2]"});
  EXPECT_FALSE(addMember(scene.findNode("lambert1"), item("tile"), &error));
  EXPECT_FALSE(addMember(red, item("tile.vtx[0]"), &error));
  EXPECT_FALSE(addMember(red, item("tile.f[6:7]"), &error));
  EXPECT_TRUE(isMember(red, item("tile.f[1:2]")));
  EXPECT_FALSE(isMember(red, item("tile.f[2:3]")));
  EXPECT_FALSE(isMember(red, item("tileShape")));
}

TEST_F(Sets, MembersLeaveAndSetsFlatten) {
  const NodePtr inner = make("objectSet", "inner");
  const NodePtr outer = make("objectSet", "outer");
  make("transform", "n1");
  for (const char* name : {"n1", "lambert1"}) EXPECT_TRUE(addMember(inner, item(name)));
  for (const char* name : {"tile", "inner", "time1"}) EXPECT_TRUE(addMember(outer, item(name)));
  EXPECT_TRUE(addMember(inner, item("outer")));  // a circle
  EXPECT_EQ(members(outer), (Strings{"tile", "inner", "time1"}));
  EXPECT_EQ(namesOf(flattenedMembersOf(outer)), (Strings{"tile", "n1", "lambert1", "time1"}));
  EXPECT_TRUE(removeMember(outer, item("inner")));
  EXPECT_FALSE(removeMember(outer, item("inner")));
  EXPECT_EQ(members(outer), (Strings{"tile", "time1"}));
  clearMembers(outer);
  EXPECT_TRUE(members(outer).empty());
  EXPECT_TRUE(forceMember(red, item("tile.f[1:2]")));
  EXPECT_TRUE(removeMember(red, item("tile.f[2]")));
  EXPECT_EQ(members(red), Strings{"tile.f[1]"});
}

// The connections and component lists as scene files spell them.
TEST_F(Sets, FilesAndTheScenesOwnGroupsAreTheSame) {
  set("tileShape.iog[0].og[1].gcl", Strings{"f[0:2]", "f[5]"});
  set("tileShape.iog[0].og[2].gcl", Strings{"f[3:4]"});
  join("tileShape.iog.og[1]", "redSG.dsm");
  join("tileShape.iog.og[2]", "blueSG.dsm");
  join("lambert1.oc", "redSG.ss");
  EXPECT_EQ(members(red), (Strings{"tile.f[0:2]", "tile.f[5]"}));
  EXPECT_TRUE(addMember(make("objectSet", "plain"), item("tileShape")));
  EXPECT_EQ(assignmentsOf(mesh, 0, false).size(), 3u);
  const auto assigned = assignmentsOf(mesh, 0, true);  // shading groups alone
  ASSERT_EQ(assigned.size(), 2u);
  EXPECT_EQ(assigned[0].set, red);
  EXPECT_FALSE(assigned[0].whole);
  EXPECT_EQ(assigned[0].faces.toIndices(6), (std::vector<int>{0, 1, 2, 5}));
  EXPECT_EQ(assigned[1].faces.toIndices(6), (std::vector<int>{3, 4}));
  EXPECT_EQ(surfaceShaderOf(red), scene.findNode("lambert1"));
  EXPECT_FALSE(surfaceShaderOf(blue));
  EXPECT_TRUE(assignmentsOf(mesh, 1, true).empty());
  EXPECT_TRUE(forceMember(blue, item("tile.f[0]")));
  EXPECT_EQ(std::get<Strings>(mesh->values.find(plug("tileShape.iog.og[1].gcl").path())->value),
            (Strings{"f[1:2]", "f[5]"}));
  EXPECT_EQ(members(blue), (Strings{"tile.f[0]", "tile.f[3:4]"}));
}

TEST_F(Sets, FacesOfAMeshWithHistoryComeFromItsGroupParts) {
  make("groupId", "id1");
  make("groupParts", "parts1");
  set("parts1.ic", Strings{"f[1:4]"});
  join("id1.id", "tileShape.iog.og[0].gid");
  join("id1.id", "parts1.gi");
  join("tileShape.iog.og[0]", "redSG.dsm");
  EXPECT_EQ(members(red), Strings{"tile.f[1:4]"});
}

TEST_F(Sets, InstancesAreHeldOnTheirOwn) {
  const NodePtr other = make("transform", "other");
  ASSERT_TRUE(scene.addInstance(mesh, other));
  EXPECT_TRUE(forceMember(red, SelectionItem::of(scene.findPath("tile|tileShape"))));
  EXPECT_TRUE(forceMember(blue, SelectionItem::of(scene.findPath("other|tileShape"))));
  EXPECT_EQ(members(red), Strings{"tile|tileShape"});
  EXPECT_EQ(members(blue), Strings{"other|tileShape"});
  ASSERT_EQ(assignmentsOf(mesh, 1, true).size(), 1u);
  EXPECT_EQ(assignmentsOf(mesh, 1, true)[0].set, blue);
  EXPECT_TRUE(assignmentsOf(mesh, 1, true)[0].whole);
  EXPECT_EQ(setsHolding(mesh), (std::vector<NodePtr>{red, blue}));
}

TEST_F(Sets, ShadingGroupsTakeShapesInPlaceOfTransforms) {
  const NodePtr group = make("transform", "group");
  const NodePtr child = makeMesh("child", 1);
  ASSERT_TRUE(scene.reparent(scene.findNode("tile"), nullptr, group));
  ASSERT_TRUE(scene.reparent(scene.findNode("child"), nullptr, scene.findNode("tile")));
  EXPECT_TRUE(forceMember(red, item("tile")));  // its own shape, not its child's
  EXPECT_EQ(members(red), Strings{"tileShape"});
  EXPECT_TRUE(forceMember(blue, item("group")));  // without a shape of its own: all below
  EXPECT_EQ(members(blue), (Strings{"tileShape", "childShape"}));
  EXPECT_TRUE(members(red).empty());
  EXPECT_FALSE(forceMember(red, item(make("transform", "bare")->name().c_str())));
  EXPECT_EQ(assignmentsOf(child, 0, true).size(), 1u);
}

}  // namespace
}  // namespace host
