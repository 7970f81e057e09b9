#include <benchmark/benchmark.h>

#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "bench/BenchHost.h"
#include "bench/Comparison.h"
#include "bench/FileBytes.h"
#include "bench/LayeredFiles.h"
#include "bench/SceneText.h"
#include "host/Host.h"

// `morvane export` as a process, over a scene of a hundred tiles with textures of 512 x 512 pixels:
// beside opening the scene and replacing the textures by what they are, and with ten times the
// goblins; and over one tile with a crowd of goblins, by how they are shaded.
namespace bench {
namespace {

constexpr int kTiles = 100;
constexpr std::uint32_t kTextureSide = 512;
constexpr int kGoblins = 2000;
constexpr GridMesh kTile = {20, 10};
constexpr GridMesh kGoblin = {8, 0.4};
constexpr GridMesh kSmallGoblin = {1, 0.05};
constexpr int kCrowd = 10000;
constexpr std::uint32_t kCrowdTextureSide = 1024;

struct Level {
  std::string scene;
  std::vector<std::string> textures;
};

std::string materialText(const std::string& name, const std::string& texture) {
  return "createNode lambert -n \"" + name + "Look\";\ncreateNode file -n \"" + name +
         "Picture\";\n\tsetAttr \".ftn\" -type \"string\" \"" + texture +
         "\";\ncreateNode shadingEngine -n \"" + name + "Group\";\n\tsetAttr \".ro\" yes;\n" +
         "connectAttr \"" + name + "Picture.oc\" \"" + name + "Look.c\";\nconnectAttr \"" + name +
         "Look.oc\" \"" + name + "Group.ss\";\nconnectAttr \"" + name + "Shape.iog\" \"" + name +
         "Group.dsm\" -na;\n";
}

std::string tileText(int number, int goblins, const std::string& texture) {
  const std::string name = "tile" + std::to_string(number);
  std::string text = sceneText(kTile, name, "", kTile.size * number, 0);
  for (int i = 0; i < goblins; ++i) {
    const double x = 9.0 * (i % 14) / 14 - 4.5;
    const double z = 9.0 * (i / 14 % 15) / 15 - 4.5;
    text += sceneText(kGoblin, name + "Goblin" + std::to_string(i), name, x, z);
  }
  return text + materialText(name, texture);
}

// The materials' nodes come after the meshes that their connections name.
Level makeLevel(int goblins) {
  const std::string folder = scratchFolder() + "/level" + std::to_string(goblins);
  std::filesystem::create_directory(folder);
  Level level = {folder + "/level.ma", {}};
  std::string text = "//Maya ASCII 2018 scene\n";
  for (int i = 0; i < kTiles; ++i) {
    const std::string texture = "tile" + std::to_string(i) + ".psd";
    level.textures.push_back(folder + "/" + texture);
    std::filesystem::copy_file(layeredFile(kTextureSide), level.textures.back(),
                               std::filesystem::copy_options::overwrite_existing);
    text += tileText(i, goblins / kTiles, texture);
  }
  writeFile(level.scene, text);
  return level;
}

enum class Shading { kDefaultGroup, kOneGroup, kGroupEach };

std::string shadingText(Shading shading, const std::string& goblin) {
  std::string group = shading == Shading::kDefaultGroup ? ":initialShadingGroup" : "crowdGroup";
  std::string text;
  if (shading == Shading::kGroupEach) {
    group = goblin + "Group";
    text = "createNode lambert -n \"" + goblin + "Look\";\ncreateNode shadingEngine -n \"" + group +
           "\";\nconnectAttr \"" + goblin + "Look.oc\" \"" + group + ".ss\";\n";
  }
  return text + "connectAttr \"" + goblin + "Shape.iog\" \"" + group + ".dsm\" -na;\n";
}

// One tile with small goblins in rows.
Level makeCrowd(int goblins, Shading shading) {
  const std::string folder = scratchFolder() + "/crowd" + std::to_string(goblins) + "-" +
                             std::to_string(static_cast<int>(shading));
  std::filesystem::create_directory(folder);
  Level level = {folder + "/level.ma", {folder + "/tile0.psd"}};
  std::filesystem::copy_file(layeredFile(kCrowdTextureSide), level.textures.back(),
                             std::filesystem::copy_options::overwrite_existing);
  std::string text = "//Maya ASCII 2018 scene\n" + tileText(0, 0, "tile0.psd");
  text +=
      "createNode lambert -n \"crowdLook\";\ncreateNode shadingEngine -n \"crowdGroup\";\n"
      "connectAttr \"crowdLook.oc\" \"crowdGroup.ss\";\n";
  for (int i = 0; i < goblins; ++i) {
    const std::string goblin = "goblin" + std::to_string(i);
    text += sceneText(kSmallGoblin, goblin, "tile0", 9.0 * (i % 100) / 100 - 4.5,
                      9.0 * (i / 100 % 100) / 100 - 4.5);
    text += shadingText(shading, goblin);
  }
  writeFile(level.scene, text);
  return level;
}

std::string exportCommand(const Level& level) {
  const auto folder = std::filesystem::read_symlink("/proc/self/exe").parent_path();
  return (folder / "morvane").string() + " export " + level.scene + " >/dev/null";
}

void runOrAbort(const std::string& command) {
  if (std::system(command.c_str()) != 0) std::abort();
}

Comparison besideOpeningAndCopying() {
  const auto level = std::make_shared<const Level>(makeLevel(kGoblins));
  Comparison it;
  it.peerName = "open the scene; read, write, flush and rename its textures";
  it.target = atMost(2);
  it.waits = true;
  it.rounds = 7;
  if (!startHost()) it.problem = "no host";
  runOrAbort(exportCommand(*level));  // the textures have their goblins from now on
  it.ours = [command = exportCommand(*level)] { runOrAbort(command); };
  it.peer = [level] {
    if (!host::openScene(level->scene).ok()) std::abort();
    for (const std::string& texture : level->textures) {
      std::vector<std::uint8_t> bytes(sizeOf(texture));
      if (!readInto(texture, bytes.data(), bytes.size())) std::abort();
      replaceFile(texture, bytes.data(), bytes.size());
    }
  };
  it.prepare = [] { host::newScene(); };
  return it;
}

Comparison besideATenth() {
  Comparison it;
  it.peerName = "2000 goblins";
  it.target = atMost(11);
  it.waits = true;
  it.rounds = 3;
  const Level many = makeLevel(10 * kGoblins);
  const Level few = makeLevel(kGoblins);
  it.ours = [command = exportCommand(many)] { runOrAbort(command); };
  it.peer = [command = exportCommand(few)] { runOrAbort(command); };
  return it;
}

Comparison crowdBesideATenth(Shading shading) {
  Comparison it;
  it.peerName = "1000 goblins";
  it.target = atMost(11);
  it.waits = true;
  it.rounds = 3;
  it.ours = [command = exportCommand(makeCrowd(kCrowd, shading))] { runOrAbort(command); };
  it.peer = [command = exportCommand(makeCrowd(kCrowd / 10, shading))] { runOrAbort(command); };
  return it;
}

const bool declared =
    declare("morvane export, 100 tiles of 512², 2000 goblins", besideOpeningAndCopying) &&
    declare("morvane export, 100 tiles of 512², 20000 goblins", besideATenth) &&
    declare("morvane export, 10000 goblins of one tile, default shading group",
            [] { return crowdBesideATenth(Shading::kDefaultGroup); }) &&
    declare("morvane export, 10000 goblins of one tile, one shading group",
            [] { return crowdBesideATenth(Shading::kOneGroup); }) &&
    declare("morvane export, 10000 goblins of one tile, a shading group each",
            [] { return crowdBesideATenth(Shading::kGroupEach); });

}  // namespace
}  // namespace bench
