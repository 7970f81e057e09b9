#include <maya/MMatrix.h>

#include <climits>
#include <cstdint>

#include "host/mesh/MeshIndex.h"
#include "tests/mesh/MeshFixtures.h"

namespace host {
namespace {

// A square of two triangles, as a scene file holds it: points, edges, faces.
struct Statements {
  std::vector<double> points = {0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 1, 0};
  std::vector<int> edges = {0, 1, 1, 1, 2, 1, 2, 0, 1, 2, 3, 1, 3, 0, 1};
  std::vector<std::vector<int>> faces = {{0, 1, 2}, {-3, 3, 4}};

  MeshData mesh() const {
    MeshData result;
    EXPECT_EQ(result.setPoints(0, points.data(), points.size() / 3), "");
    EXPECT_EQ(result.setEdges(0, edges.data(), edges.size() / 3), "");
    EXPECT_EQ(result.beginFaces(0), "");
    for (const auto& face : faces) EXPECT_EQ(result.addFace(face.data(), face.size()), "");
    return result;
  }
};

TEST(MeshData, TopologyThatDoesNotFitIsRefusedWithAReason) {
  struct Case {
    std::function<void(Statements&)> damage;
    const char* reason;
  };
  const Case cases[] = {
      {[](Statements& s) { s.faces[1][1] = 5; }, "face 1 names edge 5 of 5"},
      {[](Statements& s) { s.faces[1][1] = -6; }, "face 1 names edge 5 of 5"},
      {[](Statements& s) { s.faces[0][0] = INT_MAX; }, "face 0 names edge 2147483647 of 5"},
      {[](Statements& s) { s.faces[0][0] = INT_MIN; }, "face 0 names edge 2147483647 of 5"},
      {[](Statements& s) { s.edges[3] = 4; }, "edge 1 names point 4 of 4"},
      {[](Statements& s) { s.edges[4] = -1; }, "edge 1 names point -1 of 4"},
      {[](Statements& s) { s.points.resize(9); }, "edge 3 names point 3 of 3"},
      {[](Statements& s) {
         s.faces[0] = {0, 2, 1};
       },
       "the edges of face 0 do not meet"},
      {[](Statements& s) {
         s.faces[1] = {-3, 3, -4};
       },
       "the edges of face 1 do not close"},
  };
  for (const Case& c : cases) {
    Statements statements;
    c.damage(statements);
    const MeshData mesh = statements.mesh();
    EXPECT_EQ(mesh.problem(), c.reason);
    EXPECT_EQ(mesh.faceCount(), 0);
    EXPECT_TRUE(mesh.normals().list.empty());
    EXPECT_TRUE(mesh.triangles().list.empty());
    EXPECT_FALSE(mesh.surfaceIndex(MMatrix()).closest({0, 0, 0}).has_value());
  }
}

TEST(MeshData, StatementsThatLeaveGapsOrAskForTooMuchChangeNothing) {
  MeshData mesh = Statements().mesh();
  const double xyz[3] = {};
  const float uv[4] = {};
  const int ids[4] = {};
  EXPECT_NE(mesh.setPoints(999'999'999, xyz, 1), "");
  EXPECT_NE(mesh.setEdges(6, ids, 1), "");
  EXPECT_NE(mesh.setUvs(0, 1, uv, 1), "");
  EXPECT_NE(mesh.setNormals(1, uv, 1), "");
  EXPECT_NE(mesh.setTweaks(SIZE_MAX, xyz, 1), "");
  EXPECT_NE(mesh.setUvs(-1, 0, uv, 1), "");
  EXPECT_NE(mesh.setColours(0, 0, uv, 3), "") << "4 floats a colour";
  EXPECT_NE(mesh.beginFaces(3), "");
  EXPECT_NE(mesh.addFace(ids, 2), "");
  EXPECT_NE(mesh.setLoopUvs(0, ids, 4), "") << "more ids than corners";
  int made = 0;
  for (int i = 0; i < 100'000; ++i) made += mesh.uvSet(i) != nullptr ? 1 : 0;
  EXPECT_EQ(made, kMaxMeshSets);
  EXPECT_EQ(mesh.pointCount(), 4);
  EXPECT_EQ(mesh.faceCount(), 2);
}

TEST(MeshData, LaterStatementsReplaceAndTakeDerivedDataWithThem) {
  MeshData mesh = Statements().mesh();
  EXPECT_FLOAT_EQ(mesh.normals().list[0].z, 1.0f);
  EXPECT_EQ(mesh.box().max.x, 1.0);
  const double moved[] = {0, 0, 5, 1, 0, 5, 1, 1, 5, 0, 1, 5};
  mesh.setPoints(0, moved, 4);
  EXPECT_EQ(mesh.box().max.z, 5.0);
  EXPECT_DOUBLE_EQ(mesh.surfaceIndex(MMatrix()).closest({0.5, 0.5, 0})->distance, 5.0);
  const double tweak[] = {0, 0, 2, 7, 7, 7};
  mesh.setTweaks(3, tweak, 2);  // the second is beyond the last point
  EXPECT_EQ(mesh.points()[3].z, 7.0);
  EXPECT_EQ(mesh.storedPoints()[3].z, 5.0);
  EXPECT_EQ(mesh.tweaks().size(), 2u);
  EXPECT_EQ(mesh.box().max.z, 7.0);

  ASSERT_EQ(mesh.beginFaces(1), "");
  EXPECT_EQ(mesh.faceCount(), 1);
  const int reversed[] = {-5, -4, 2};
  EXPECT_EQ(mesh.addFace(reversed, 3), "");
  EXPECT_EQ(mesh.cornerVertices(), (std::vector<int>{0, 1, 2, 0, 3, 2}));
}

TEST(MeshData, IdsGoToTheLoopTheyFollow) {
  const std::vector<Vec3> outer = {{0, 0, 0}, {9, 0, 0}, {9, 9, 0}, {0, 9, 0}};
  const auto hole = [](double x) { return std::vector<Vec3>{{x, 1, 0}, {x, 2, 0}, {x + 1, 2, 0}}; };
  MeshData mesh = faceWithHoles({outer, hole(1), hole(4)});
  ASSERT_EQ(mesh.problem(), "");
  EXPECT_EQ(mesh.loops(0), (std::vector<std::pair<int, int>>{{0, 4}, {4, 7}, {7, 10}}));
  const int a[] = {3, 2, 1, 0, 4, 5, 6, 7, 8, 9};
  EXPECT_EQ(mesh.setLoopUvs(2, a, 3), "");   // the last hole
  EXPECT_EQ(mesh.setLoopUvs(5, a, 10), "");  // the whole face
  EXPECT_EQ(mesh.setFaceUvs(a, 4), "");      // older scenes: outer loop, then each hole
  EXPECT_EQ(mesh.setHoleUvs(a + 4, 3), "");
  EXPECT_EQ(mesh.setHoleUvs(a + 7, 3), "");
  EXPECT_NE(mesh.setHoleUvs(a, 3), "");
  ASSERT_EQ(mesh.uvSets().size(), 3u);
  EXPECT_EQ(mesh.uvSets()[0].ids, std::vector<int>(a, a + 10));
  EXPECT_EQ(mesh.uvSets()[1].ids, (std::vector<int>{-1, -1, -1, -1, -1, -1, -1, 3, 2, 1}));
  EXPECT_EQ(mesh.uvSets()[2].ids, std::vector<int>(a, a + 10));
  const float uvs[] = {0, 0, 1, 1};
  mesh.setUvs(2, 0, uvs, 2);
  const MeshUvSet& set = mesh.uvSets()[1];
  EXPECT_EQ(MeshData::uvAt(set, 9), 1);
  EXPECT_EQ(MeshData::uvAt(set, 7), -1) << "UV 3 of 2";
  EXPECT_EQ(MeshData::uvAt(set, 0), -1);
  EXPECT_EQ(MeshData::uvAt(set, 10), -1);
}

TEST(MeshData, ColoursComeInStepsOfTheirComponents) {
  MeshData mesh;
  const float numbers[] = {0.25f, 0.5f, 0.75f, 0.125f, 0.375f, 0.625f};
  mesh.colourSet(0)->components = 3;
  mesh.colourSet(1)->components = 1;
  EXPECT_EQ(mesh.setColours(0, 0, numbers, 6), "");
  EXPECT_EQ(mesh.setColours(1, 0, numbers, 6), "");
  const MeshColour& rgb = mesh.colourSets()[0].colours[1];
  EXPECT_EQ(rgb.r, 0.125f);
  EXPECT_EQ(rgb.b, 0.625f);
  EXPECT_EQ(rgb.a, 1.0f);
  EXPECT_EQ(mesh.colourSets()[1].colours[5].a, 0.625f);
}

}  // namespace
}  // namespace host
