#include <maya/MBoundingBox.h>
#include <maya/MColorArray.h>
#include <maya/MFloatVectorArray.h>
#include <maya/MFnDagNode.h>
#include <maya/MFnMesh.h>
#include <maya/MItMeshPolygon.h>
#include <maya/MMatrix.h>
#include <maya/MPointArray.h>

#include <array>
#include <cmath>
#include <numeric>
#include <set>

#include "host/Host.h"
#include "tests/import/TranslatorFixture.h"
#include "tests/util/Corpus.h"
#include "tile/SceneAttributes.h"

// Goblins of real scenes, out through the translator and back in, compared with what the scene says
// of them.
namespace morvane {
namespace {

// A triangle's corner where its goblin's transform puts it in the tile's object space.
struct Corner {
  MPoint position;
  MVector normal;
};

struct Goblin {
  std::string name;
  std::size_t vertices = 0;                      // different corners
  std::vector<std::array<Corner, 3>> triangles;  // polygons cut into fans
};

// The translator writes at most 256 KiB; a vertex takes 48 bytes of it and the rest is triangles.
constexpr std::size_t kMostVertices = (256 << 10) / 48 / 2;

std::string nameOf(MObject mesh) {
  MString name;
  getStringAttr(mesh, "goblinName", name, true);
  return name.asChar();
}

MMatrix parentMatrix(const MFnDagNode& node) {
  if (node.parentCount() != 1 || !node.parent(0).hasFn(MFn::kTransform)) return MMatrix();
  return MFnDagNode(node.parent(0)).transformationMatrix();
}

Goblin measured(MObject node) {
  MFnMesh mesh(node);
  const MMatrix place = parentMatrix(MFnDagNode(node));
  MPointArray points;
  MFloatVectorArray normals;
  MColorArray colours;
  mesh.getPoints(points);
  mesh.getNormals(normals);
  mesh.getVertexColors(colours);
  std::set<std::array<float, 12>> different;
  const auto cornerOf = [&](MItMeshPolygon& face, int c) {
    const int vertex = face.vertexIndex(c);
    const MPoint& p = points[vertex];
    const MFloatVector& n = normals[face.normalIndex(c)];
    const MColor colour = colours.length() > 0 ? colours[vertex] : MColor(0, 0, 0, 0);
    int uv = 0;
    float u = 0;
    float v = 0;
    if (mesh.numUVs() > 0) {
      face.getUVIndex(c, uv);
      mesh.getUV(uv, u, v);
    }
    different.insert({float(p.x), float(p.y), float(p.z), n.x, n.y, n.z, u, v,
                      std::trunc(colour.r * 255), std::trunc(colour.g * 255),
                      std::trunc(colour.b * 255), std::trunc(colour.a * 255)});
    return Corner{p * place, MVector(n.x, n.y, n.z) * place};
  };
  Goblin goblin;
  goblin.name = nameOf(node);
  for (MItMeshPolygon face(node); !face.isDone(); face.next()) {
    std::vector<Corner> corners;
    for (unsigned c = 0; c < face.polygonVertexCount(); ++c)
      corners.push_back(cornerOf(face, static_cast<int>(c)));
    for (std::size_t k = 1; k + 1 < corners.size(); ++k)
      goblin.triangles.push_back({corners[0], corners[k], corners[k + 1]});
  }
  goblin.vertices = different.size();
  return goblin;
}

class RoundTrip : public TranslatorFixture {
 protected:
  static void gather(const MObject& node, std::vector<MObject>& meshes) {
    const MFnDagNode dag(node);
    if (dag.isIntermediateObject()) return;
    if (node.hasFn(MFn::kMesh)) meshes.push_back(node);
    for (unsigned i = 0; i < dag.childCount(); ++i) gather(dag.child(i), meshes);
  }

  // The tile's own mesh, then its goblins.
  static std::vector<MObject> meshesOf(const std::string& tile) {
    std::vector<MObject> meshes;
    gather(getNodeByName(tile.c_str()), meshes);
    return meshes;
  }

  static std::vector<Goblin> measure(const std::string& tile) {
    std::vector<Goblin> goblins;
    const std::vector<MObject> meshes = meshesOf(tile);
    for (std::size_t i = 1; i < meshes.size(); ++i) {
      Goblin goblin = measured(meshes[i]);
      if (!goblin.triangles.empty()) goblins.push_back(std::move(goblin));
    }
    return goblins;
  }

