#include <benchmark/benchmark.h>

#include <vector>

#include "bench/BenchHost.h"
#include "geometry/GoblinGeometry.h"
#include "host/Host.h"
#include "psd/PsdDocument.h"

// Goblins out through exportTile and in through the translator: time and memory are to grow with
// the vertices.
namespace bench {
namespace {

constexpr std::uint32_t kTextureSide =
    1536;  // four planes hold 100 000 vertices and their triangles
constexpr int kGoblinSide = 24;
constexpr int kGoblinVertices = (kGoblinSide + 1) * (kGoblinSide + 1);

int goblinCount(const benchmark::State& state) {
  return static_cast<int>(state.range(0)) / kGoblinVertices + 1;
}

std::string texturedTile(const std::string& texture) {
  return "//Maya ASCII 2018 scene\n" + gridText("tile", "", 4, 10, "") +
         "createNode lambert -n \"grass\";\ncreateNode file -n \"picture\";\n\tsetAttr \".ftn\" "
         "-type \"string\" \"" +
         texture +
         "\";\ncreateNode shadingEngine -n \"grassSG\";\n"
         "connectAttr \"picture.oc\" \"grass.c\";\nconnectAttr \"grass.oc\" \"grassSG.ss\";\n"
         "connectAttr \"tileShape.iog\" \"grassSG.dsm\" -na;\n";
}

void exportGoblins(benchmark::State& state) {
  const std::string texture = scratchFolder() + "/tile.psd";
  morvane::PsdDocument(kTextureSide, kTextureSide).save(texture.c_str());
  std::string text = texturedTile(texture);
  const int goblins = goblinCount(state);
  for (int i = 0; i < goblins; ++i)
    text += gridText("goblin" + std::to_string(i), "tile", kGoblinSide, 1, "");
  writeFile(scratchFolder() + "/export.ma", text);
  if (!startHost() || !host::openScene(scratchFolder() + "/export.ma").ok())
    return state.SkipWithError("no host");
  runQuietly("select -r tile");
  for (auto _ : state) runQuietly("exportTile");

  morvane::PsdDocument written(1, 1);
  std::uint32_t size = 0;
  if (!written.load(texture.c_str()) || !written.readDataLayer(morvane::kGoblinLayerName, size) ||
      size < 32U * goblins * kGoblinVertices) {
    state.SkipWithError("not every goblin was exported");
  }
  state.SetItemsProcessed(state.iterations() * goblins * kGoblinVertices);
  state.counters["peak MiB"] = peakMemory();
}
BENCHMARK(exportGoblins)->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);

morvane::WeldedMesh grid() {
  morvane::WeldedMesh mesh;
  for (int i = 0; i < kGoblinVertices; ++i) {
    morvane::VertexKey key;
    key.position = {static_cast<float>(i % (kGoblinSide + 1)), 0,
                    static_cast<float>(i / (kGoblinSide + 1))};
    key.normal = {0, 1, 0};
    mesh.vertices.push_back(key);
  }
  for (int face = 0; face < kGoblinSide * kGoblinSide; ++face) {
    const int first = face / kGoblinSide * (kGoblinSide + 1) + face % kGoblinSide;
    mesh.triangles.push_back({first, first + 1, first + kGoblinSide + 1});
    mesh.triangles.push_back({first + 1, first + kGoblinSide + 2, first + kGoblinSide + 1});
  }
  return mesh;
}

bool writeNamedGoblins(const std::string& file, int goblins) {
  const morvane::WeldedMesh mesh = grid();
  morvane::Matrix44 toTile;
  toTile.setIdentity();
  morvane::GoblinGeometryBuilder builder;
  for (int i = 0; i < goblins; ++i)
    morvane::appendGoblin(mesh, toTile, morvane::GoblinLayout::kNamed, "stone", "", builder);
  std::vector<std::uint8_t> blob(
      morvane::encodedGoblinGeometrySize(builder, morvane::GoblinLayout::kNamed));
  const std::uint32_t size = morvane::encodeGoblinGeometry(builder, morvane::GoblinLayout::kNamed,
                                                           blob.data(), blob.size());
  morvane::PsdDocument document(kTextureSide, kTextureSide);
  return document.addDataLayer(morvane::kGoblinLayerName, size, blob.data()) &&
         document.save(file.c_str());
}

void importGoblins(benchmark::State& state) {
  const std::string scene = scratchFolder() + "/import.ma";
  const std::string file = scratchFolder() + "/goblins.psd";
  const int goblins = goblinCount(state);
  writeFile(scene,
            "//Maya ASCII 2018 scene\n" +
                gridText("tile", "", 4, 10, "", "\taddAttr -ln \"psdFileName\" -dt \"string\";\n"));
  if (!startHost() || !writeNamedGoblins(file, goblins)) return state.SkipWithError("no host");
  for (auto _ : state) {
    state.PauseTiming();
    if (!host::openScene(scene).ok()) std::abort();
    runQuietly("select -r tile");
    state.ResumeTiming();
    if (!runQuietly("file -import -type \"psd\" \"" + file + "\""))
      state.SkipWithError("the import failed");
  }
  state.SetItemsProcessed(state.iterations() * goblins * kGoblinVertices);
  state.counters["peak MiB"] = peakMemory();
}
BENCHMARK(importGoblins)->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace bench
