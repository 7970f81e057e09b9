#include <maya/MFnMesh.h>
#include <maya/MItDag.h>
#include <maya/MItMeshPolygon.h>

#include <cmath>

#include "geometry/TileMatrix.h"
#include "tests/import/TranslatorFixture.h"
#include "tile/SceneAttributes.h"
#include "util/ByteOrder.h"

namespace morvane {
namespace {

constexpr const char* kOpening = "---------- Tile importer (v1.00) ----------\nTile: |tile\n";
constexpr const char* kTexture = "Creating texture node...\n";

struct NamedTriangle {
  std::string name;
  std::string texture;
};

// Each goblin is a triangle with the corners (0, 0, 0), (0.5, 0.1875, 0.5), (1, 0, 0.25) of tile
// space.
Blob namedBlob(const std::vector<NamedTriangle>& goblins) {
  GoblinGeometryBuilder builder;
  for (const NamedTriangle& goblin : goblins) {
    WeldedMesh mesh;
    for (const Float3& p : {Float3{0, 0, 0}, Float3{0.5F, 0.1875F, 0.5F}, Float3{1, 0, 0.25F}}) {
      VertexKey key;
      key.position = p;
      key.normal = {0, 0, p.x};  // (0, 0, 0), then twice (0, 0, 1)
      mesh.vertices.push_back(key);
    }
    mesh.triangles = {{0, 1, 2}};
    appendGoblin(mesh, Matrix44(), GoblinLayout::kNamed, goblin.name.c_str(),
                 goblin.texture.c_str(), builder);
  }
  Blob blob(encodedGoblinGeometrySize(builder, GoblinLayout::kNamed));
  encodeGoblinGeometry(builder, GoblinLayout::kNamed, blob.data(), blob.size());
  return blob;
}

std::string created(int points, int faces) {
  return "Create: " + std::to_string(points) + " " + std::to_string(faces) + " \t " +
         MStatus(MStatus::kSuccess).errorString().asChar() + "\n" + kTexture;
}

// The meshes below the tile, its own first.
std::vector<MObject> meshes() {
  std::vector<MObject> found;
  for (MItDag walk(MItDag::kDepthFirst, MFn::kMesh); !walk.isDone(); walk.next()) {
    MDagPath path;
    walk.getPath(path);
    if (path.node().hasFn(MFn::kMesh)) found.push_back(path.node());
  }
  return found;
}

std::string textOf(const MObject& node, const char* attribute) {
  MString value = "(none)";
  MFnDependencyNode(node).findPlug(attribute, true).getValue(value);
  return value.asChar();
}

class TileReader : public TranslatorFixture {
 protected:
  void openBareTile() const {
    open(bareTileText());
    run("select -r tile");
  }
  // The texture node whose colour a shading group has.
  static std::string textureOf(const std::string& group) {
    return ask("listConnections " + ask("listConnections " + group + ".surfaceShader") + ".color");
  }
  static std::string tilesGroup() {
    return ask("listConnections -d 1 -s 0 -type shadingEngine tileShape");
  }
  static std::string count(const std::string& type) {
    return ask("size (`ls -type " + type + "`)");
  }
};

TEST_F(TileReader, RefusesWhatIsNotOneTile) {
  open(bareTileText() + transformText("other"));
  const std::string file = writeBlob("in.psd", namedBlob({{"g1", ""}}));
  const std::string refused =
      "---------- Tile importer (v1.00) ----------\n"
      "Please select exactly one tile to import as a psd.\nfailed";
  run("select -cl");
  EXPECT_EQ(importFrom(file), refused);
  run("select -r tile other");
  EXPECT_EQ(importFrom(file), refused);
  run("select -r tileShape");
  EXPECT_EQ(importFrom(file),
            "---------- Tile importer (v1.00) ----------\n"
            "tileShape (kMesh): only tiles can have psds imported.\nfailed");
  EXPECT_EQ(meshes().size(), 1U);
  EXPECT_EQ(count("shadingEngine"), "2");
}

TEST_F(TileReader, AppliesFilesWithoutGoblins) {
  openBareTile();
  const std::string warning = "Warning: no GoblinGeometry layer found.\nok";
  for (const std::string& file : {writePsd("blank.psd"), writeTga("image.tga")}) {
    run("select -r tile");
    EXPECT_EQ(importFrom(file), std::string(kOpening) + kTexture + warning);
    EXPECT_EQ(textOf(meshes()[0], "psdFileName"), file);
    EXPECT_EQ(ask("getAttr -lock tileShape.psdFileName"), "1");
    const std::string group = tilesGroup();
    EXPECT_EQ(group, ask("listConnections " + group + ".surfaceShader") + "SG");
    const std::string texture = textureOf(group);
    EXPECT_EQ(ask("getAttr " + texture + ".fileTextureName"), file);
    EXPECT_EQ(ask("getAttr " + texture + ".resolution"), "256");
  }
}

TEST_F(TileReader, MakesTheGoblins) {
  openBareTile();
  const std::string file = writeBlob("in.psd", namedBlob({{"g1", "rock.psd"}, {"", "rock.psd"}}));
  EXPECT_EQ(importFrom(file),
            std::string(kOpening) + kTexture + created(3, 1) + created(3, 1) + "ok");
  const std::vector<MObject> found = meshes();
  ASSERT_EQ(found.size(), 3U);
  EXPECT_EQ(textOf(found[1], "goblinName"), "g1");
  EXPECT_EQ(textOf(found[2], "goblinName"), "");
  // The default groups, one for the tile's file and one for both goblins.
  EXPECT_EQ(count("shadingEngine"), "4");
  // The blob holds the corners in reverse: (1, 0, 0.25), (0.5, 0.1875, 0.5), (0, 0, 0) of tile
  // space.
  MFnMesh mesh(found[1]);
  const double points[3][3] = {{2, 0, -2}, {0, 1, 0}, {-2, 0, -4}};
  const double uvs[3][2] = {{1, -0.25}, {0.5, -0.5}, {0, 0}};
  for (int i = 0; i < 3; ++i) {
    MPoint point;
    float u = 9;
    float v = 9;
    mesh.getPoint(i, point);
    mesh.getUV(i, u, v);
    EXPECT_NEAR(point.x, points[i][0], 1e-5);
    EXPECT_NEAR(point.y, points[i][1], 1e-5);
    EXPECT_NEAR(point.z, points[i][2], 1e-5);
    EXPECT_EQ(u, uvs[i][0]);
    EXPECT_EQ(v, uvs[i][1]);
  }
  MFloatVectorArray normals;
  mesh.getNormals(normals);
  MItMeshPolygon polygon(found[1]);
  EXPECT_EQ(normals[polygon.normalIndex(0)], MFloatVector(0, 0, 1));
  EXPECT_EQ(normals[polygon.normalIndex(1)], MFloatVector(0, 0, 1));
}

TEST_F(TileReader, ReusesTheNetworkOfTheSameFile) {
  openBareTile();
  const std::string lower = writePsd("tile.psd");
  const std::string upper = writePsd("TILE.psd");
  const std::pair<std::string, const char*> groupsAfter[] = {
      {lower, "3"}, {lower, "3"}, {upper, "4"}, {lower, "4"}};
  for (const auto& [file, groups] : groupsAfter) {
    run("select -r tile");
    EXPECT_EQ(importFrom(file).back(), 'k');
    EXPECT_EQ(count("shadingEngine"), groups);
    EXPECT_EQ(ask("getAttr " + textureOf(tilesGroup()) + ".fileTextureName"), file);
  }
}

TEST_F(TileReader, TellsWhyNoGoblinsCome) {
  const std::string bare = bareTileText();
  const std::string noAttribute =
      transformText("tile") + meshText("tileShape", "tile", tileShape());
  const std::string line = bareTileText({{{0, 0, -4}, {0, 1, 4}, {0, 0, 4}}, {{0, 1, 2}}});
  const Blob goblin = namedBlob({{"g1", ""}});
  Blob none(4 + 32 + 4, 0);
  none[0] = 1;
  const Blob tagged = {1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0};
  const std::string texture = kTexture;
  const struct {
    std::string scene;
    std::string file;
    std::string said;
  } cases[] = {
      {bare, write("cut.psd", "8BPS"), "failed"},
      {bare, write("in.png", "image"), "failed"},
      {bare, writeBlob("none.psd", none), texture + "ok"},
      {noAttribute, writeBlob("goblin.psd", goblin), texture + "failed"},
      {line, path("goblin.psd"), texture + "Error: tile has no extent in x or z!\nfailed"},
      {bare, writeBlob("1.psd", {}), texture + "Warning: empty GoblinGeometry layer!\nfailed"},
      {bare, writeBlob("2.psd", tagged),
       texture + "Error: GoblinGeometry layer is in the exportTile layout!\nfailed"},
      {bare, writeBlob("3.psd", Blob(8, 0)), texture + "Error: zero vertex size?!?\nfailed"},
      {bare, writeBlob("4.psd", {0, 0, 0, 0x80}), texture + "Error: zero vertex size?!?\nfailed"},
      {bare, writeBlob("5.psd", {1, 0}),
       texture + "Error: corrupt goblin geometry data!  (Processed 0 of 2.)\nfailed"},
      {bare, writeBlob("6.psd", {9, 0, 0, 0}),
       texture + "Error: corrupt goblin geometry data!  (Processed 0 of 4.)\nfailed"},
  };
  for (const auto& c : cases) {
    open(c.scene);
    run("select -r tile");
    EXPECT_EQ(importFrom(c.file), kOpening + c.said);
    EXPECT_EQ(meshes().size(), 1U);
    // A file that cannot be loaded changes nothing.
    const bool loaded = c.said != "failed";
    EXPECT_EQ(count("shadingEngine"), loaded ? "3" : "2");
    EXPECT_TRUE(loaded || textOf(meshes()[0], "psdFileName").empty());
  }
}

TEST_F(TileReader, KeepsGoblinsBeforeTheDamage) {
  const Blob whole = namedBlob({{"g1", ""}, {"g2", ""}});  // 8 + 6 x 32 + 2 x 30 = 260 bytes
  Blob longer = whole;
  longer.resize(264);
  openBareTile();
  EXPECT_EQ(importFrom(writeBlob("in.psd", longer)),
            std::string(kOpening) + kTexture + created(3, 1) + created(3, 1) +
                "Error: corrupt goblin geometry data!  (Processed 260 of 264.)\nok");

  Blob outside = whole;
  storeLe32(outside.data() + 256, 6);  // the last index, one past the pool
  openBareTile();
  EXPECT_EQ(importFrom(writeBlob("in.psd", outside)),
            std::string(kOpening) + kTexture + created(3, 1) +
                "Error: corrupt goblin geometry data!  (Processed 256 of 260.)\nfailed");
  EXPECT_EQ(meshes().size(), 2U);
}

TEST_F(TileReader, TextsOfTheFileAreNeverExecuted) {
  openBareTile();
  std::vector<NamedTriangle> goblins;
  for (const char* text :
       {"\"; createNode transform -n \"trace\"; \"", "`createNode transform -n trace`",
        "a\\\"; createNode transform -n trace; //", "two\nlines;\r\n\t$x",
        "C:\\new\\texture.psd"}) {
    goblins.push_back({text, text});
  }
  EXPECT_EQ(importFrom(writeBlob("in.psd", namedBlob(goblins))).substr(0, 3), "---");
  EXPECT_EQ(ask("objExists trace"), "0");
  const std::vector<MObject> found = meshes();
  ASSERT_EQ(found.size(), 1 + goblins.size());
  for (std::size_t i = 0; i < goblins.size(); ++i) {
    EXPECT_EQ(textOf(found[i + 1], "goblinName"), goblins[i].name);
    const std::string shape = commandName(found[i + 1]).asChar();
    const std::string group = ask("listConnections -s 0 -d 1 -type shadingEngine " + shape);
    const std::string texture = textureOf(group);
    EXPECT_EQ(textOf(getNodeByName(texture.c_str()), "fileTextureName"), goblins[i].texture);
  }
}

TEST_F(TileReader, ATileWithSeveralChildrenIsAddressedItself) {
  open(transformText("tile") + "\taddAttr -ln \"psdFileName\" -dt \"string\";\n" +
       meshText("tileShape", "tile", tileShape()) + transformText("child", "tile"));
  run("select -r tile");
  const std::string file = writeBlob("in.psd", namedBlob({{"g1", ""}}));
  importFrom(file);
  const std::vector<MObject> found = meshes();
  ASSERT_EQ(found.size(), 2U);
  EXPECT_EQ(textOf(getNodeByName("tile"), "psdFileName"), file);
  MPoint point;
  MFnMesh(found[1]).getPoint(0, point);
  EXPECT_NEAR(point.x, 2, 1e-5);  // placed by the box of the mesh
}

}  // namespace
}  // namespace morvane
