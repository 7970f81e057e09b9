#include <benchmark/benchmark.h>

#include <cmath>

#include "bench/BenchHost.h"
#include "host/Host.h"

// goblin_uv over a ground of a million triangles, with 49 more candidates around it: the time is to
// grow with the goblins.
namespace bench {
namespace {

constexpr int kGroundSide = 708;  // 2 x 708 x 708 triangles
constexpr double kGroundSize = 100;
constexpr int kOtherCandidates = 49;

std::string placedAt(double x, double y, double z) {
  return "\tsetAttr \".t\" -type \"double3\" " + std::to_string(x) + " " + std::to_string(y) + " " +
         std::to_string(z) + ";\n";
}

// The commands take a goblin's own box as a place in the world, so each goblin's points are where
// it stands.
std::string goblinText(int number, double x, double z) {
  const std::string name = "goblin" + std::to_string(number);
  std::string points;
  for (const auto& corner : {std::pair{0, 0}, std::pair{0, 1}, std::pair{1, 1}, std::pair{1, 0}}) {
    points += " " + std::to_string(x + 0.05 * corner.first) + " 0.5 " +
              std::to_string(z + 0.05 * corner.second);
  }
  return "createNode transform -n \"" + name + "\" -p \"goblins\";\ncreateNode mesh -n \"" + name +
         "Shape\" -p \"" + name + "\";\n\tsetAttr -s 4 \".vt[0:3]\"" + points +
         ";\n\tsetAttr -s 4 \".ed[0:3]\" 0 1 0 1 2 0 2 3 0 3 0 0;\n"
         "\tsetAttr \".fc[0]\" -type \"polyFaces\" f 4 0 1 2 3;\n"
         "\taddAttr -ln \"goblinName\" -dt \"string\";\n"
         "\tsetAttr \".goblinName\" -type \"string\" \"stone\";\n";
}

std::string sceneText(int goblins) {
  std::string text = "//Maya ASCII 2018 scene\n";
  text += gridText("ground", "", kGroundSide, kGroundSize, "");
  for (int i = 0; i < kOtherCandidates; ++i)
    text += gridText("other" + std::to_string(i), "", 10, 5, placedAt(200 + 10 * i, 0, 0));
  text += "createNode transform -n \"goblins\";\n";
  const int rowLength = static_cast<int>(std::ceil(std::sqrt(goblins)));
  for (int i = 0; i < goblins; ++i) {
    const double step = 90.0 / rowLength;
    text += goblinText(i, -45 + step * (i % rowLength), -45 + step * (i / rowLength));
  }
  return text;
}

void sampleGoblins(benchmark::State& state) {
  const std::string scene = scratchFolder() + "/uv.ma";
  writeFile(scene, sceneText(static_cast<int>(state.range(0))));
  if (!startHost() || !host::openScene(scene).ok()) return state.SkipWithError("no host");
  runQuietly("select -r goblins");
  for (auto _ : state)
    if (!runQuietly("goblin_uv")) state.SkipWithError("goblin_uv failed");
  state.SetItemsProcessed(state.iterations() * state.range(0));
  host::newScene();
}
BENCHMARK(sampleGoblins)->Arg(20)->Arg(200)->Arg(2000)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace bench
