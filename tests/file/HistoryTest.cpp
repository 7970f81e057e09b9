#include "host/history/History.h"

#include <cmath>
#include <set>
#include <utility>

#include "host/mesh/MeshData.h"
#include "host/mesh/history/PointMover.h"
#include "host/scene/Node.h"
#include "tests/file/SceneText.h"

namespace host {
namespace {

// Scenes whose mesh "m" is made by the nodes before it.
class History : public SceneFiles {
 protected:
  // `nodes` ends in a node "last"; `output` is its plug. Gives the warnings.
  std::string make(const std::string& nodes, const std::string& output = "last.out") {
    return open(nodes + "createNode mesh -n \"m\";\nconnectAttr \"" + output + "\" \"m.i\";\n");
  }
  const MeshData& mesh() { return *node("m")->mesh; }
};

// A square of side 2 around the origin, at y = 0: points 0 and 1 at +z, 0 and 2 at -x.
constexpr char kPlane[] =
    "createNode polyPlane -n \"plane\";\n\tsetAttr \".w\" 2;\n\tsetAttr \".h\" 2;\n"
    "\tsetAttr \".sw\" 1;\n\tsetAttr \".sh\" 1;\n";

std::string connected(const std::string& source, const std::string& destination) {
  return "connectAttr \"" + source + "\" \"" + destination + "\";\n";
}

void expectPoint(const MeshData& mesh, int point, const Vec3& expected) {
  const Vec3 p = mesh.points().at(static_cast<std::size_t>(point));
  EXPECT_NEAR(p.x, expected.x, 1e-9) << point;
  EXPECT_NEAR(p.y, expected.y, 1e-9) << point;
  EXPECT_NEAR(p.z, expected.z, 1e-9) << point;
}

void growBy(MeshBox& box, const MeshUv& uv) {
  const Vec3 p = {uv.u, uv.v, 0};
  box.min = box.empty ? p : Vec3{std::min(box.min.x, p.x), std::min(box.min.y, p.y), 0};
  box.max = box.empty ? p : Vec3{std::max(box.max.x, p.x), std::max(box.max.y, p.y), 0};
  box.empty = false;
}
void expectWholePicture(const MeshBox& box) {
  EXPECT_NEAR(box.min.x, 0, 1e-6);
  EXPECT_NEAR(box.min.y, 0, 1e-6);
  EXPECT_NEAR(box.max.x, 1, 1e-6);
  EXPECT_NEAR(box.max.y, 1, 1e-6);
}

// "last", a deformer of that type, with the plane as its mesh.
std::string deformer(const std::string& type, const std::string& settings) {
  return std::string(kPlane) + "createNode " + type + " -n \"last\";\n" + settings +
         connected("plane.out", "last.ip[0].ig");
}
// The same for what changes polygons.
std::string modifier(const std::string& type, const std::string& settings) {
  return std::string(kPlane) + "createNode " + type + " -n \"last\";\n" + settings +
         connected("plane.out", "last.ip");
}

// An extrusion of faces of a cube, with one more setting.
std::string extrude(const std::string& faces, const std::string& setting) {
  return "createNode polyExtrudeFace -n \"last\";\n\tsetAttr \".ics\" -type \"componentList\" 1 "
         "\"f[" +
         faces + "]\";\n\tsetAttr " + setting + ";\n";
}
// The same, connected to its cube, and a node "after" it.
std::string extruded(const std::string& faces, const std::string& setting,
                     const std::string& after) {
  return "createNode polyCube -n \"cube\";\n" + extrude(faces, setting) +
         connected("cube.out", "last.ip") + after + connected("last.out", "after.ip") +
         connected("last.out", "after.ig") + connected("last.out", "after.ip[0].ig");
}

// Two joints at the origin, of which the second is turned by 90 degrees around y.
std::string skin(const std::string& settings) {
  return "createNode joint -n \"j0\";\ncreateNode joint -n \"j1\";\n\tsetAttr \".r\" -type "
         "\"double3\" 0 90 0;\n" +
         deformer("skinCluster", settings) + connected("j0.wm", "last.ma[0]") +
         connected("j1.wm", "last.ma[1]");
}

// A cube of which points of the top merge, with one more setting.
std::string merged(const std::string& vertices, const std::string& setting) {
  return "createNode polyMergeVert -n \"last\";\n\tsetAttr \".ics\" -type \"componentList\" 1 "
         "\"vtx[" +
         vertices + "]\";\n\tsetAttr " + setting + ";\n";
}

// A cluster of the plane, with its handle moved by 0 4 0.
std::string clustered(const std::string& settings) {
  return "createNode transform -n \"handle\";\n\tsetAttr \".ty\" 4;\n" +
         deformer("cluster", settings) + connected("handle.wm", "last.ma");
}

TEST_F(History, WhatStopsAMeshIsNamed) {
  const std::string kLast = "createNode transformGeometry -n \"last\";\n";
  const struct {
    std::string nodes;
    const char* output;
    const char* stopNode;
    const char* reason;
  } kCases[] = {
      {std::string(kPlane) + "createNode polyBevel3 -n \"bevel\";\n" +
           connected("plane.out", "bevel.ip") + kLast + connected("bevel.out", "last.ig"),
       "last.og", "bevel", ""},
      {"createNode reference -n \"last\";\n", "last.phl[1]", "last",
       "the file that it refers to is not loaded"},
      {kLast, "last.og", "last", "no mesh is connected into it"},
      {kLast + "createNode groupParts -n \"parts\";\n" + connected("last.og", "parts.ig") +
           connected("parts.og", "last.ig"),
       "last.og", "last", "its history leads back to itself"},
      {kPlane + kLast + "\tsetAttr \".txf\" -type \"matrix\" 1 0 0 0 0 nan 0 0 0 0 1 0 0 0 0 1;\n" +
           connected("plane.out", "last.ig"),
       "last.og", "last", "its matrix holds what is not a number"},
      {"createNode someonesNode -n \"odd\";\ncreateNode polyCube -n \"last\";\n" +
           connected("odd.o", "last.w"),
       "last.out", "last", "it is driven by 'odd' (someonesNode), which is not evaluated"},
      {"createNode polySphere -n \"last\";\n\tsetAttr \".sa\" 1000000000;\n", "last.out", "last",
       "its subdivisions ask for too many points"},
      {skin("\tsetAttr \".wl[0:1].w\" 1 0 1 2 0 0.5 7 0.5;\n"), "last.og[0]", "last",
       "influence 7: its joint is missing"},
      {skin("\tsetAttr \".wl[0].w[0]\" 1;\n\tsetAttr \".pm[0]\" -type \"matrix\" inf 0 0 0 0 1 0 0 "
            "0 "
            "0 1 0 0 0 0 1;\n"),
       "last.og[0]", "last", "influence 0: its matrix holds what is not a number"},
      {extruded("0:1", "\".lt\" -type \"double3\" 0 0 1", "createNode polyNormal -n \"after\";\n"),
       "after.out", "last",
       "it moves faces along their normals that look different ways, which is not evaluated"},
      {extruded("1", "\".ls\" -type \"double3\" 0.5 1 1", "createNode polyNormal -n \"after\";\n"),
       "after.out", "last", "its localScale is not evaluated"},
      {extruded(
           "1", "\".tk\" 1",
           "createNode deleteComponent -n \"after\";\n\tsetAttr \".dc\" -type \"componentList\" "
           "1 \"f[6]\";\n"),
       "after.og", "after", kOtherNumbers},
      {extruded("1", "\".tk\" 1",
                "createNode polyTweak -n \"after\";\n\tsetAttr \".tk[8]\" -type "
                "\"float3\" 0 1 0;\n"),
       "after.out", "after", kOtherNumbers},
      {extruded("1", "\".tk\" 1", "createNode skinCluster -n \"after\";\n"), "after.og[0]", "after",
       kOtherNumbers},
      {"createNode polyCube -n \"cube\";\n" + merged("2:5", "\".d\" 1.2") +
           connected("cube.out", "last.ip"),
       "last.out", "last",
       "its points hang together in chains longer than its distance, of which it is not known "
       "which "
       "are merged"},
      {"createNode polyCube -n \"cube\";\n" + merged("0:7", "\".ws\" yes") +
           connected("cube.out", "last.ip"),
       "last.out", "last", "its distance is not known"},
      {deformer("cluster", ""), "last.og[0]", "last", "its handle is missing"},
      {clustered("\tsetAttr \".rel\" yes;\n"), "last.og[0]", "last",
       "its relative mode is not evaluated"},
      {clustered("\tsetAttr \".wl[0].w[2]\" 0.5;\nsetAttr \"handle.rx\" 5;\n"), "last.og[0]",
       "last", "it turns or scales points by a part of its weight, which is not evaluated"},
      {clustered("\tsetAttr \".gm[0]\" -type \"matrix\" 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 1;\n"),
       "last.og[0]", "last", "its matrix has no inverse"},
      {"createNode polyUnite -n \"last\";\n", "last.out", "last", "no mesh is connected into it"},
      {modifier("polySeparate", ""), "last.out[1]", "last",
       "it has 1 parts, and part 2 is asked for"},
      {modifier("deleteComponent", "\tsetAttr \".dc\" -type \"componentList\" 1 \"f[*]\";\n") +
           connected("plane.out", "last.ig"),
       "last.og", "last", "it leaves no polygon"},
  };
  for (const auto& c : kCases) {
    const std::string warnings = make(c.nodes, c.output);
    const auto stop = unevaluatedBy(node("m"));
    ASSERT_TRUE(stop.has_value()) << warnings;
    EXPECT_EQ(stop->node, c.stopNode);
    EXPECT_EQ(stop->reason, c.reason);
    EXPECT_EQ(stop->type, node(c.stopNode)->type().name());
    EXPECT_NE(warnings.find("mesh 'm' is made by '" + stop->node + "' (" + stop->type + ")"),
              std::string::npos)
        << warnings;
    EXPECT_EQ(mesh().pointCount(), 0);
  }
}

TEST_F(History, ChainsAreFollowedThroughNodesAndMeshes) {
  make(std::string(kPlane) +
           "createNode mesh -n \"orig\";\n\tsetAttr \".pt[0]\" -type \"float3\" 0 1 0;\n" +
           connected("plane.out", "orig.i") + "createNode groupParts -n \"parts\";\n" +
           connected("orig.w", "parts.ig") +
           "createNode transformGeometry -n \"last\";\n\tsetAttr \".txf\" -type \"matrix\" 0 0 2 0 "
           "0 1 0 0 -2 0 0 0 10 20 30 1;\n" +
           connected("parts.og", "last.ig"),
       "last.og");
  EXPECT_FALSE(unevaluatedBy(node("m")).has_value());
  EXPECT_FALSE(unevaluatedBy(node("orig")).has_value());
  ASSERT_EQ(mesh().pointCount(), 4);
  EXPECT_EQ(mesh().faceCount(), 1);
  expectPoint(mesh(), 0, {10 - 2 * 1, 20 + 1, 30 + 2 * -1});  // of (-1, 1, 1)
  expectPoint(mesh(), 3, {10 - 2 * -1, 20, 30 + 2 * 1});      // of (1, 0, -1)
}

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

TEST_F(History, UvsAreMovedUnlessTheyAreOlder) {
  const std::string kTweak =
      modifier("polyTweakUV", "\tsetAttr -s 2 \".uvtk[2:3]\" -type \"float2\" 0.5 0 0 -0.25;\n");
  EXPECT_EQ(make(kTweak), "");
  ASSERT_EQ(mesh().uvSets().size(), 1u);
  EXPECT_EQ(mesh().uvSets()[0].uvs[2].u, 0.5f);
  EXPECT_EQ(mesh().uvSets()[0].uvs[3].v, 0.75f);
  const std::string warnings =
      make(kTweak + "createNode polyMapSew -n \"sew\";\n" + connected("plane.out", "sew.ip") +
           "connectAttr -f \"sew.out\" \"last.ip\";\n");
  EXPECT_NE(
      warnings.find("mesh 'm': 'sew' (polyMapSew) changes UVs in a way that is not evaluated"),
      std::string::npos)
      << warnings;
  EXPECT_EQ(mesh().uvSets()[0].uvs[3].v, 1.0f);
  EXPECT_EQ(mesh().faceCount(), 1);
}

// From above onto a rectangle of 4 by 2 around (1, 0, 0); v runs against z.
TEST_F(History, UvsAreProjectedFromAPlane) {
  const std::string kFromAbove =
      "\tsetAttr \".pc\" -type \"double3\" 1 0 0;\n\tsetAttr \".ro\" -type \"double3\" -90 0 0;\n"
      "\tsetAttr \".ps\" -type \"double2\" 4 2;\n";
  const std::string kTwice =
      "\tsetAttr \".ix\" -type \"matrix\" 2 0 0 0 0 2 0 0 0 0 2 0 0 0 0 1;\n";
  const struct {
    std::string settings;
    std::vector<float> uvs;  // of the points (-1, 0, 1) and (1, 0, -1)
    bool isOlder;
  } kCases[] = {
      {kFromAbove, {0, 0, 0.5, 1}, false},
      {kFromAbove + kTwice, {0, 0, 0.5, 1}, false},
      {kFromAbove + kTwice + "\tsetAttr \".ws\" yes;\n", {-0.25, -0.5, 0.75, 1.5}, false},
      {kFromAbove + "\tsetAttr \".ics\" -type \"componentList\" 0;\n", {0, 0, 1, 1}, false},
      {kFromAbove + "\tsetAttr \".ra\" 30;\n", {0, 0, 1, 1}, true},
      {"", {0, 0, 1, 1}, true}};
  for (const auto& c : kCases) {
    const std::string warnings = make(modifier("polyPlanarProj", c.settings));
    EXPECT_EQ(warnings.find("is not evaluated") != std::string::npos, c.isOlder) << warnings;
    const MeshUvSet& set = mesh().uvSets().at(0);
    for (int corner = 0; corner < 4; ++corner) {
      const int vertex = mesh().cornerVertices().at(static_cast<std::size_t>(corner));
      if (vertex != 0 && vertex != 3) continue;
      const MeshUv& uv = set.uvs.at(static_cast<std::size_t>(MeshData::uvAt(set, corner)));
      EXPECT_NEAR(uv.u, c.uvs[vertex == 0 ? 0 : 2], 1e-6) << c.settings;
      EXPECT_NEAR(uv.v, c.uvs[vertex == 0 ? 1 : 3], 1e-6) << c.settings;
    }
  }
  EXPECT_EQ(make(modifier("polyMapCut", "")), "");
  EXPECT_NE(make("createNode polyMapCut -n \"cut\";\n" +
                 modifier("polyTweakUV", "\tsetAttr \".uvtk[0]\" -type \"float2\" 5 5;\n") +
                 connected("plane.out", "cut.ip") + "connectAttr -f \"cut.out\" \"last.ip\";\n")
                .find("'last' (polyTweakUV) changes UVs in a way that is not evaluated"),
            std::string::npos);
}

// Five meshes in one rectangle, then each in one of its own, which the artist's Maya fitted to
// them.
TEST_F(History, AnArtistsProjectionsFillTheirPicture) {
  const auto scenes = corpusScenes();
  const auto scene = std::find_if(scenes.begin(), scenes.end(), [](const fs::path& path) {
    return path.filename() == "MinionRig.ma";
  });
  if (scene == scenes.end()) GTEST_SKIP();
  openPath(scene->string());
  run("createNode mesh -n probe");
  MeshBox together;
  for (int i = 1; i <= 10; ++i) {
    run("connectAttr -f polyPlanarProj" + std::to_string(i) + ".out probe.i");
    MeshBox box;
    const MeshUvSet& set = *node("probe")->mesh->findUvSet();
    for (std::size_t corner = 0; corner < set.ids.size(); ++corner) {
      const auto id = static_cast<std::size_t>(MeshData::uvAt(set, static_cast<int>(corner)));
      growBy(box, set.uvs.at(id));
      if (i <= 5) growBy(together, set.uvs.at(id));
    }
    if (i > 5) expectWholePicture(box);
  }
  expectWholePicture(together);
}

TEST_F(History, ColoursAreSetByVertexAndByCorner) {
  make(modifier("polyColorPerVertex",
                "\tsetAttr \".vclr[0].vrgb\" -type \"float3\" 1 0 0;\n"
                "\tsetAttr \".vclr[1].vrgb\" -type \"float3\" 0 1 0;\n"
                "\tsetAttr \".vclr[1].vfcl[0].frgb\" -type \"float3\" 0 0 1;\n"
                "\tsetAttr \".vclr[1].vfcl[0].vfal\" 0.5;\n"));
  const MeshColourSet* set = mesh().findColourSet();
  ASSERT_NE(set, nullptr);
  const auto colourOf = [&](int corner) {
    return set->colours.at(static_cast<std::size_t>(MeshData::colourAt(*set, corner)));
  };
  EXPECT_EQ(colourOf(0).r, 1.0f);
  EXPECT_EQ(colourOf(1).b, 1.0f);
  EXPECT_EQ(colourOf(1).g, 0.0f);
  EXPECT_EQ(colourOf(1).a, 0.5f);
  EXPECT_EQ(MeshData::colourAt(*set, 2), -1);
}

TEST_F(History, FollowsWhatItDependsOn) {
  make("createNode transform -n \"root\";\ncreateNode joint -n \"j\" -p \"root\";\n" +
           deformer("skinCluster", "\tsetAttr \".wl[0:3].w\" 1 0 1 1 0 1 1 0 1 1 0 1;\n") +
           connected("j.wm", "last.ma[0]") +
           "createNode mesh -n \"copy\";\ncreateNode polyNormal -n \"turned\";\n" +
           connected("last.og[0]", "turned.ip") + connected("turned.out", "copy.i"),
       "last.og[0]");
  run("setAttr root.tx 5");
  expectPoint(mesh(), 0, {4, 0, 1});
  run("setAttr plane.w 4");
  expectPoint(mesh(), 0, {3, 0, 1});
  expectPoint(*node("copy")->mesh, 0, {3, 0, 1});
  run("setAttr m.pt[0] 0 1 0; setAttr plane.sw 2");
  EXPECT_EQ(mesh().pointCount(), 6);
  expectPoint(mesh(), 0, {3, 1, 1});
  run("disconnectAttr j.wm last.ma[0]");
  EXPECT_EQ(mesh().pointCount(), 6);
  run("createNode polyCube -n late; connectAttr -f late.out m.i");
  EXPECT_EQ(mesh().pointCount(), 8);
}

// A cube of six faces, eight points and twelve edges, with fourteen UVs.
TEST_F(History, FacesAreDeletedTurnedAndCut) {
  const struct {
    std::string node;
    int points, faces, edges, corners;
    double volume;  // of the signed tetrahedra between the faces' triangles and the origin
  } kCases[] = {
      {"createNode deleteComponent -n \"last\";\n\tsetAttr \".dc\" -type \"componentList\" 1 "
       "\"f[2]\";\n",
       8, 5, 12, 20, 5.0 / 6.0},
      {"createNode deleteComponent -n \"last\";\n\tsetAttr \".dc\" -type \"componentList\" 2 "
       "\"f[1]\" "
       "\"f[3:5]\";\n",
       8, 2, 8, 8, 2.0 / 6.0},
      {"createNode polyNormal -n \"last\";\n", 8, 6, 12, 24, -1.0},
      {"createNode polyNormal -n \"last\";\n\tsetAttr \".ics\" -type \"componentList\" 1 "
       "\"f[0]\";\n",
       8, 6, 12, 24, 4.0 / 6.0},
      {"createNode polyTriangulate -n \"last\";\n\tsetAttr \".ics\" -type \"componentList\" 1 "
       "\"f[0:1]\";\n",
       8, 8, 14, 28, 1.0},
      {"createNode polyMapCut -n \"last\";\n\tsetAttr \".nds\" 1;\n", 8, 6, 12, 24, 1.0},
      // A pyramid, in the middle of the top that there was.
      {merged("2:5", "\".d\" 1.5"), 5, 5, 8, 16, 1.0 / 3.0},
      {merged(
           "2:5",
           "\".d\" 0.75;\n\tsetAttr \".ws\" yes;\n\tsetAttr \".ix\" -type \"matrix\" 0.5 0 0 0 0 "
           "0.5 0 0 0 0 0.5 0 0 0 0 1"),
       5, 5, 8, 16, 1.0 / 3.0},
      {merged("0:7", "\".d\" 0.9"), 8, 6, 12, 24, 1.0},
      {extrude("1", "\".lt\" -type \"double3\" 0 0 2"), 12, 10, 20, 40, 3.0},
      {extrude("1", "\".lt\" -type \"double3\" 0 0 2;\n\tsetAttr \".d\" 2"), 16, 14, 28, 56, 3.0},
      {extrude("0:5", "\".kft\" no;\n\tsetAttr \".tk\" 1"), 32, 30, 60, 120, 7.0},
      {extrude("0:5", "\".t\" -type \"double3\" 1 0 0"), 8, 6, 12, 24, 1.0},
      // Up by 1 to a square of side 2: a frustum.
      {extrude("1",
               "\".pvt\" -type \"float3\" 0 0.5 0;\n\tsetAttr \".s\" -type \"double3\" 2 2 2;\n"
               "\tsetAttr \".t\" -type \"double3\" 0 1 0"),
       12, 10, 20, 40, 1.0 + (1.0 + 4.0 + 2.0) / 3.0},
      // The mesh stands in the world twice as large.
      {extrude("1",
               "\".ws\" yes;\n\tsetAttr \".ix\" -type \"matrix\" 2 0 0 0 0 2 0 0 0 0 2 0 0 0 0 1;\n"
               "\tsetAttr \".lt\" -type \"double3\" 0 0 3"),
       12, 10, 20, 40, 2.5},
      // Two faces side by side, up: the second slides in its plane.
      {extrude("0:1", "\".t\" -type \"double3\" 0 1 0"), 14, 12, 24, 48, 2.0},
  };
  for (const auto& c : kCases) {
    make("createNode polyCube -n \"cube\";\n" + c.node +
             "connectAttr \"cube.out\" \"last.ip\";\nconnectAttr \"cube.out\" \"last.ig\";\n",
         c.node.find("delete") != std::string::npos ? "last.og" : "last.out");
    SCOPED_TRACE(c.node);
    EXPECT_EQ(mesh().pointCount(), c.points);
    EXPECT_EQ(mesh().faceCount(), c.faces);
    EXPECT_EQ(static_cast<int>(mesh().edges().size()), c.edges);
    EXPECT_EQ(static_cast<int>(mesh().cornerVertices().size()), c.corners);
    double volume = 0.0;
    for (const MeshTriangle& t : mesh().triangles().list) {
      const auto at = [&](int i) {
        const int vertex = mesh().cornerVertices()[static_cast<std::size_t>(t.corners[i])];
        return mesh().points()[static_cast<std::size_t>(vertex)];
      };
      volume += dot(at(0), cross(at(1), at(2))) / 6.0;
    }
    EXPECT_NEAR(volume, c.volume, 1e-12);
    for (const int id : mesh().uvSets().at(0).ids)
      EXPECT_LT(id, static_cast<int>(mesh().uvSets()[0].uvs.size()));
  }
}

TEST_F(History, MeshesAreUnitedAndSeparated) {
  const std::string kTwo =
      std::string(kPlane) +
      "createNode polyCube -n \"cube\";\ncreateNode polyUnite -n \"both\";\n"
      "\tsetAttr \".im[1]\" -type \"matrix\" 1 0 0 0 0 1 0 0 0 0 1 0 10 0 0 1;\n" +
      connected("plane.out", "both.ip[0]") + connected("cube.out", "both.ip[1]");
  make(kTwo, "both.out");
  EXPECT_EQ(mesh().pointCount(), 4 + 8);
  EXPECT_EQ(mesh().faceCount(), 1 + 6);
  EXPECT_EQ(mesh().edges().size(), 4u + 12u);
  expectPoint(mesh(), 0, {-1, 0, 1});
  expectPoint(mesh(), 4, {10 - 0.5, -0.5, 0.5});
  ASSERT_EQ(mesh().uvSets().size(), 1u);
  EXPECT_EQ(mesh().uvSets()[0].uvs.size(), 4u + 14u);
  const auto idsOf = [this] {
    return std::set<int>(mesh().uvSets()[0].ids.begin(), mesh().uvSets()[0].ids.end());
  };
  EXPECT_EQ(idsOf().size(), 4u + 14u);
  make(kTwo + "createNode polySeparate -n \"apart\";\n" + connected("both.out", "apart.ip"),
       "apart.out[1]");
  EXPECT_EQ(mesh().pointCount(), 8);
  EXPECT_EQ(mesh().faceCount(), 6);
  expectPoint(mesh(), 0, {10 - 0.5, -0.5, 0.5});
  EXPECT_EQ(idsOf().size(), 14u);
  make(modifier("polyTweak", "\tsetAttr -s 2 \".tk[2:3]\" -type \"float3\" 0 5 0 0 6 0;\n"));
  expectPoint(mesh(), 2, {-1, 5, -1});
  expectPoint(mesh(), 3, {1, 6, -1});
}

// 0.01 m is 1 cm.
TEST_F(History, LengthsAreInTheFilesUnit) {
  const std::string kMetres = "currentUnit -l meter;\n";
  const std::string kCube =
      "createNode polyCube -n \"cube\";\n\tsetAttr \".w\" 0.01;\n\tsetAttr \".h\" 0.01;\n"
      "\tsetAttr \".d\" 0.01;\n";
  make(kMetres + kCube + extrude("1", "\".lt\" -type \"double3\" 0 0 0.02") +
       connected("cube.out", "last.ip"));
  EXPECT_NEAR(mesh().box().max.y, 0.5 + 2, 1e-9);
  make(
      kMetres + kCube +
          "createNode tweak -n \"last\";\n\tsetAttr \".vl[0].vt[2]\" -type \"float3\" 0 0.03 0;\n" +
          connected("cube.out", "last.ip[0].ig"),
      "last.og[0]");
  EXPECT_NEAR(mesh().box().max.y, 0.5 + 3, 1e-9);
  make(kMetres + kCube +
       "createNode polyTweak -n \"last\";\n\tsetAttr -s 2 \".tk[2:3]\" -type \"float3\" 0 0.03 0 0 "
       "0.04 "
       "0;\n" +
       connected("cube.out", "last.ip"));
  EXPECT_NEAR(mesh().box().max.y, 0.5 + 4, 1e-9);
}

// A second extrusion says where in the world the first one left its faces: cbn and cbx.
TEST_F(History, AnArtistsExtrusionsEndWhereTheirFileSays) {
  const auto scenes = corpusScenes();
  const auto scene = std::find_if(scenes.begin(), scenes.end(), [](const fs::path& path) {
    return path.filename() == "Union Roundtable Room.ma";
  });
  if (scene == scenes.end()) GTEST_SKIP();
  openPath(scene->string());
  run("connectAttr -f polyExtrudeFace1.out Arc_TableShape.i");
  const MeshData& table = *node("Arc_TableShape")->mesh;
  ASSERT_GE(table.faceCount(), 60);
  double most = 0.0;
  for (int corner = table.faceStart(40); corner < table.faceStart(60); ++corner) {
    const int vertex = table.cornerVertices()[static_cast<std::size_t>(corner)];
    const Vec3 p = table.points()[static_cast<std::size_t>(vertex)];
    EXPECT_NEAR(p.y * 3 + 1.0048477821664508, 4.0048474245385819, 1e-5);
    most = std::max(most, std::abs(p.x) * 10);
  }
  EXPECT_NEAR(most, 6.2579828500747681, 1e-4);
}

TEST_F(History, EdgesSoftenBelowTheirAngle) {
  for (const auto& [angle, hard] :
       {std::pair<const char*, int>("91", 0), {"89", 12}, {"180", 0}, {"0", 12}}) {
    make(
        "createNode polyCube -n \"cube\";\ncreateNode polySoftEdge -n \"last\";\n\tsetAttr "
        "\".a\" " +
        std::string(angle) + ";\n" + connected("cube.out", "last.ip"));
    int found = 0;
    for (const MeshEdge& edge : mesh().edges()) found += edge.smooth() ? 0 : 1;
    EXPECT_EQ(found, hard) << angle;
  }
}

}  // namespace
}  // namespace host
