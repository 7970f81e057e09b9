#include <algorithm>
#include <cmath>
#include <set>
#include <utility>

#include "tests/file/HistoryScenes.h"

namespace host {
namespace {

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
