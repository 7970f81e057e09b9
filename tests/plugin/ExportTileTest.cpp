#include <cstring>

#include "geometry/GoblinGeometry.h"
#include "psd/PsdDocument.h"
#include "tests/plugin/HostFixture.h"
#include "tile/TileSearch.h"
#include "util/ByteOrder.h"

namespace morvane {
namespace {

using Floats = std::vector<float>;
using Words = std::vector<std::uint32_t>;

constexpr const char* kExport = "select -r tile; exportTile;";
constexpr const char* kExporting = "Exporting tile |tile...\n";
constexpr const char* kFailed = "*** Error exporting tile 0\n";

// Fields of a tagged blob, by offset.
std::uint32_t word(const Blob& blob, std::size_t i) {
  return loadLe32(blob.data() + 4 * i);
}
Floats vertex(const Blob& blob, std::size_t i) {
  Floats fields;
  for (std::size_t f = 0; f < 8; ++f)
    fields.push_back(loadLeFloat(blob.data() + 8 + 32 * i + 4 * f));
  return fields;
}

class ExportTile : public HostFixture {
 protected:
  static std::string goblinText(const std::string& name, const std::string& attributes = "",
                                const MeshShape& shape = triangleShape()) {
    return transformText(name, "tile", attributes) + meshText(name + "Shape", name, shape);
  }
};

void expectNear(const Floats& actual, const Floats& expected) {
  ASSERT_EQ(actual.size(), expected.size());
  for (std::size_t i = 0; i < actual.size(); ++i) EXPECT_NEAR(actual[i], expected[i], 1e-6) << i;
}

TEST_F(ExportTile, TileWithoutGoblins) {
  const std::string file = writePsd("tile.psd");
  open(tileText("tile.psd"));  // found beside the scene
  EXPECT_EQ(run("select -cl; exportTile;"), "");
  EXPECT_EQ(run(kExport), kExporting);
  EXPECT_EQ(blobOf(file), (Blob{1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}));
  EXPECT_EQ(run(kExport), kExporting);
  PsdDocument document(1, 1);
  ASSERT_TRUE(document.load(file.c_str()));
  EXPECT_EQ(document.layerCount, 2);
  EXPECT_EQ(document.findLayer("GoblinGeometry"), 1);
}

// The tile's box runs from (-2, 0, -4) to (2, 1, 4): scales 0.25, 0.1875, 0.125.
TEST_F(ExportTile, GoblinsAreMappedIntoTileSpace) {
  const std::string file = writePsd("tile.psd");
  open(tileText(file) + goblinText("moved", "\tsetAttr \".t\" -type \"double3\" 1 0 0;\n") +
       goblinText("bare", "", {{{0, 0, 0}}, {}}) + goblinText("second"));
  EXPECT_EQ(run(kExport), kExporting);
  const Blob blob = blobOf(file);
  ASSERT_EQ(blob.size(), 12U + 6 * 32 + 2 * (4 + 16));
  EXPECT_EQ(word(blob, 0), 1U);
  EXPECT_EQ(word(blob, 1), 6U);
  expectNear(vertex(blob, 0), {0.75F, 0, 0.5F, 0, -1, 0, 0.75F, 0.5F});
  expectNear(vertex(blob, 1), {1, 0, 0.5F, 0, -1, 0, 1, 0.5F});
  expectNear(vertex(blob, 2), {0.75F, 0, 0.375F, 0, -1, 0, 0.75F, 0.375F});
  expectNear(vertex(blob, 3), {0.5F, 0, 0.5F, 0, -1, 0, 0.5F, 0.5F});
  Words tail;
  for (std::size_t i = 50; i < 61; ++i) tail.push_back(word(blob, i));
  EXPECT_EQ(tail, (Words{2, 1, 3, 0, 1, 2, 1, 3, 3, 4, 5}));
}

TEST_F(ExportTile, OnlyTheGoblinsOwnParentPlacesIt) {
  const std::string file = writePsd("tile.psd");
  open(tileText(file) +
       transformText("group", "tile", "\tsetAttr \".t\" -type \"double3\" 50 50 50;\n") +
       transformText("nested", "group", "\tsetAttr \".s\" -type \"double3\" 2 2 2;\n") +
       meshText("nestedShape", "nested", triangleShape()) +
       // An instance has two parents, which count as none.
       transformText("a", "tile", "\tsetAttr \".t\" -type \"double3\" 1 0 0;\n") +
       meshText("sharedShape", "a", triangleShape()) + transformText("b", "tile") +
       "parent -s -nc -r -add \"|tile|a|sharedShape\" \"b\";\n");
  EXPECT_EQ(run(kExport), kExporting);
  const Blob blob = blobOf(file);
  EXPECT_EQ(word(blob, 1), 9U);
  expectNear(vertex(blob, 1), {1, 0, 0.5F, 0, -1, 0, 1, 0.5F});
  expectNear(vertex(blob, 3), {0.5F, 0, 0.5F, 0, -1, 0, 0.5F, 0.5F});
  expectNear(vertex(blob, 6), {0.5F, 0, 0.5F, 0, -1, 0, 0.5F, 0.5F});
}

// By more than a hundredth of the tile, which is 4 wide and 8 deep.
TEST_F(ExportTile, WarnsOnceForEachVertexOutside) {
  const MeshShape within = {{{2.02, 9, 4.04}, {-2.02, 9, -4.04}, {0, 0, 0}}, {{0, 1, 2}}};
  const MeshShape over = {{{2.08, 0, 0}, {-2.08, 0, 0}, {0, 0, 4.16}, {0, 0, -4.16}, {9, 0, 9}},
                          {{0, 1, 2, 3, 4}}};
  open(tileText(writePsd("tile.psd")) + goblinText("within", "", within) +
       goblinText("over", "", over));
  std::string expected = kExporting;
  for (int i = 0; i < 5; ++i) expected += "*** Warning : goblin outside of tile boundary\n";
  EXPECT_EQ(run(kExport), expected);
}

TEST_F(ExportTile, WarnsOfAGoblinWithSeveralMaterials) {
  const MeshShape twoFaces = {{{0, 0, 0}, {1, 0, 0}, {0, 0, 1}, {1, 0, 1}}, {{0, 1, 2}, {2, 1, 3}}};
  open(tileText(writePsd("tile.psd")) + materialText("rock", "r.psd") +
       materialText("wood", "w.psd") +
       "createNode shadingEngine -n \"rock2SG\";\nconnectAttr \"rock.oc\" \"rock2SG.ss\";\n"
       "connectAttr \"rock2SG.pa\" \":renderPartition.st\" -na;\n" +
       goblinText("goblin", "", twoFaces));
  const std::string warning = "Warning: more than one material on the goblin!";
  const struct {
    const char* assignment;
    bool warns;
  } cases[] = {
      {"sets -e -forceElement initialShadingGroup goblinShape", false},
      {"sets -e -forceElement rockSG goblinShape", false},
      {"sets -e -forceElement rock2SG goblinShape.f[1]", false},  // the same material
      {"sets -e -forceElement woodSG goblinShape.f[1]", true},
      {"sets -e -forceElement woodSG goblinShape", false},
  };
  for (const auto& c : cases) {
    run(c.assignment);
    EXPECT_EQ(run(kExport), kExporting + (c.warns ? warning : "")) << c.assignment;
  }
}

TEST_F(ExportTile, TgaTexturesBecomeAPsdBesideThem) {
  const std::string tga = writeTga("tile.tga");
  const std::string bytes = read(tga);
  open(tileText(tga) + goblinText("goblin"));
  EXPECT_EQ(run(kExport), kExporting);
  EXPECT_EQ(read(tga), bytes);
  EXPECT_EQ(word(blobOf(path("tile.psd")), 1), 3U);

  const std::string upperCase = writePsd("tile01.PSD");
  open(tileText(upperCase) + goblinText("goblin"));
  EXPECT_EQ(run(kExport), kExporting);
  EXPECT_EQ(word(blobOf(upperCase), 1), 3U);
  EXPECT_FALSE(std::filesystem::exists(path("tile01.psd")));

  const std::string nameless = writePsd(".psd");
  open(tileText(nameless) + goblinText("goblin"));
  EXPECT_EQ(run(kExport), kExporting);
  EXPECT_EQ(word(blobOf(nameless), 1), 3U);
}

TEST_F(ExportTile, RefusesWhatIsNoTile) {
  open(tileText(writePsd("tile.psd")) + transformText("empty"));
  EXPECT_EQ(run("select -r tile tileShape; exportTile;"),
            "Exporting tile |tile...\nExporting tile |tile|tileShape...\n*** Error : No transform\n"
            "*** Error exporting tile 1\n");
  EXPECT_EQ(
      run("select -r -ne grass tile; exportTile;"),
      "*** Error : couldn't get DAG path\n*** Error exporting tile 0\nExporting tile |tile...\n");
  EXPECT_EQ(run("select -r empty; exportTile;"),
            "Exporting tile |empty...\n*** Error : No mesh\n*** Error exporting tile 0\n");
}

TEST_F(ExportTile, RefusesTilesWhoseTextureCannotBeFound) {
  const std::string tile = transformText("tile") + meshText("tileShape", "tile", tileShape());
  const std::string group = "createNode shadingEngine -n \"SG\";\n" + assignText("tileShape", "SG");
  const std::string lambert =
      group + "createNode lambert -n \"mat\";\nconnectAttr \"mat.oc\" \"SG.ss\";\n";
  const struct {
    std::string scene;
    const char* message;
  } cases[] = {
      {tile, "*** Error : Must have only one material attached to base mesh\n"},
      {tile + group + assignText("tileShape", "initialShadingGroup"),
       "*** Error : Must have only one material attached to base mesh\n"},
      {tile + group, "*** Error : No material attached to shader node\n"},
      {tile + lambert, "*** Error : No texture attached to material node\n"},
      {tile + lambert + "createNode ramp -n \"r\";\nconnectAttr \"r.oc\" \"mat.c\";\n",
       "*** Error : Only file textures supported\n"},
      {tileText(path("missing.psd")), "*** Error : couldn't load psd\n"},
      {tileText(write("tile.png", "no image")), "*** Error : couldn't load psd\n"},
      {tileText(write("damaged.psd", "8BPS")), "*** Error : couldn't load psd\n"},
  };
  for (const auto& c : cases) {
    open(c.scene);
    EXPECT_EQ(run(kExport), std::string(kExporting) + c.message + kFailed);
  }
}

TEST_F(ExportTile, AFailedTileLeavesItsFileAlone) {
  const std::string file = writePsd("tile.psd");
  const std::string small = writePsd("small.psd", 4);
  // One grey channel of 32 x 32 pixels.
  const std::string grey =
      write("grey.psd", std::string("8BPS\0\1\0\0\0\0\0\0\0\1\0\0\0\x20\0\0\0\x20\0\x8\0\1", 26) +
                            std::string(4 + 4 + 4 + 2 + 32 * 32, '\0'));
  const std::string tga = writeTga("image.tga");
  std::filesystem::create_directory(path("image.psd"));  // where its goblins would go
  const std::string joint = "createNode joint -n \"joint\" -p \"tile\";\n" +
                            meshText("jointShape", "joint", triangleShape());
  const MeshShape line = {{{0, 0, -4}, {0, 1, 4}, {0, 0, 4}}, {{0, 1, 2}}};
  const struct {
    std::string scene;
    std::string file;
    const char* message;
  } cases[] = {
      {tileText(file) + joint, file, "*** Error : transform weirdness on goblin"},
      {tileText(small) + goblinText("goblin"), small,
       "*** Error : goblin geometry exceeds layer size\n"},
      {tileText(grey) + goblinText("goblin"), grey, "*** Error : couldn't add goblin layer\n"},
      {tileText(tga) + goblinText("goblin"), tga, "*** Error : couldn't save psd\n"},
      {transformText("tile") + meshText("tileShape", "tile", line) + materialText("grass", file) +
           assignText("tileShape", "grassSG"),
       file, "*** Error : tile has no extent in x or z\n"},
  };
  for (const auto& c : cases) {
    const std::string before = read(c.file);
    open(c.scene);
    EXPECT_EQ(run(kExport), std::string(kExporting) + c.message + kFailed);
    EXPECT_EQ(read(c.file), before);
  }
}

// Each is refused before anything is written.
TEST_F(ExportTile, TilesThatWouldLoseSomethingAreRefused) {
  const std::string file = writePsd("tile.psd");
  PsdDocument painted(8, 8);
  ASSERT_EQ(painted.addLayer("sky"), 1);
  ASSERT_TRUE(painted.save(path("pond.psd").c_str()));
  const std::string pond = writeTga("pond.tga");
  PsdDocument bottom(8, 8);
  ASSERT_EQ(bottom.addLayer("top"), 1);
  bottom.removeLayer(0);
  bottom.layers[0].name = copyText("GoblinGeometry");
  bottom.layers[0].extraLength += 12;  // 15 bytes padded to 16, in place of 4
  bottom.layerInfoLength += 12;
  bottom.layerAndMaskLength += 12;
  ASSERT_TRUE(bottom.save(path("bottom.psd").c_str()));
  const MeshShape nothing = {{}, {}};
  const std::string bare = transformText("tile") + meshText("tileShape", "tile", nothing) +
                           materialText("grass", file) + assignText("tileShape", "grassSG");
  const std::string odd = "\tsetAttr \".vt[2]\" nan 0 0;\n";
  const std::string far = "\tsetAttr \".t\" -type \"double3\" 0 0 1e300;\n";
  const std::string quad = tileText(file);
  const struct {
    std::string scene;
    std::string target;
    std::string message;
  } cases[] = {
      {bare, file, "*** Error : tile has no extent in x or z\n"},
      {quad + goblinText("odd") + odd, file,
       "*** Error : |tile|odd|oddShape: vertex 2 is not finite\n"},
      {quad + goblinText("far", far), file,
       "*** Error : |tile|far|farShape: vertex 0 is not finite\n"},
      {quad + goblinText("bent") + "\tsetAttr \".n[0:2]\" -type \"float3\" nan 0 0 0 1 0 0 1 0;\n",
       file, "*** Error : |tile|bent|bentShape: vertex 0 is not finite\n"},
      {transformText("tile") + meshText("tileShape", "tile", tileShape()) +
           "\tsetAttr \".vt[3]\" 0 inf 0;\n" + materialText("grass", file) +
           assignText("tileShape", "grassSG"),
       file, "*** Error : |tile|tileShape: vertex 3 is not finite\n"},
      {tileText(path("bottom.psd")), path("bottom.psd"), "*** Error : couldn't add goblin layer\n"},
      {tileText(pond), path("pond.psd"), "*** Error : couldn't save psd\n"},
      {tileText(writeTga("notes.tga")), write("notes.psd", "no picture"),
       "*** Error : couldn't save psd\n"},
  };
  for (const auto& c : cases) {
    const std::string before = read(c.target);
    open(c.scene);
    EXPECT_EQ(run(kExport), kExporting + c.message + kFailed);
    EXPECT_TRUE(read(c.target) == before) << c.message;
  }
  std::filesystem::remove(path("pond.psd"));
  open(tileText(pond));
  EXPECT_EQ(run(kExport), kExporting);
  EXPECT_EQ(run(kExport), kExporting);  // over what the first export made
}

TEST_F(ExportTile, OlderGoblinsAllGo) {
  PsdDocument document(8, 8);
  for (const char* name : {"GoblinGeometry", "paint", "GoblinGeometry"})
    ASSERT_GT(document.addLayer(name), 0);
  const std::string file = path("tile.psd");
  ASSERT_TRUE(document.save(file.c_str()));
  open(tileText(file));
  EXPECT_EQ(run(kExport), kExporting);
  PsdDocument exported(1, 1);
  ASSERT_TRUE(exported.load(file.c_str()));
  EXPECT_EQ(exported.layerCount, 3);
  EXPECT_EQ(exported.findLayer("paint"), 1);
  EXPECT_EQ(exported.findLayer("GoblinGeometry"), 2);
}

// What meshes are made from stands beside them.
TEST_F(ExportTile, IntermediateMeshesAreNoGoblins) {
  const std::string file = writePsd("tile.psd");
  const std::string hidden = "\tsetAttr \".io\" yes;\n";
  open(transformText("tile") + meshText("original", "tile", triangleShape()) + hidden +
       meshText("tileShape", "tile", tileShape()) + materialText("grass", file) +
       assignText("tileShape", "grassSG") + goblinText("goblin") +
       meshText("goblinOriginal", "goblin", triangleShape()) + hidden);
  EXPECT_EQ(run(kExport), kExporting);
  EXPECT_EQ(word(blobOf(file), 1), 3U);
  EXPECT_EQ(run("select -r tile; goblin_name rock;").find("riginal"), std::string::npos);
}

// A tile's texture is that of its own instance.
TEST_F(ExportTile, InstancesHaveTexturesOfTheirOwn) {
  const std::string first = writePsd("first.psd");
  const std::string second = writePsd("second.psd");
  open(tileText(first) + transformText("twin") +
       "parent -s -nc -r -add \"|tile|tileShape\" \"twin\";\n" + materialText("moss", second) +
       assignText("|twin|tileShape", "mossSG") + goblinText("goblin"));
  std::string textures;
  for (const MDagPath& each : texturedTiles()) textures += textureOfTile(each).file + '\n';
  EXPECT_EQ(textures, first + '\n' + second + '\n');
  EXPECT_EQ(run("select -r twin; exportTile;"), "Exporting tile |twin...\n");
  EXPECT_EQ(blobOf(second).size(), 12U);
  EXPECT_EQ(run(kExport), kExporting);
  EXPECT_EQ(word(blobOf(first), 1), 3U);
  EXPECT_EQ(blobOf(second).size(), 12U);
}

TEST_F(ExportTile, TheSelectedInstanceOfATileIsExported) {
  open(tileText(writePsd("tile.psd")) + transformText("group") +
       "parent -s -nc -r -add \"|tile\" \"group\";\n" +
       assignText("|group|tile|tileShape", "grassSG"));
  EXPECT_EQ(run("select -r \"|group|tile\"; exportTile;"), "Exporting tile |group|tile...\n");
}

TEST_F(ExportTile, ALongPathIsNamedWhole) {
  const std::string name(300, 'a');
  open(transformText(name));
  EXPECT_EQ(run("select -r " + name + "; exportTile;"),
            "Exporting tile |" + name + "...\n*** Error : No mesh\n" + kFailed);
}

// 128 bytes of goblin and 5 more just fit four planes of 34 bytes, not of 33.
TEST_F(ExportTile, ALayerHoldsFourPlanesLessFiveBytes) {
  const std::string file = path("tile.psd");
  for (const std::uint32_t columns : {34U, 33U}) {
    ASSERT_TRUE(PsdDocument(columns, 1).save(file.c_str()));
    open(tileText(file) + goblinText("goblin"));
    EXPECT_EQ(run(kExport) == kExporting, columns == 34);
  }
}

}  // namespace
}  // namespace morvane
