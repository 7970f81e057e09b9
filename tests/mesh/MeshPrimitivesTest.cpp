#include "host/mesh/MeshPrimitives.h"

#include <cmath>
#include <map>

#include "tests/mesh/MeshFixtures.h"

namespace host {
namespace {

using Values = std::vector<std::pair<std::string, double>>;

constexpr double kPi = 3.14159265358979323846;

double volumeOf(const MeshData& mesh) {
  double six = 0.0;
  for (const MeshTriangle& t : mesh.triangles().list) {
    six += dot(cornerPoint(mesh, t.corners[0]),
               cross(cornerPoint(mesh, t.corners[1]), cornerPoint(mesh, t.corners[2])));
  }
  return six / 6.0;
}

// Every edge is passed once in each direction, and points, edges and faces add up to a sphere's, or
// with `sum` 0 to a torus's.
void expectClosed(const MeshData& mesh, const std::string& where, int sum = 2) {
  std::map<int, int> passes;
  for (const int edge : mesh.storedLoopEdges()) ++passes[edge];
  for (const auto& [edge, times] : passes) {
    EXPECT_EQ(times, 1) << where;
    EXPECT_EQ(passes.count(-edge - 1), 1u) << where;
  }
  EXPECT_EQ(mesh.pointCount() - static_cast<int>(mesh.edges().size()) + mesh.faceCount(), sum)
      << where;
}

double polygonArea(int sides, double radius) {
  return 0.5 * sides * radius * radius * std::sin(2.0 * kPi / sides);
}

// Between rings of similar polygons the slices are prismatoids: h/6 × (lower + 4 × middle + upper).
double sphereVolume(int around, int up) {
  double volume = 0.0;
  for (int i = 0; i < up; ++i) {
    const double a = std::sin(kPi * i / up);
    const double b = std::sin(kPi * (i + 1) / up);
    const double height = std::cos(kPi * i / up) - std::cos(kPi * (i + 1) / up);
    volume += height / 6.0 *
              (polygonArea(around, a) + 4.0 * polygonArea(around, 0.5 * (a + b)) +
               polygonArea(around, b));
  }
  return volume;
}

TEST(MeshPrimitives, SizesCountsAndVolumes) {
  struct Case {
    const char* type;
    Values values;
    int points, faces;
    std::size_t uvs;
    double volume;
  };
  const Case cases[] = {
      {"polyPlane", {}, 121, 100, 121, 0.0},
      {"polyCube", {}, 8, 6, 14, 1.0},
      {"polyCube",
       {{"w", 2}, {"h", 3}, {"d", 5}, {"sw", 2}, {"sh", 3}, {"sd", 4}},
       54,
       52,
       3 * 15 + 2 * 16,
       30.0},
      {"polyCube", {{"cuv", 0}}, 8, 6, 0, 1.0},
      {"polySphere", {}, 382, 400, 439, sphereVolume(20, 20)},
      {"polySphere", {{"r", 2}, {"sa", 3}, {"sh", 2}}, 5, 6, 4 + 6, 8.0 * sphereVolume(3, 2)},
      {"polyCylinder", {}, 40, 22, 82, 2.0 * polygonArea(20, 1.0)},
      {"polyCylinder", {{"sc", 1}}, 42, 60, 84, 2.0 * polygonArea(20, 1.0)},
      {"polyCylinder",
       {{"r", 3}, {"h", 4}, {"sa", 6}, {"sh", 2}, {"sc", 3}},
       18 + 2 * 13,
       12 + 2 * 18,
       21 + 2 * 19,
       4.0 * polygonArea(6, 3.0)},
      {"polyCylinder",
       {{"axx", 1}, {"axy", -3}, {"axz", 0.5}},
       40,
       22,
       82,
       2.0 * polygonArea(20, 1.0)},
      {"polyCube", {{"axy", -1}}, 8, 6, 14, 1.0},
      {"polySphere", {{"sa", -5}, {"sh", 0}}, 5, 6, 10, sphereVolume(3, 2)},
      {"polyCone", {}, 21, 21, 42, 2.0 / 3.0 * polygonArea(20, 1.0)},
      {"polyCone", {{"r", 2}, {"h", 3}, {"sa", 5}, {"sh", 4}}, 21, 21, 30, polygonArea(5, 2.0)},
      {"polyPyramid", {{"w", 2}}, 5, 5, 10, 4.0 * std::sqrt(2.0) / 3.0},
      {"polyPyramid", {{"ns", 3}}, 4, 4, 8, 1.0 / (6.0 * std::sqrt(2.0))},  // a tetrahedron
      // Each wedge between two half planes adds the section's first moment times the angle's sine.
      {"polyTorus", {}, 400, 400, 441, 20.0 * std::sin(kPi / 10.0) * polygonArea(20, 0.5)},
  };
  for (const Case& c : cases) {
    const std::string where = std::string(c.type) + " " + std::to_string(&c - cases);
    const MeshData mesh = primitive(c.type, c.values);
    EXPECT_EQ(mesh.pointCount(), c.points) << where;
    EXPECT_EQ(mesh.faceCount(), c.faces) << where;
    EXPECT_EQ(mesh.uvSets().front().uvs.size(), c.uvs) << where;
    EXPECT_NEAR(volumeOf(mesh), c.volume, 1e-9 * (1.0 + c.volume)) << where;
    if (c.volume != 0.0) expectClosed(mesh, where, c.type == std::string("polyTorus") ? 0 : 2);
    for (std::size_t corner = 0; c.uvs != 0 && corner < mesh.cornerVertices().size(); ++corner)
      EXPECT_NE(MeshData::uvAt(mesh.uvSets().front(), static_cast<int>(corner)), -1) << where;
    for (const MeshUv& uv : mesh.uvSets().front().uvs) {
      EXPECT_TRUE(uv.u >= 0 && uv.u <= 1 && uv.v >= 0 && uv.v <= 1)
          << where << " " << uv.u << " " << uv.v;
    }
  }
}

// The orders and the unfolding that users of the host know by heart.
TEST(MeshPrimitives, CubeHasTheKnownOrder) {
  const MeshData mesh = primitive("polyCube", {{"cuv", 4}});
  const double known[8][3] = {{-1, -1, 1}, {1, -1, 1}, {-1, 1, 1},   {1, 1, 1},
                              {-1, 1, -1}, {1, 1, -1}, {-1, -1, -1}, {1, -1, -1}};
  for (int i = 0; i < 8; ++i)
    EXPECT_EQ(mesh.points()[i], (Vec3{known[i][0] / 2, known[i][1] / 2, known[i][2] / 2})) << i;
  EXPECT_EQ(mesh.cornerVertices(), (std::vector<int>{0, 1, 3, 2, 2, 3, 5, 4, 4, 5, 7, 6,
                                                     6, 7, 1, 0, 1, 7, 5, 3, 6, 0, 2, 4}));
  const float uvs[14][2] = {{0.375f, 0},    {0.625f, 0},    {0.375f, 0.25f}, {0.625f, 0.25f},
                            {0.375f, 0.5f}, {0.625f, 0.5f}, {0.375f, 0.75f}, {0.625f, 0.75f},
                            {0.375f, 1},    {0.625f, 1},    {0.875f, 0},     {0.875f, 0.25f},
                            {0.125f, 0},    {0.125f, 0.25f}};
  const MeshUvSet& set = mesh.uvSets().front();
  for (int i = 0; i < 14; ++i) {
    EXPECT_FLOAT_EQ(set.uvs[i].u, uvs[i][0]) << i;
    EXPECT_FLOAT_EQ(set.uvs[i].v, uvs[i][1]) << i;
  }
  EXPECT_EQ(set.ids, (std::vector<int>{0, 1, 3, 2, 2, 3,  5,  4, 4,  5, 7, 6,
                                       6, 7, 9, 8, 1, 10, 11, 3, 12, 0, 2, 13}));
  EXPECT_EQ(mesh.normals().list.size(), 24u);
}

TEST(MeshPrimitives, RingsAndRowsStartWhereTheyShould) {
  const MeshData sphere = primitive("polySphere");
  EXPECT_NEAR(sphere.points()[0].x, 0.14877813, 1e-6);  // as real scenes have it
  EXPECT_NEAR(sphere.points()[0].y, -0.98768836, 1e-6);
  EXPECT_NEAR(sphere.points()[0].z, -0.048340943, 1e-6);
  EXPECT_EQ(sphere.points()[381], (Vec3{0, 1, 0}));
  EXPECT_EQ(sphere.normals().list.size(), 382u);  // smooth all over
  const MeshData torus = primitive("polyTorus");
  EXPECT_NEAR(length(torus.points()[0] - Vec3{0.47552857, 0, -0.15450859}), 0.0, 1e-6);
  EXPECT_NEAR(length(torus.points()[20] - Vec3{0.4988026, 0.1545085, -0.16207078}), 0.0, 1e-6);
  EXPECT_EQ(std::vector<int>(torus.storedLoopEdges().begin(), torus.storedLoopEdges().begin() + 4),
            (std::vector<int>{-1, 400, 20, -402}));
  const MeshData cone = primitive("polyCone", {{"hbl", -1}});
  EXPECT_NEAR(length(cone.points()[0] - Vec3{0.95105714, 0, -0.30901718}), 0.0, 1e-6);
  EXPECT_EQ(cone.points()[20], (Vec3{0, 2, 0}));
  EXPECT_EQ(
      std::vector<int>(cone.cornerVertices().begin() + 18, cone.cornerVertices().begin() + 26),
      (std::vector<int>{2, 1, 0, 1, 20, 1, 2, 20}));
  const MeshUv tip = cone.uvSets().front().uvs[41];
  EXPECT_TRUE(tip.u == 0.5f && tip.v == 1.0f);
  const MeshData plane = primitive("polyPlane", {{"w", 17}, {"h", 17}});
  EXPECT_EQ(plane.points()[0], (Vec3{-8.5, 0, 8.5}));
  EXPECT_NEAR(plane.points()[12].x, -6.8, 1e-9);
  EXPECT_NEAR(plane.points()[12].z, 6.8, 1e-9);
  EXPECT_EQ(std::vector<int>(plane.cornerVertices().begin(), plane.cornerVertices().begin() + 4),
            (std::vector<int>{0, 1, 12, 11}));
  const MeshData facing = primitive("polyPlane", {{"sw", 1}, {"sh", 1}, {"axy", 0}, {"axz", 1}});
  EXPECT_NEAR(length(facing.points()[3] - Vec3{0.5, 0.5, 0}), 0.0, 1e-12);
  // A cylinder's caps are flat and its side is round: two normals at every rim point, one at a
  // cap's centre.
  EXPECT_EQ(primitive("polyCylinder", {{"sc", 1}}).normals().list.size(), 82u);
}

TEST(MeshPrimitives, KeepsTweaksAndRefusesTooMuch) {
  MeshData mesh;
  const double tweak[] = {0, 1, 0};
  mesh.setTweaks(2, tweak, 1);
  mesh.uvSet(0)->name = "mine";
  const auto some = [](std::string_view name, std::string_view) -> std::optional<double> {
    if (name == "sw" || name == "sh" || name == "sa") return 1e9;
    if (name == "w") return std::nan("");
    return std::nullopt;
  };
  const auto none = [](std::string_view, std::string_view) { return std::optional<double>(); };
  for (const char* type : {"polyPlane", "polyCube", "polySphere", "polyCylinder", "polyTorus"})
    EXPECT_NE(evaluatePrimitive(type, some, mesh), "") << type;
  EXPECT_EQ(mesh.pointCount(), 0);
  EXPECT_EQ(evaluatePrimitive("polyCube", none, mesh), "");
  EXPECT_EQ(mesh.points()[2], (Vec3{-0.5, 1.5, 0.5}));
  EXPECT_EQ(mesh.uvSets().front().name, "mine");
}

}  // namespace
}  // namespace host
