#include "host/history/History.h"
#include "host/mesh/history/PointMover.h"
#include "tests/file/HistoryScenes.h"

namespace host {
namespace {

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

}  // namespace
}  // namespace host
