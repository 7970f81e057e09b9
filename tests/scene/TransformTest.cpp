#include "tests/scene/SceneTest.h"

namespace host {
namespace {

struct Setting {
  const char* attribute;
  std::vector<double> values;
};

class Transforms : public SceneTest {
 protected:
  static void apply(const NodePtr& node, const std::vector<Setting>& settings) {
    for (const Setting& s : settings) {
      const auto plug = Plug::find(node, s.attribute);
      ASSERT_TRUE(plug) << s.attribute;
      const AttributeValue value =
          s.values.size() == 1 ? AttributeValue(s.values[0]) : AttributeValue(s.values);
      EXPECT_TRUE(writeValue(*plug, value)) << s.attribute;
    }
  }

  static void expectPoint(const MPoint& got, const MPoint& want, const char* what) {
    EXPECT_NEAR(got.x, want.x, 1e-12) << what;
    EXPECT_NEAR(got.y, want.y, 1e-12) << what;
    EXPECT_NEAR(got.z, want.z, 1e-12) << what;
  }
};

// Each expectation was worked out by hand: a quarter turn about x takes y to z, about y z to x,
// about z x to y.
TEST_F(Transforms, EveryPartGoesWhereItShould) {
  const struct {
    const char* what;
    std::vector<Setting> settings;
    MPoint point;
    MPoint want;
  } kCases[] = {
      {"translate", {{"t", {1, 2, 3}}}, {1, 1, 1}, {2, 3, 4}},
      {"rotate x", {{"rx", {90}}}, {0, 1, 0}, {0, 0, 1}},
      {"rotate y", {{"ry", {90}}}, {0, 0, 1}, {1, 0, 0}},
      {"rotate z", {{"rz", {90}}}, {1, 0, 0}, {0, 1, 0}},
      {"xyz", {{"r", {90, 90, 0}}}, {0, 1, 0}, {1, 0, 0}},
      {"yzx", {{"r", {90, 90, 0}}, {"ro", {1}}}, {0, 1, 0}, {0, 0, 1}},
      {"zxy", {{"r", {90, 0, 90}}, {"ro", {2}}}, {1, 0, 0}, {0, 0, 1}},
      {"xzy", {{"r", {0, 90, 90}}, {"ro", {3}}}, {1, 0, 0}, {0, 1, 0}},
      {"yxz", {{"r", {90, 90, 0}}, {"ro", {4}}}, {0, 0, 1}, {1, 0, 0}},
      {"zyx", {{"r", {0, 90, 90}}, {"ro", {5}}}, {0, 1, 0}, {0, 0, 1}},
      {"scale before rotate before translate",
       {{"s", {2, 3, 4}}, {"rz", {90}}, {"t", {10, 0, 0}}},
       {1, 1, 1},
       {7, 2, 4}},
      {"shear", {{"sh", {1, 2, 4}}}, {0, 1, 1}, {3, 5, 1}},
      {"shear after scale", {{"s", {1, 2, 1}}, {"sh", {1, 0, 0}}}, {0, 1, 0}, {2, 2, 0}},
      {"scale pivot", {{"sp", {1, 0, 0}}, {"s", {3, 1, 1}}}, {2, 0, 0}, {4, 0, 0}},
      {"scale pivot translation",
       {{"sp", {1, 0, 0}}, {"s", {3, 1, 1}}, {"spt", {-2, 5, 0}}},
       {2, 0, 0},
       {2, 5, 0}},
      {"rotate pivot", {{"rp", {1, 0, 0}}, {"rz", {90}}}, {2, 0, 0}, {1, 1, 0}},
      {"rotate pivot translation",
       {{"rp", {1, 0, 0}}, {"rz", {90}}, {"rpt", {0, 0, 7}}},
       {2, 0, 0},
       {1, 1, 7}},
      {"rotate axis before rotate", {{"ra", {90, 0, 0}}, {"ry", {90}}}, {0, 1, 0}, {1, 0, 0}},
      {"a rotate order that is none", {{"rz", {90}}, {"ro", {77}}}, {1, 0, 0}, {0, 1, 0}},
  };
  for (const auto& c : kCases) {
    const NodePtr node = make("transform", "");
    apply(node, c.settings);
    expectPoint(c.point * localMatrix(node), c.want, c.what);
  }
}

TEST_F(Transforms, ATranslationIsExact) {
  const NodePtr node = make("transform", "");
  apply(node, {{"t", {0.1, -1e-17, 1e20}}});
  const double exact[4][4] = {{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {0.1, -1e-17, 1e20, 1}};
  EXPECT_EQ(localMatrix(node), MMatrix(exact));
}

TEST_F(Transforms, JointsOrientAndTakeBackTheirParentsScale) {
  const NodePtr joint = make("joint", "bone");
  apply(joint, {{"jo", {0, 0, 90}}, {"rx", {90}}, {"t", {5, 0, 0}}});
  expectPoint(MPoint(0, 0, 1) * localMatrix(joint), {6, 0, 0}, "rotate before orientation");
  apply(joint, {{"is", {2, 4, 1}}});
  expectPoint(MPoint(0, 0, 1) * localMatrix(joint), {5.5, 0, 0}, "inverse scale");
  apply(joint, {{"ssc", {0}}});
  expectPoint(MPoint(0, 0, 1) * localMatrix(joint), {6, 0, 0}, "without compensation");
}

TEST_F(Transforms, PathsMultiplyFromTheNodeUp) {
  const NodePtr top = make("transform", "top1");
  const NodePtr node = make("transform", "node", top);
  const NodePtr shape = make("mesh", "shape", node);
  apply(top, {{"rz", {90}}});
  apply(node, {{"t", {1, 0, 0}}});
  const DagPath path = firstPath(shape);
  expectPoint(MPoint(1, 0, 0) * path.inclusiveMatrix(), {0, 2, 0}, "both");
  expectPoint(MPoint(1, 0, 0) * firstPath(node).exclusiveMatrix(), {0, 1, 0}, "the upper one");
  const auto world = readNumbers(plug("node.wm[0]"));
  ASSERT_TRUE(world && world->size() == 16);
  EXPECT_EQ(world->at(13), 1.0);
  EXPECT_FALSE(readNumbers(plug("node.wm")));
  std::vector<double> offset(16, 0.0);
  for (int i = 0; i < 4; ++i) offset[static_cast<std::size_t>(i * 5)] = 1.0;
  offset[12] = 10.0;
  set("node.opm", offset);
  expectPoint(MPoint(1, 0, 0) * path.inclusiveMatrix(), {0, 12, 0}, "offset parent matrix");
  apply(node, {{"it", {0}}});
  expectPoint(MPoint(1, 0, 0) * path.inclusiveMatrix(), {12, 0, 0}, "no inheritance");
}

TEST_F(Transforms, BoxesAreAroundShapesInTheRightSpace) {
  const NodePtr mesh = makeMesh("plane", 1);  // x and z from -0.5 to 0.5
  const NodePtr transform = scene.findNode("plane");
  const NodePtr group = make("transform", "group");
  ASSERT_TRUE(scene.reparent(transform, nullptr, group));
  apply(transform, {{"t", {2, 3, 0}}, {"s", {4, 1, 1}}});
  apply(group, {{"t", {100, 0, 0}}, {"ry", {90}}});
  const auto expectBox = [](const NodePtr& node, const MPoint& low, const MPoint& high) {
    expectPoint(boundingBox(node).min(), low, "min");
    expectPoint(boundingBox(node).max(), high, "max");
  };
  expectBox(mesh, {-0.5, 0, -0.5}, {0.5, 0, 0.5});
  expectBox(transform, {0, 3, -0.5}, {4, 3, 0.5});
  expectBox(group, {99.5, 3, -4}, {100.5, 3, 0});
  EXPECT_TRUE(boundingBox(group).contains({100, 3, -2}));
  EXPECT_FALSE(boundingBox(group).contains({100, 3, 0.5}));
  EXPECT_EQ(readNumber(plug("plane.bbsix")), 4.0);
  EXPECT_EQ(readNumbers(plug("plane.c")), (std::vector<double>{2, 3, 0}));
  apply(mesh, {{"io", {1}}});
  expectBox(group, {0, 0, 0}, {0, 0, 0});
}

}  // namespace
}  // namespace host
