#include <cmath>

#include "tests/file/HistoryScenes.h"

namespace host {
namespace {

TEST_F(History, SkinsMoveByJoints) {
  // All weights halved between both joints, in each form that files have.
  const std::string kHalves =
      "\tsetAttr \".wl[0:1].w\" 2 0 0.5 1 0.5 2 0 0.5 1 0.5;\n\tsetAttr \".wl[2].w[0:1]\" 0.5 "
      "0.5;\n"
      "\tsetAttr -s 2 \".wl[3].w\";\n\tsetAttr \".wl[3].w[0]\" 0.5;\n\tsetAttr \".wl[3].w[1]\" "
      "0.5;\n";
  const double diagonal = std::sqrt(2.0);
  const struct {
    std::string settings;
    Vec3 first, last;  // of the points (-1, 0, 1) and (1, 0, -1)
  } kCases[] = {
      {kHalves, {0, 0, 1}, {0, 0, -1}},
      {kHalves + "\tsetAttr \".en\" 0.5;\n", {-0.5, 0, 1}, {0.5, 0, -1}},
      {kHalves + "\tsetAttr \".skm\" 1;\n", {0, 0, diagonal}, {0, 0, -diagonal}},
      {kHalves + "\tsetAttr \".skm\" 2;\n\tsetAttr \".bw[0]\" 1;\n", {0, 0, diagonal}, {0, 0, -1}},
      {"\tsetAttr \".wl[0].w[0:1]\" 1 1;\n\tsetAttr \".nw\" 2;\n", {0, 0, 1}, {1, 0, -1}},
      {"\tsetAttr \".wl[0].w[0:1]\" 1 1;\n", {0, 0, 2}, {1, 0, -1}},
      // Bound 10 to the side of the joint, and turned around it.
      {"\tsetAttr \".wl[0].w[1]\" 1;\n\tsetAttr \".gm\" -type \"matrix\" 1 0 0 0 0 1 0 0 0 0 1 0 "
       "10 0 "
       "0 1;\n",
       {-9, 0, -9},
       {1, 0, -1}},
      // Bound where the joint was at (0, 0, 1): the point is at its origin and goes to the joint's.
      {"\tsetAttr \".wl[0].w[1]\" 1;\n\tsetAttr \".pm[1]\" -type \"matrix\" 1 0 0 0 0 1 0 0 0 0 1 "
       "0 1 0 "
       "-1 1;\n",
       {0, 0, 0},
       {1, 0, -1}},
  };
  for (const auto& c : kCases) {
    const std::string warnings = make(skin(c.settings), "last.og[0]");
    ASSERT_EQ(mesh().pointCount(), 4) << c.settings << warnings;
    SCOPED_TRACE(c.settings);
    expectPoint(mesh(), 0, c.first);
    expectPoint(mesh(), 3, c.last);
    const bool isUnbalanced = c.first.z == 2.0;
    EXPECT_EQ(
        warnings.find("has weights that do not add up to 1 at 1 vertices") != std::string::npos,
        isUnbalanced)
        << warnings;
  }
}

TEST_F(History, ClustersMoveByTheirHandle) {
  const struct {
    std::string settings;
    Vec3 first, last;  // of the points (-1, 0, 1) and (1, 0, -1)
  } kCases[] = {
      {"", {-1, 4, 1}, {1, 4, -1}},
      {"\tsetAttr \".wl[0].w[0:1]\" 0.25 0;\n\tsetAttr \".wl[1].w[3]\" 0;\n",
       {-1, 1, 1},
       {1, 4, -1}},
      {"\tsetAttr \".en\" 0.5;\n", {-1, 2, 1}, {1, 2, -1}},
      // Turned by 90 degrees around z, then up; the last point has no weight.
      {"\tsetAttr \".wl[0].w[3]\" 0;\nsetAttr \"handle.rz\" 90;\n", {0, 4 - 1, 1}, {1, 0, -1}},
      // Bound where it was at y = 3, on a mesh that stands in the world twice as large.
      {"\tsetAttr \".pm\" -type \"matrix\" 1 0 0 0 0 1 0 0 0 0 1 0 0 -3 0 1;\n"
       "\tsetAttr \".gm[0]\" -type \"matrix\" 2 0 0 0 0 2 0 0 0 0 2 0 0 0 0 1;\n",
       {-1, 0.5, 1},
       {1, 0.5, -1}},
  };
  for (const auto& c : kCases) {
    const std::string warnings = make(clustered(c.settings), "last.og[0]");
    ASSERT_EQ(mesh().pointCount(), 4) << c.settings << warnings;
    SCOPED_TRACE(c.settings);
    expectPoint(mesh(), 0, c.first);
    expectPoint(mesh(), 3, c.last);
  }
}

TEST_F(History, SkinsTurnLockedNormals) {
  make(skin("\tsetAttr \".wl[0:3].w\" 1 1 1 1 1 1 1 1 1 1 1 1;\n") +
           "createNode mesh -n \"orig\";\n\tsetAttr \".vt[0:2]\" 0 0 0 1 0 0 0 0 1;\n"
           "\tsetAttr \".ed[0:2]\" 0 1 0 1 2 0 2 0 0;\n"
           "\tsetAttr \".n[0:2]\" -type \"float3\" 0.6 0.8 0 1e+20 1e+20 1e+20 1e+20 1e+20 1e+20;\n"
           "\tsetAttr \".fc[0]\" -type \"polyFaces\" f 3 0 1 2;\n" +
           "connectAttr -f \"orig.w\" \"last.ip[0].ig\";\n",
       "last.og[0]");
  ASSERT_EQ(mesh().pointCount(), 3);
  const MeshNormals& normals = mesh().normals();
  const MeshNormal& turned = normals.list.at(static_cast<std::size_t>(normals.ids.at(0)));
  EXPECT_NEAR(turned.y, 0.8, 1e-6);
  EXPECT_NEAR(turned.z, -0.6, 1e-6);
}

TEST_F(History, BlendShapesAddTheirTargets) {
  const std::string kStored =
      "\tsetAttr \".it[0].itg[0].iti[6000].ipt\" -type \"pointArray\" 2 0 4 0 1 0 8 0 1;\n"
      "\tsetAttr \".it[0].itg[0].iti[6000].ict\" -type \"componentList\" 2 \"vtx[0]\" "
      "\"vtx[3]\";\n";
  const std::string kBetween =
      "\tsetAttr \".it[0].itg[0].iti[5500].ipt\" -type \"pointArray\" 1 0 6 0 1;\n"
      "\tsetAttr \".it[0].itg[0].iti[5500].ict\" -type \"componentList\" 1 \"vtx[0]\";\n";
  const struct {
    std::string settings;
    double first, last;  // the heights of points 0 and 3
  } kCases[] = {
      {kStored + "\tsetAttr \".w[0]\" 0.5;\n", 2, 4},
      {kStored, 0, 0},
      {kStored + "\tsetAttr \".w[0]\" 1;\n\tsetAttr \".en\" 0.25;\n", 1, 2},
      {kStored + "\tsetAttr \".w[0]\" 1;\n\tsetAttr \".it[0].itg[0].tw[3]\" 0.5;\n", 4, 4},
      {kStored + "\tsetAttr \".w[0]\" 1;\n\tsetAttr \".it[0].bw[0]\" 0.5;\n", 2, 8},
      {kStored + "\tsetAttr \".w[0]\" 1;\n\tsetAttr \".tgvs[0]\" no;\n", 0, 0},
      {kStored + kBetween + "\tsetAttr \".w[0]\" 0.5;\n", 6, 0},
      {kStored + kBetween + "\tsetAttr \".w[0]\" 0.75;\n", 5, 4},
      {kStored + kBetween + "\tsetAttr \".w[0]\" 0.25;\n", 3, 0},
      {kStored + "\tsetAttr \".w[0]\" -1;\n", -4, -8},
  };
  for (const auto& c : kCases) {
    make(deformer("blendShape", c.settings), "last.og[0]");
    SCOPED_TRACE(c.settings);
    expectPoint(mesh(), 0, {-1, c.first, 1});
    expectPoint(mesh(), 3, {1, c.last, -1});
  }
  // A live target in the place of the stored one; the base has a tweak, and only one vertex is in
  // the deformer's set.
  make(
      deformer("blendShape", kStored + "\tsetAttr \".w[0]\" 0.5;\n") +
          "createNode polyPlane -n \"other\";\n\tsetAttr \".w\" 4;\n\tsetAttr \".h\" 4;\n\tsetAttr "
          "\".sw\" 1;\n\tsetAttr \".sh\" 1;\n"
          "createNode tweak -n \"tweak\";\n\tsetAttr \".vl[0].vt[0]\" -type \"float3\" 0 5 0;\n"
          "createNode groupParts -n \"parts\";\n\tsetAttr \".ic\" -type \"componentList\" 1 "
          "\"vtx[1:3]\";\n" +
          connected("plane.out", "tweak.ip[0].ig") + connected("tweak.og[0]", "parts.ig") +
          "connectAttr -f \"parts.og\" \"last.ip[0].ig\";\n" +
          connected("other.out", "last.it[0].itg[0].iti[6000].igt"),
      "last.og[0]");
  expectPoint(mesh(), 0, {-1, 5, 1});
  expectPoint(mesh(), 3, {1.5, 0, -1.5});
}

}  // namespace
}  // namespace host
