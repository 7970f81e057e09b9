#include <maya/MDagPath.h>
#include <maya/MFnMesh.h>
#include <maya/MIntArray.h>
#include <maya/MItMeshPolygon.h>
#include <maya/MPoint.h>
#include <maya/MPointArray.h>

#include <cmath>
#include <functional>

#include "tests/plugin/HostFixture.h"
#include "tile/SceneAttributes.h"

namespace morvane {
namespace {

const char* const kBanner = "---------- begin goblin_uv (v1.1) ----------\n";

MFnMesh meshOf(const std::string& shape) {
  MDagPath path;
  MDagPath::getAPathTo(getNodeByName(shape.c_str()), path);
  return MFnMesh(path);
}

struct Uv {
  float u;
  float v;
};

Uv uvOf(const std::string& shape, int index) {
  Uv uv{NAN, NAN};
  meshOf(shape).getUV(index, uv.u, uv.v);
  return uv;
}

// What a planar projection from above gives: u and v grow with x and z.
constexpr double kScale = 0.125;
double planar(double coordinate) {
  return 0.5 + kScale * coordinate;
}

void givePlanarUVs(const std::string& shape) {
  MFnMesh mesh = meshOf(shape);
  MPointArray points;
  mesh.getPoints(points);
  for (unsigned i = 0; i < points.length(); ++i) {
    const auto u = static_cast<float>(planar(points[i].x));
    ASSERT_TRUE(mesh.setUV(static_cast<int>(i), u, static_cast<float>(planar(points[i].z))));
  }
  for (int face = 0; face < mesh.numPolygons(); ++face) {
    MIntArray corners;
    mesh.getPolygonVertices(face, corners);
    for (int c = 0; c < static_cast<int>(corners.length()); ++c)
      ASSERT_TRUE(mesh.assignUV(face, c, corners[c]));
  }
}

class GoblinUv : public HostFixture {
 protected:
  static std::string mesh(const std::string& name, const MeshShape& shape,
                          const std::string& placed = "", const std::string& parent = "") {
    return transformText(name, parent, placed) + meshText(name + "Shape", name, shape);
  }
  static std::string goblin(const std::string& name, const std::string& placed = "",
                            const std::string& parent = "") {
    return mesh(name, triangleShape(), placed, parent) +
           "\taddAttr -ln \"goblinName\" -dt \"string\";\n"
           "\tsetAttr \".goblinName\" -type \"string\" \"rock\";\n";
  }
  // Two square faces side by side that meet along x = 0, over z from -4 to 4.
  static MeshShape ridge(double outer, double middle) {
    return {{{-4, outer, -4},
             {0, middle, -4},
             {4, outer, -4},
             {-4, outer, 4},
             {0, middle, 4},
             {4, outer, 4}},
            {{0, 3, 4, 1}, {1, 4, 5, 2}}};
  }
  static std::string listed(const std::string& shape, const std::string& goblinName = "") {
    return "   kMesh   \t" + shape + "   \t" + goblinName + "\n";
  }
  static void expectPlanar(const std::string& shape, int index, double x, double z) {
    const Uv uv = uvOf(shape, index);
    EXPECT_NEAR(uv.u, planar(x), 1e-5) << shape << " " << index;
    EXPECT_NEAR(uv.v, planar(z), 1e-5) << shape << " " << index;
  }
};

TEST_F(GoblinUv, PrintsWhatItFindsAndDoes) {
  open(mesh("tile", ridge(0, 0)) + goblin("g", "\tsetAttr \".t\" -type \"double3\" 1 0.5 1;\n") +
       mesh("rock_collision", triangleShape()) + mesh("hull", triangleShape()) +
       "rename hullShape rock_collisionHull;\n");
  givePlanarUVs("tileShape");
  EXPECT_EQ(run("select -r g; goblin_uv"),
            std::string(kBanner) +
                "Searching for goblins...\n"
                "    Adding gShape\n"
                "Found goblins (1 meshes):\n" +
                listed("gShape", "rock") + "Found UVed geometry (1 meshes):\n" +
                listed("tileShape") + "|tile|tileShape   0   1   2\n");
}

// Each surface's nearest point below a vertex follows from its plane y = a + b x.
TEST_F(GoblinUv, TakesTheUvOfTheNearestPoint) {
  const struct {
    double a, b;
    const char* what;
  } cases[] = {{0, 0, "level"}, {1, 0.25, "rising"}, {2, -0.5, "falling"}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    // The far half falls away from the ridge at x = 0, so that a relief lies below.
    MeshShape tile = ridge(c.a + 4 * c.b, c.a);
    tile.points[0][1] = tile.points[3][1] = c.a - 3;
    open(mesh("tile", tile) + goblin("g", "\tsetAttr \".t\" -type \"double3\" 2 2 1;\n"));
    givePlanarUVs("tileShape");
    run("select -r g; goblin_uv");
    const MFnMesh placed = meshOf("gShape");
    for (int v = 0; v < 3; ++v) {
      MPoint p;
      placed.getPoint(v, p, MSpace::kWorld);
      const double above = p.y - (c.a + c.b * p.x);
      expectPlanar("gShape", v, p.x + c.b * above / (1 + c.b * c.b), p.z);
    }
    MIntArray corners;
    placed.getPolygonVertices(0, corners);
    MObject node = getNodeByName("gShape");
    MItMeshPolygon face(node);
    for (int k = 0; k < 3; ++k) {
      int uv = -1;
      face.getUVIndex(k, uv);
      EXPECT_EQ(uv, corners[k]);
    }
  }
}

TEST_F(GoblinUv, ReadsItsArguments) {
  const std::string scene =
      transformText("Root") + goblin("g", "", "Root") + mesh("tile", ridge(-1, -1)) +
      goblin("h", "\tsetAttr \".t\" -type \"double3\" 0 9 0;\n") + mesh("far", ridge(-2, -2)) +
      mesh("hull", ridge(-0.5, -0.5)) + "rename hullShape collision;\n";
  const struct {
    const char* commands;
    std::string goblins;   // as listed
    std::string geometry;  // likewise
    const char* said;      // somewhere in the output
  } cases[] = {
      {"select -cl; goblin_uv", "g", "tile far", "|tile|tileShape   0   "},
      {"select -cl; goblin_uv h", "h", "tile far", "|tile|tileShape   0   "},
      {"select -cl; goblin_uv none", "", "tile far", "Found goblins (0 meshes):\n"},
      {"select -r h; goblin_uv g", "h", "tile far", "|tile|tileShape   0   "},
      {"select -r h; goblin_uv Root far", "g", "far", "Searching for UVed geometry...\n"},
      {"select -r h; goblin_uv Root hull", "g", "collision", "|hull|collision   0   "},
      {"select -cl; goblin_uv Root g", "g", "", "No geometry found for goblin gShape; skipped.\n"},
      {"select -cl; goblin_uv Root none", "g", "", "Error: no object named none.\n"},
      {"select -cl; goblin_uv -s far", "", "far", "Searching for UVed geometry...\n"},
      {"select -r g h collision; goblin_uv -s tile", "g h", "collision", "|hull|collision   0   "},
      {"select -r far; goblin_uv -s", "", "!   kTransform   \tfar   \t\n",
       "Found UVed geometry (1 meshes):\n"},
      {"select -r g far; goblin_uv -s", "g", "!   kTransform   \tfar   \t\n", "|far   0   "},
  };
  const auto listing = [](const std::string& names, const char* goblinName) {
    if (!names.empty() && names[0] == '!') return names.substr(1);
    std::string lines;
    std::istringstream in(names);
    for (std::string name; in >> name;)
      lines += listed(name == "collision" ? name : name + "Shape", goblinName);
    return lines;
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.commands);
    open(scene);
    for (const char* shape : {"tileShape", "farShape", "collision"}) givePlanarUVs(shape);
    const std::string output = run(c.commands);
    const std::string goblins = listing(c.goblins, "rock");
    const std::string geometry = listing(c.geometry, "");
    EXPECT_NE(output.find(" meshes):\n" + goblins + "Found UVed geometry ("), std::string::npos)
        << output;
    const std::size_t found = output.find("Found UVed geometry (");
    const std::size_t lines = output.find('\n', found) + 1;
    EXPECT_EQ(output.substr(lines, geometry.size()), geometry);
    EXPECT_NE(output.find(c.said), std::string::npos) << output;
  }
}

TEST_F(GoblinUv, LeavesLockedGoblinsAndPrefersTheEarlierOfEqualCandidates) {
  open(mesh("tile", ridge(-1, -1)) + mesh("twin", ridge(-1, -1)) + goblin("g") + goblin("h"));
  for (const char* shape : {"tileShape", "twinShape"}) givePlanarUVs(shape);
  run("addAttr -ln lockUVs -at bool gShape; setAttr gShape.lockUVs 1");
  const std::string output = run("select -r g h; goblin_uv");
  EXPECT_NE(output.find("Goblin gShape locked; skipped.\n|tile|tileShape   0   "),
            std::string::npos)
      << output;
  EXPECT_EQ(meshOf("gShape").numUVs(), 0);
  EXPECT_EQ(meshOf("hShape").numUVs(), 3);
}

TEST_F(GoblinUv, KeepsTheUvOfAVertexThatHasNoneBelow) {
  open(mesh("tile", ridge(-1, -1)) + goblin("g"));
  meshOf("gShape").setUV(0, 0.75F, 0.25F);
  const std::string output = run("select -r g; goblin_uv");
  EXPECT_NE(output.find("getUVAtPoint error: 0\ngetUVAtPoint error: 0\ngetUVAtPoint error: 0\n"),
            std::string::npos)
      << output;
  const float expected[3][2] = {{0.75F, 0.25F}, {0, 0}, {0, 0}};
  for (int v = 0; v < 3; ++v) {
    EXPECT_EQ(uvOf("gShape", v).u, expected[v][0]);
    EXPECT_EQ(uvOf("gShape", v).v, expected[v][1]);
  }
}

}  // namespace
}  // namespace morvane
