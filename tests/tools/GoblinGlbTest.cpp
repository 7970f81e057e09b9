#include "tools/model/GoblinGlb.h"

#include <cstdlib>
#include <limits>
#include <nlohmann/json.hpp>

#include "tests/tools/Triangles.h"
#include "tests/util/ScratchFolder.h"
#include "util/ByteOrder.h"

namespace tools {
namespace {

using morvane::GoblinBlobKind;
using Json = nlohmann::json;
using GoblinGlb = morvane::ScratchFolder;

std::string glbOf(const Goblins& goblins, const Picture* picture = nullptr) {
  std::string glb;
  std::string fault;
  EXPECT_TRUE(writeGlb(goblinMeshes(goblins), picture, glb, fault)) << fault;
  return glb;
}

const std::uint8_t* bytesAt(const std::string& glb, std::size_t offset) {
  return reinterpret_cast<const std::uint8_t*>(glb.data()) + offset;
}

Json jsonOf(const std::string& glb) {
  return Json::parse(glb.substr(20, morvane::loadLe32(bytesAt(glb, 12))), nullptr, false);
}

// The numbers of one attribute of a mesh, all in a row.
std::vector<float> attribute(const std::string& glb, std::size_t mesh, const char* name) {
  const Json json = jsonOf(glb);
  const Json accessor =
      json["accessors"][json["meshes"][mesh]["primitives"][0]["attributes"][name].get<int>()];
  const std::size_t width = accessor["type"] == "VEC3" ? 3 : 2;
  const std::size_t start =
      28 + morvane::loadLe32(bytesAt(glb, 12)) + accessor.value("byteOffset", 0u);
  std::vector<float> numbers;
  for (std::size_t i = 0; i < accessor["count"].get<std::size_t>() * width; ++i)
    numbers.push_back(morvane::loadLeFloat(bytesAt(glb, start + i / width * 32 + i % width * 4)));
  return numbers;
}

// The triangle's corners are (0.25, 0.5, 0.25), (0.25, 0.5, 0.75), (0.75, 0.5, 0.75); the picture's
// first row, where v is 0, lies along z = 0.
TEST_F(GoblinGlb, BothLayoutsGiveTheSameMeshInTheFormatsOwnDirections) {
  for (const auto kind : {GoblinBlobKind::kTagged, GoblinBlobKind::kNamed}) {
    const std::string file = glbOf(triangle(kind, {"a"}));
    EXPECT_EQ(attribute(file, 1, "POSITION"),
              (std::vector<float>{.25f, .5f, .25f, .25f, .5f, .75f, .75f, .5f, .75f}));
    EXPECT_EQ(attribute(file, 1, "NORMAL"), (std::vector<float>{0, 1, 0, 0, 1, 0, 0, 1, 0}));
    EXPECT_EQ(attribute(file, 1, "TEXCOORD_0"),
              (std::vector<float>{.25f, .25f, .25f, .75f, .75f, .75f}));
    EXPECT_EQ(attribute(file, 0, "POSITION"),
              (std::vector<float>{0, 0, 0, 0, 0, 1, 1, 0, 1, 1, 0, 0}));
    EXPECT_EQ(attribute(file, 0, "TEXCOORD_0"), (std::vector<float>{0, 0, 0, 1, 1, 1, 1, 0}));
  }
}

// Every odd case in one file each, judged by the format's own validator.
TEST_F(GoblinGlb, IsValidWhateverTheGoblinsAre) {
  const float nan = std::numeric_limits<float>::quiet_NaN();
  const float infinity = std::numeric_limits<float>::infinity();
  const float most = std::numeric_limits<float>::max();
  Goblins odd =
      triangle(GoblinBlobKind::kNamed, {"n", "i", "zero", "\xFF\xFE", "a\"\\\n\x01", "huge"});
  odd.pool[0].x = nan;
  odd.pool[4].y = -infinity;
  odd.pool[6].ny = 0;
  odd.pool[7].nx = nan;
  odd.pool[8].u = infinity;
  odd.pool[9] = {.1f, .1f, .1f, 0, 1e-30f, 0, most, -most};
  odd.pool[15] = {most, -most, most, most, most, most, 0, 0};
  odd.goblins[3].faces.push_back({9, 9, 9});
  odd.goblins[3].faces.push_back({9, 10, 11, 12, 13});
  odd.goblins[3].faces.push_back({9});
  EXPECT_EQ(goblinMeshes(odd).dropped, 2u);
  Picture clear{3, 2, std::vector<std::uint8_t>(24, 77), true, false};
  Picture plain{1, 1, {1, 2, 3, 255}, false, false};
  Goblins none;
  none.present = true;
  const std::string files[] = {glbOf(odd), glbOf(odd, &clear), glbOf(none, &plain),
                               glbOf(triangle(GoblinBlobKind::kTagged, {"", ""}), &plain)};
  EXPECT_EQ(jsonOf(files[1])["nodes"].size(), 7u);
  EXPECT_EQ(jsonOf(files[1])["nodes"][4]["name"], "\u00FF\u00FE");
  EXPECT_EQ(jsonOf(files[3])["nodes"][2]["name"], "goblin 2");

  const std::string judge = MORVANE_SOURCE_DIR "/tests/view";
  if (std::system("command -v node >/dev/null") != 0 ||
      !std::filesystem::exists(judge + "/node_modules/gltf-validator"))
    GTEST_SKIP() << "install Node.js and run npm ci in tests/view first";
  std::string expected;
  for (const std::string& file : files) {
    const std::string name = std::to_string(&file - files) + ".glb";
    write(name, file);
    expected += name + ": 0 errors, 0 warnings\n";
  }
  const std::string judging = "node " + judge + "/validate-glb.mjs *.glb >judged";
  EXPECT_EQ(std::system(("cd " + folder_.string() + " && " + judging).c_str()), 0);
  EXPECT_EQ(read(path("judged")), expected);
}

}  // namespace
}  // namespace tools
