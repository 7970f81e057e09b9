#include <assimp/cimport.h>
#include <assimp/scene.h>
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include "bench/BenchHost.h"
#include "bench/Comparison.h"
#include "bench/FileBytes.h"
#include "bench/SceneText.h"
#include "host/Host.h"
#include "host/mesh/MeshData.h"
#include "host/scene/Node.h"
#include "host/scene/Scene.h"
#include "tests/file/BinaryTwin.h"

// Opening a scene of a mesh of a million vertices: in Maya ASCII, beside assimp, which opens the
// same mesh from an OBJ file and does nothing more with it; and in Maya Binary, beside the same
// scene in ASCII, and beside what cannot be done without.
namespace bench {
namespace {

constexpr GridMesh kMesh = {999, 100};
constexpr double kTextRate = 100e6;  // bytes a second
constexpr double kBinaryRate = 1e9;
constexpr double kMostMemory = 1.5;  // times what the scene holds

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
  const double allowed = bytes / kTextRate;
  addRow({name, "100 MB/s", "s", time, allowed, bytes, time / allowed, atMost(1)});
}

// --- Maya Binary

// The same scene, or empty when there is no host.
const std::string& binaryFile() {
  static const std::string made = [] {
    const std::string path = scratchFolder() + "/large.mb";
    if (!startHost() || !host::openScene(files().scene).ok()) return std::string();
    writeFile(path, host::twin::sceneFile({}));
    host::newScene();
    return path;
  }();
  return made;
}

void openOrAbort(const std::string& path) {
  if (!host::openScene(path).ok()) std::abort();
}

const host::MeshData* openMesh() {
  for (const auto& [serial, node] : host::Scene::current().nodes())
    if (node->mesh != nullptr && node->mesh->pointCount() == kMesh.vertices())
      return node->mesh.get();
  return nullptr;
}

Comparison openBinary(const char* peerName, const Target& target) {
  Comparison it;
  it.peerName = peerName;
  it.target = target;
  it.rounds = 5;
  it.bytes = static_cast<double>(sizeOf(binaryFile()));
  if (binaryFile().empty()) it.problem = "no host";
  it.ours = [] { openOrAbort(binaryFile()); };
  it.prepare = [] { host::newScene(); };
  return it;
}

Comparison openBothForms() {
  Comparison it = openBinary("the same in ASCII", atLeast(4));
  it.bytes = 0;
  it.peer = [] { openOrAbort(files().scene); };
  return it;
}

Comparison openAndRead() {
  const auto size = static_cast<std::size_t>(sizeOf(binaryFile()));
  Comparison it = openBinary("read the file", atMost(10));
  it.peer = [size, bytes = std::make_shared<std::vector<std::uint8_t>>(size)] {
    if (!readInto(binaryFile(), bytes->data(), size)) std::abort();
  };
  return it;
}

// Beside what is slower: as many bytes at the rate, or a copy of the mesh into tables of its own,
// the vertices of its corners among them, which say whether its faces are whole.
void binaryRate(benchmark::State& state, const std::string& name) {
  const Comparison it = openBinary("", atMost(1));
  if (!it.problem.empty()) return state.SkipWithError(it.problem.c_str());
  double time = 0;
  for (auto _ : state) time = medianTime(it);
  openOrAbort(binaryFile());
  Comparison copy;
  copy.rounds = it.rounds;
  copy.ours = [mesh = openMesh()] { benchmark::DoNotOptimize(mesh->clone().problem().size()); };
  const double allowed = std::max(it.bytes / kBinaryRate, medianTime(copy));
  addRow({name, "1 GB/s, or a copy of the mesh's tables", "s", time, allowed, it.bytes,
          time / allowed, it.target});
}

void binaryMemory(benchmark::State& state, const std::string& name) {
  if (binaryFile().empty()) return state.SkipWithError("no host");
  double peak = 0;
  double held = 0;
  for (auto _ : state) {
    host::newScene();
    const MemoryUse use;
    openOrAbort(binaryFile());
    peak = use.peak();
    held = use.held();
  }
  addRow({name, "1.5 × what the scene holds", "MiB", peak, kMostMemory * held, 0,
          peak / (kMostMemory * held), atMost(1)});
}

using Measure = void (*)(benchmark::State& state, const std::string& name);

void declareMeasure(const std::string& name, Measure measure) {
  benchmark::RegisterBenchmark(name.c_str(),
                               [name, measure](benchmark::State& state) { measure(state, name); })
      ->Iterations(1)
      ->Unit(benchmark::kMillisecond);
}

void declareBinary(const std::string& work) {
  declareMeasure(work + ", rate", binaryRate);
  declareMeasure(work + ", peak memory", binaryMemory);
  declare(work, openBothForms);
  declare(work + ", beside its bytes", openAndRead);
}

const bool declared = [] {
  declareBinary("open the scene of 1 million vertices in Maya Binary");
  const std::string work = "open a scene of 1 million vertices";
  declareMeasure(work + ", rate", sceneRate);
  return declare(work, openScene);
}();

}  // namespace
}  // namespace bench