  // `bare` makes the tile stand without goblins.
  void goesOutAndComesBack(const std::string& tile, const std::function<void()>& bare) {
    const std::vector<Goblin> sent = measure(tile);
    ASSERT_FALSE(sent.empty());
    run("select -r " + tile);
    const std::string file = path(tile + ".psd");
    const std::string said = exportTo(file);
    ASSERT_EQ(said.substr(said.size() - 2), "ok") << said;
    bare();
    run("addAttr -ln psdFileName -dt \"string\" `listRelatives -s " + tile + "`; select -r " +
        tile);
    const std::string heard = importFrom(file);
    ASSERT_EQ(heard.substr(heard.size() - 2), "ok") << heard;
    EXPECT_EQ(heard.find("Error"), std::string::npos) << heard;

    const std::vector<MObject> received = meshesOf(tile);
    ASSERT_EQ(received.size(), sent.size() + 1);
    for (std::size_t i = 0; i < sent.size(); ++i) {
      SCOPED_TRACE(i);
      compare(sent[i], received[i + 1], MFnDagNode(received[0]).boundingBox());
    }
  }

  static void compare(const Goblin& sent, MObject received, const MBoundingBox& box) {
    EXPECT_EQ(nameOf(received), sent.name);
    MFnMesh mesh(received);
    EXPECT_EQ(mesh.numVertices(), static_cast<int>(sent.vertices));
    ASSERT_EQ(mesh.numPolygons(), static_cast<int>(sent.triangles.size()));

    const double width = box.width();
    const double depth = box.depth();
    const double far = 1e-5 * std::max(width, depth);
    MFloatVectorArray normals;
    mesh.getNormals(normals);
    double farthest = 0;
    double turned = 0;
    double shifted = 0;
    for (MItMeshPolygon face(received); !face.isDone(); face.next()) {
      for (int c = 0; c < 3; ++c) {
        const Corner& expected = sent.triangles[face.index()][2 - c];
        MPoint p;
        mesh.getPoint(face.vertexIndex(c), p);
        farthest = std::max(farthest, p.distanceTo(expected.position));
        const MFloatVector& n = normals[face.normalIndex(c)];
        const MVector unit = expected.normal.normal();
        if (unit.length() > 0) {  // a face without an area has no direction to keep
          turned = std::max(
              {turned, std::fabs(n.x - unit.x), std::fabs(n.y - unit.y), std::fabs(n.z - unit.z)});
        }
        int id = -1;
        float u = 0;
        float v = 0;
        face.getUVIndex(c, id);
        mesh.getUV(id, u, v);
        shifted = std::max({shifted, std::fabs(u - (expected.position.x - box.min().x) / width),
                            std::fabs(-v - (expected.position.z - box.min().z) / depth)});
      }
    }
    EXPECT_LE(farthest, far);
    EXPECT_LE(shifted, 1e-5);
    if (std::fabs(width - depth) <= 1e-6 * width) EXPECT_LE(turned, 1e-5);
  }
};

TEST_F(RoundTrip, OfTheMeadow) {
  for (const char* tile : {"hillTile", "pathTile", "pondTile", "fieldTile"}) {
    SCOPED_TRACE(tile);
    ASSERT_TRUE(host::openScene(MORVANE_SOURCE_DIR "/examples/meadow/meadow.ma").ok());
    goesOutAndComesBack(
        tile, [&] { run("delete `listRelatives -f -type transform " + std::string(tile) + "`"); });
  }
}

TEST_F(RoundTrip, OfMeshesOfOtherPrograms) {
  const auto paths = corpusScenes();
  if (paths.empty()) GTEST_SKIP() << "no corpus of real files";
  const std::string ground =
      "polyCreateFacet -ch off -n ground -p -20 0 -20 -p -20 0 20 -p 20 0 20 -p 20 0 -20;";
  int scenes = 0;
  for (const auto& scene : paths) {
    SCOPED_TRACE(scene.filename());
    ASSERT_TRUE(host::openScene(scene.string()).ok());
    run("string $m[] = `ls -type mesh`; string $t[];"
        "for ($one in $m) { string $p[] = `listRelatives -f -p $one`; $t[size($t)] = $p[0]; }" +
        ground +
        "select -r $t; goblin_name \"of another program\";"
        "for ($one in $t) { if (`objExists $one`) parent $one ground; }");
    const std::vector<Goblin> goblins = measure("ground");
    const std::size_t vertices = std::accumulate(
        goblins.begin(), goblins.end(), std::size_t{0},
        [](std::size_t sum, const Goblin& goblin) { return sum + goblin.vertices; });
    if (goblins.empty() || vertices > kMostVertices) continue;
    ++scenes;
    goesOutAndComesBack("ground", [&] {
      host::newScene();
      run(ground);
    });
  }
  EXPECT_GE(scenes, 5);
}

}  // namespace
}  // namespace morvane
