#include <assimp/cimport.h>
#include <assimp/scene.h>
#include <benchmark/benchmark.h>

#include <cstdlib>
#include <string>

#include "bench/BenchHost.h"
#include "bench/Comparison.h"
#include "bench/SceneText.h"
#include "host/Host.h"

// Opening a scene of a mesh of a million vertices, beside assimp, which opens the same mesh from an
// OBJ file and does nothing more with it.
namespace bench {
namespace {

constexpr GridMesh kMesh = {999, 100};
constexpr double kBytesPerSecond = 100e6;

struct Files {
  std::string scene;
  std::string obj;
  double sceneBytes;
};

const Files& files() {
  static const Files made = [] {
    const std::string scene = "//Maya ASCII 2018 scene\n" + sceneText(kMesh, "ground", "", 0, 0);
    const Files both = {scratchFolder() + "/large.ma", scratchFolder() + "/large.obj",
                        static_cast<double>(scene.size())};
    writeFile(both.scene, scene);
    writeFile(both.obj, objText(kMesh));
    return both;
  }();
  return made;
}

// False unless the file has all vertices.
bool openWithAssimp(const std::string& path) {
  const aiScene* const scene = aiImportFile(path.c_str(), 0);
  const bool whole = scene && scene->mNumMeshes == 1 &&
                     scene->mMeshes[0]->mNumFaces == static_cast<unsigned>(kMesh.side * kMesh.side);
  aiReleaseImport(scene);
  return whole;
}

Comparison openScene() {
  Comparison it;
  it.peerName = "assimp, OBJ";
  it.target = atLeast(1);
  it.rounds = 5;
  it.ours = [path = files().scene] {
    if (!host::openScene(path).ok()) std::abort();
  };
  it.peer = [path = files().obj] {
    if (!openWithAssimp(path)) std::abort();
  };
  it.prepare = [] { host::newScene(); };
  if (!startHost()) it.problem = "no host";
  return it;
}

void sceneRate(benchmark::State& state, const std::string& name) {
  double time = 0;
  for (auto _ : state) time = medianTime(openScene());
  const double bytes = files().sceneBytes;
  const double allowed = bytes / kBytesPerSecond;
  addRow({name, "100 MB/s", "s", time, allowed, bytes, time / allowed, atMost(1)});
}

const bool declared = [] {
  const std::string work = "open a scene of 1 million vertices";
  const std::string rate = work + ", rate";
  benchmark::RegisterBenchmark(rate.c_str(),
                               [rate](benchmark::State& state) { sceneRate(state, rate); })
      ->Iterations(1)
      ->Unit(benchmark::kMillisecond);
  return declare(work, openScene);
}();

}  // namespace
}  // namespace bench
