#include "host/scene/Plug.h"

#include <cmath>

#include "tests/scene/SceneTest.h"

namespace host {
namespace {

class Plugs : public SceneTest {
 protected:
  void SetUp() override {
    SceneTest::SetUp();
    mesh = makeMesh("cube", 2);
    make("ramp", "fade");
  }

  NodePtr mesh;
};

TEST_F(Plugs, PathTextsBecomeCanonical) {
  const struct {
    const char* text;
    const char* path;  // null: no such plug
  } kCases[] = {
      {"cube.t", "translate"},
      {"cube.tx", "translateX"},
      {"cube.translate.translateX", "translateX"},
      {"cube.t.tx", "translateX"},
      {"cube.rp", "rotatePivot"},
      {"cube.shxy", "shearXY"},
      {"cubeShape.iog", "instObjGroups"},
      {"cubeShape.iog[2]", "instObjGroups[2]"},
      {"cubeShape.iog.og[1]", "instObjGroups[0].objectGroups[1]"},
      {"cubeShape.iog[0].og[1].gcl", "instObjGroups[0].objectGroups[1].objectGrpCompList"},
      {"cubeShape.gcl", "instObjGroups[0].objectGroups[0].objectGrpCompList"},
      {"cubeShape.uvst[3].uvsn", "uvSet[3].uvSetName"},
      {"fade.cel[4].ec.ecr", "colorEntryList[4].color.colorR"},
      {"lambert1.c", "color"},
      {"lambert1.cr", "colorR"},
      {"cube.t[0]", nullptr},
      {"cube.t.rx", nullptr},
      {"cube.nothing", nullptr},
      {"cube.", nullptr},
      {"cube..t", nullptr},
      {"cube.t.", nullptr},
      {"cubeShape.iog[", nullptr},
      {"cubeShape.iog[]", nullptr},
      {"cubeShape.iog[-1]", nullptr},
      {"cubeShape.iog[0:1]", nullptr},
      {"cubeShape.iog[99999999999]", nullptr},
      {"cubeShape.iog]0[", nullptr},
  };
  for (const auto& c : kCases) {
    const Plug found = scene.findPlug(c.text);
    ASSERT_EQ(found.isNull(), c.path == nullptr) << c.text;
    EXPECT_EQ(found.path(), c.path ? c.path : "");
  }
}

TEST_F(Plugs, ElementsAndChildrenAreTheirPaths) {
  const Plug groups = plug("cubeShape.iog");
  EXPECT_TRUE(groups.isArray());
  EXPECT_EQ(groups.element(3), plug("cubeShape.iog[3]"));
  EXPECT_EQ(groups.element(3).index(), 3);
  EXPECT_EQ(groups.orFirstElement().children()[0].element(1), plug("cubeShape.iog.og[1]"));
  ASSERT_EQ(plug("cube.r").children().size(), 3u);
  EXPECT_EQ(plug("cube.r").children()[1], plug("cube.ry"));
  EXPECT_FALSE(plug("cube.r").isArray());
  EXPECT_FALSE(splitRange("a[2:1]"));
  EXPECT_FALSE(splitRange("a"));
  EXPECT_EQ(splitRange("a[0].b[4:9]")->stem, "a[0].b");
  EXPECT_EQ(splitRange("a[0].b[4:9]")->last, 9);
}

TEST_F(Plugs, ValuesReadBackThroughParentsChildrenAndDefaults) {
  EXPECT_EQ(readNumbers(plug("cube.s")), (std::vector<double>{1, 1, 1}));
  set("cube.t", std::vector<double>{1, -0.0, 3});
  set("cube.ty", -0.0);
  EXPECT_TRUE(std::signbit(*readNumber(plug("cube.ty"))));
  set("cube.tz", 1e-300);
  EXPECT_EQ(readNumbers(plug("cube.t")), (std::vector<double>{1, -0.0, 1e-300}));
  EXPECT_EQ(readText(plug("cubeShape.cuvs")), "");
  set("cubeShape.cuvs", std::string("map1"));
  EXPECT_EQ(readText(plug("cubeShape.cuvs")), "map1");
  EXPECT_FALSE(writeValue(plug("cube.t"), std::vector<double>{1, 2}));
  EXPECT_FALSE(writeValue(plug("cube.tx"), std::string("1")));
  EXPECT_FALSE(writeValue(plug("cube.msg"), 1.0));
  EXPECT_FALSE(writeValue(plug("cubeShape.iog"), 1.0));
  EXPECT_FALSE(readNumber(plug("cubeShape.cuvs")));
  EXPECT_FALSE(readText(plug("cube.tx")));
  Strings written;
  const NodePtr cube = scene.findNode("cube");
  for (const auto& state : cube->values.inWrittenOrder()) written.push_back(state.path);
  EXPECT_EQ(written, (Strings{"translateX", "translateY", "translateZ"}));
}

TEST_F(Plugs, ValuesFollowConnections) {
  make("transform", "driver");
  set("driver.t", std::vector<double>{4, 5, 6});
  set("cube.tx", 1.0);
  join("driver.t", "cube.t");
  EXPECT_EQ(readNumbers(plug("cube.t")), (std::vector<double>{4, 5, 6}));
  join("driver.ty", "cube.sx");
  EXPECT_EQ(readNumber(plug("cube.sx")), 5.0);
  join("driver.ty", "cube.rz");  // as radians
  EXPECT_NEAR(readNumber(plug("cube.rz")).value_or(0), 5.0 * 180.0 / 3.14159265358979324, 1e-9);
  join("cube.t", "driver.t");  // a circle still ends
  EXPECT_TRUE(readNumber(plug("cube.tx")));
}

TEST_F(Plugs, LocksReachUpAndDown) {
  setLocked(plug("cube.t"), true);
  EXPECT_TRUE(isLocked(plug("cube.tx")));
  setLocked(plug("cube.t"), false);
  EXPECT_FALSE(isLocked(plug("cube.tx")));
  for (const char* child : {"cube.tx", "cube.ty", "cube.tz"}) {
    EXPECT_FALSE(isLocked(plug("cube.t")));
    setLocked(plug(child), true);
  }
  EXPECT_TRUE(isLocked(plug("cube.t")));
  setLocked(plug("cube.t"), false);
  EXPECT_FALSE(isLocked(plug("cube.tz")));
  setKeyable(plug("cube.v"), true);
  setInChannelBox(plug("cube.v"), true);
  EXPECT_TRUE(isKeyable(plug("cube.v")) && isInChannelBox(plug("cube.v")));
  EXPECT_EQ(readNumber(plug("cube.v")), 1.0);  // flags alone leave the default
}

TEST_F(Plugs, AttributesCanBeAddedAndRemoved) {
  const auto text = std::make_shared<Attribute>("goblinName", "gn", "string");
  EXPECT_TRUE(mesh->addAttribute(text));
  EXPECT_FALSE(mesh->addAttribute(std::make_shared<Attribute>("other", "gn", "long")));
  EXPECT_FALSE(mesh->addAttribute(std::make_shared<Attribute>("translate", "msg", "long")));
  set("cubeShape.gn", std::string("imp"));
  EXPECT_EQ(readText(plug("cubeShape.goblinName")), "imp");

  const auto group = std::make_shared<Attribute>("offset", "", "double3");
  EXPECT_TRUE(mesh->addAttribute(group));
  for (const char* name : {"offsetX", "offsetY", "offsetZ"})
    EXPECT_TRUE(mesh->addChildAttribute(group, std::make_shared<Attribute>(name, "", "double")));
  set("cubeShape.offset", std::vector<double>{7, 8, 9});
  EXPECT_EQ(readNumber(plug("cubeShape.offsetY")), 8.0);
  join("cubeShape.offsetX", "cube.tx");

  EXPECT_TRUE(mesh->removeAttribute(group));
  EXPECT_FALSE(mesh->removeAttribute(group));
  EXPECT_TRUE(scene.findPlug("cubeShape.offsetY").isNull());
  EXPECT_FALSE(isConnected(plug("cube.tx")));
  EXPECT_EQ(readText(plug("cubeShape.gn")), "imp");
  EXPECT_FALSE(mesh->removeAttribute(mesh->findAttribute("message")));
}

TEST_F(Plugs, WhatIsNotKnownIsKeptAsWritten) {
  keepAsWritten(mesh, "tgi[0].ni[0:1].x", {"", {"1.5", "2"}});
  EXPECT_TRUE(mesh->findAttribute("tgi"));
  const AttributeState* state = mesh->values.find("tgi[0].ni[0:1].x");
  ASSERT_TRUE(state);
  EXPECT_EQ(std::get<KeptWords>(state->value).words, (Strings{"1.5", "2"}));
  const auto loose = Plug::findOrKeep(mesh, "hyp[3].dn");
  ASSERT_TRUE(loose);
  EXPECT_EQ(loose->path(), "hyp[3].dn");
  EXPECT_TRUE(connect(plug("cube.msg"), *loose, false));
  EXPECT_TRUE(Plug::findOrKeep(mesh, "iog[0].nothing"));  // another version may know it
  EXPECT_FALSE(Plug::findOrKeep(mesh, "a b["));
}

TEST_F(Plugs, ConnectionsKeepTheirOrderAndTheirRules) {
  const NodePtr set = make("objectSet", "bag");
  for (const char* name : {"n1", "n2", "n3"}) make("lambert", name);
  join("n2.msg", "bag.dnsm");
  join("n1.msg", "bag.dnsm");
  join("n3.msg", "bag.dnsm");
  Strings order;
  for (const auto& c : connectionsAtOrBelow(plug("bag.dnsm"), true, true))
    order.push_back(c->source.name() + ">" + c->destination.path());
  EXPECT_EQ(order, (Strings{"n2.message>dnSetMembers[0]", "n1.message>dnSetMembers[1]",
                            "n3.message>dnSetMembers[2]"}));
  EXPECT_TRUE(disconnect(plug("n1.msg"), plug("bag.dnsm[1]")));
  EXPECT_FALSE(disconnect(plug("n1.msg"), plug("bag.dnsm[1]")));
  EXPECT_EQ(nextElement(plug("bag.dnsm")).index(), 3);

  std::string error;
  join("n1.oc", "n2.c");
  EXPECT_TRUE(connect(plug("n1.oc"), plug("n2.c"), false));
  EXPECT_FALSE(connect(plug("n3.oc"), plug("n2.c"), false, &error));
  EXPECT_NE(error.find("n1.outColor"), std::string::npos);
  EXPECT_TRUE(connect(plug("n3.oc"), plug("n2.c"), true));
  EXPECT_FALSE(isConnected(plug("n1.oc")));
  EXPECT_FALSE(connect(plug("cubeShape.cuvs"), plug("cube.tx"), false));
  EXPECT_FALSE(connect(plug("cube.msg"), plug("cube.tx"), false));
  join("n1.ocr", "n2.icg");
  EXPECT_EQ(connectionsAtOrBelow(plug("n2.ic"), true, false).size(), 1u);
  EXPECT_TRUE(scene.deleteNode(scene.findNode("n3")));
  EXPECT_FALSE(isConnected(plug("n2.c")));
  EXPECT_EQ(set->connections.inOrder().size(), 1u);
}

}  // namespace
}  // namespace host
