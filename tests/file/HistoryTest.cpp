#include "host/history/History.h"

#include "host/mesh/MeshData.h"
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
      {kLast, "last.og", "last", "no mesh is connected into it"},
      {kLast + "createNode groupParts -n \"parts\";\n" + connected("last.og", "parts.ig") +
           connected("parts.og", "last.ig"),
       "last.og", "last", "its history leads back to itself"},
      {kPlane + kLast + "\tsetAttr \".txf\" -type \"matrix\" 1 0 0 0 0 nan 0 0 0 0 1 0 0 0 0 1;\n" +
           connected("plane.out", "last.ig"),
       "last.og", "last", "its matrix holds what is no number"},
      {"createNode polySphere -n \"last\";\n\tsetAttr \".sa\" 1000000000;\n", "last.out", "last",
       "its subdivisions ask for too many points"},
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

}  // namespace
}  // namespace host
