#include <algorithm>

#include "import/PsdTranslator.h"
#include "tests/import/TranslatorFixture.h"

namespace morvane {
namespace {

class TileWriter : public TranslatorFixture {
 protected:
  static std::string banner(const std::string& file) {
    return "Tile exporter (v1.00).  Exporting to " + file + "\n";
  }
  static std::string walk(const std::string& shapes) {
    return "|tile\nPath to shape: |tile\n" + shapes;
  }
};

TEST(PsdTranslator, IdentifiesFilesByTheirSignature) {
  const PsdTranslator translator;
  const MFileObject file;
  const struct {
    const char* bytes;
    short size;
    MPxFileTranslator::MFileKind kind;
  } cases[] = {
      {"8BPS", 4, MPxFileTranslator::kIsMyFileType},
      {"8BPS\0\1", 6, MPxFileTranslator::kIsMyFileType},
      {"8BPS", 3, MPxFileTranslator::kNotMyFileType},
      {"8bps\0\1", 6, MPxFileTranslator::kNotMyFileType},
      {"//Maya", 6, MPxFileTranslator::kNotMyFileType},
      {"", 0, MPxFileTranslator::kNotMyFileType},
      {"8BPS", -1, MPxFileTranslator::kNotMyFileType},
  };
  for (const auto& c : cases)
    EXPECT_EQ(translator.identifyFile(file, c.bytes, c.size), c.kind) << c.bytes << c.size;
  EXPECT_TRUE(translator.haveReadMethod());
  EXPECT_TRUE(translator.haveWriteMethod());
  EXPECT_FALSE(translator.canBeOpened());
  EXPECT_EQ(translator.defaultExtension(), "psd");
}

TEST_F(TileWriter, NamesItsFile) {
  open(tileText("none.psd"));
  run("select -r tile");
  const struct {
    const char* asked;
    const char* written;
  } cases[] = {{"plain", "plain.psd"},         {"upper.PSD", "upper.PSD"}, {"tile.psd", "tile.psd"},
               {"image.tga", "image.tga.psd"}, {".psd", ".psd.psd"},       {"a.b.psd", "a.b.psd"}};
  for (const auto& c : cases) {
    EXPECT_EQ(exportTo(path(c.asked)), banner(path(c.written)) + walk("") + "ok");
    EXPECT_EQ(blobOf(path(c.written)), Blob(8, 0));
  }
}

TEST_F(TileWriter, WritesGoblinsWithTheirNames) {
  open(tileText("none.psd") + goblinText("g1") + transformText("plain", "tile") +
       meshText("plainShape", "plain", triangleShape()));
  run("select -r tile");
  const std::string file = path("out.psd");
  EXPECT_EQ(exportTo(file), banner(file) + walk("g1Shape\nplainShape\n") + "ok");
  const Blob blob = blobOf(file);
  ASSERT_EQ(blob.size(), 8U + 6 * 32 + (12 + 2 + 16) + (12 + 16));
  GoblinGeometryReader reader(blob.data(), blob.size(), GoblinLayout::kNamed);
  std::vector<GoblinPoolVertex> pool;
  std::uint32_t goblins = 0;
  GoblinRecord record;
  ASSERT_TRUE(reader.readPool(pool) && reader.readGoblinCount(goblins) &&
              reader.readGoblin(record));
  EXPECT_EQ(goblins, 2U);
  EXPECT_STREQ(record.name.get(), "g1");
  EXPECT_STREQ(record.textureFileName.get(), "");
  EXPECT_EQ(record.faces[0].indices[0], 2);
  EXPECT_EQ(record.faces[0].indices[2], 0);
  EXPECT_FLOAT_EQ(pool[2].z, 0.625F);  // (1 + 4) / 8
  EXPECT_EQ(pool[2].v, pool[2].z);
  ASSERT_TRUE(reader.readGoblin(record));
  EXPECT_STREQ(record.name.get(), "");
  EXPECT_EQ(record.faces[0].indices[0], 5);
}

TEST_F(TileWriter, RefusesWhatIsNotOneTile) {
  open(tileText("none.psd") + transformText("other"));
  const std::string file = path("out.psd");
  const std::string notOne = banner(file) + "Please select exactly one tile to export.\nfailed";
  run("select -r tile other");
  EXPECT_EQ(exportTo(file), notOne);
  run("select -r tile");
  EXPECT_EQ(attempt("file -force -exportAll -type \"psd\" \"" + file + "\""), notOne);
  run("select -r tileShape");
  EXPECT_EQ(exportTo(file),
            banner(file) + "tileShape (kMesh): only tiles can be exported.\nfailed");
  EXPECT_FALSE(std::filesystem::exists(file));
}

TEST_F(TileWriter, AParentThatIsNoTransformPlacesNothing) {
  open(tileText("none.psd") +
       "createNode joint -n \"joint\" -p \"tile\";\n\tsetAttr \".t\" -type \"double3\" 1 0 0;\n" +
       meshText("jointShape", "joint", triangleShape()));
  run("select -r tile");
  const std::string file = path("out.psd");
  EXPECT_EQ(exportTo(file),
            banner(file) + walk("jointShape\nError: joint is not a transform node.\n") + "ok");
  const Blob blob = blobOf(file);
  std::vector<GoblinPoolVertex> pool;
  ASSERT_TRUE(GoblinGeometryReader(blob.data(), blob.size(), GoblinLayout::kNamed).readPool(pool));
  EXPECT_FLOAT_EQ(pool[0].x, 0.5F);
}

// 2340 triangles of their own three vertices make 8 + 12 + 2340 x 112 = 262100 bytes with an empty
// name; the largest blob has 262138.
TEST_F(TileWriter, TheLimitIsTheLayersSize) {
  MeshShape shape;
  for (int i = 0; i < 2340; ++i) {
    for (int corner = 0; corner < 3; ++corner)
      shape.points.push_back({i * 0.001, corner * 0.1, corner == 1 ? 0.5 : 0.0});
    shape.faces.push_back({3 * i, 3 * i + 1, 3 * i + 2});
  }
  const std::string file = path("out.psd");
  open(tileText("none.psd") + goblinText("g", "", shape));
  run("select -r tile");
  const auto exported = [&](std::size_t nameLength) {
    run("setAttr -type \"string\" gShape.goblinName \"" + std::string(nameLength, 'n') + "\"");
    return exportTo(file);
  };
  EXPECT_EQ(exported(39), banner(file) + walk("gShape\n") +
                              "Error: .psd data layer size limit exceeded!\nfailed");
  EXPECT_FALSE(std::filesystem::exists(file));
  EXPECT_EQ(exported(38), banner(file) + walk("gShape\n") + "ok");
  EXPECT_EQ(blobOf(file).size(), 262138U);
}

TEST_F(TileWriter, RefusesWhatIsNotFinite) {
  const std::string far = "\tsetAttr \".t\" -type \"double3\" 0 0 1e300;\n";
  const std::string file = path("out.psd");
  open(tileText("none.psd") + goblinText("far", far));
  run("select -r tile");
  EXPECT_EQ(exportTo(file), banner(file) +
                                walk("farShape\nError: |tile|far|farShape: vertex 0 is "
                                     "not finite!\n") +
                                "failed");
  open(transformText("tile") + meshText("tileShape", "tile", tileShape()) +
       "\tsetAttr \".vt[3]\" 0 inf 0;\n");
  run("select -r tile");
  EXPECT_EQ(exportTo(file),
            banner(file) + walk("") + "Error: |tile|tileShape: vertex 3 is not finite!\nfailed");
  EXPECT_FALSE(std::filesystem::exists(file));
}

TEST_F(TileWriter, TellsOfTilesWithoutExtentAndFailedSaves) {
  const MeshShape line = {{{0, 0, -4}, {0, 1, 4}, {0, 0, 4}}, {{0, 1, 2}}};
  open(transformText("tile") + meshText("tileShape", "tile", line));
  run("select -r tile");
  const std::string file = path("out.psd");
  EXPECT_EQ(exportTo(file),
            banner(file) + walk("") + "Error: tile has no extent in x or z!\nfailed");

  open(tileText("none.psd"));
  run("select -r tile");
  const std::string folder = path("folder.psd");
  std::filesystem::create_directory(folder);
  EXPECT_EQ(exportTo(folder),
            banner(folder) + walk("") + "Error: couldn't save " + folder + "!\nfailed");
}

}  // namespace
}  // namespace morvane
