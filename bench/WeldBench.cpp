#include <benchmark/benchmark.h>
#include <meshoptimizer.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "bench/Comparison.h"
#include "geometry/TileMesh.h"

// Welding the corners of a grid of triangles into unique vertices.
namespace bench {
namespace {

enum class Mesh {
  kIntegerGrid,  // coordinates whose words end in zeros, so that all keys have the same bucket
  kRandom,       // the same triangles over random positions, in the same order
  kShuffled      // those with triangles and positions in random order
};

constexpr const char* kNames[] = {"integer grid", "random", "shuffled"};
constexpr int kSmall = 30'000;
constexpr int kMiddle = 300'000;
constexpr int kLarge = 3'000'000;

// Columns and rows of quads, with six corners each.
int sideOf(int corners) {
  return static_cast<int>(std::lround(std::sqrt(corners / 6.0)));
}

std::vector<morvane::Float3> placesOf(Mesh kind, int side, std::mt19937& random) {
  std::uniform_real_distribution<float> uniform(0, 1000);
  std::vector<morvane::Float3> places;
  for (int z = 0; z <= side; ++z) {
    for (int x = 0; x <= side; ++x) {
      const morvane::Float3 onGrid = {static_cast<float>(x), 0, static_cast<float>(z)};
      const morvane::Float3 anywhere = {uniform(random), uniform(random), uniform(random)};
      places.push_back(kind == Mesh::kIntegerGrid ? onGrid : anywhere);
    }
  }
  return places;
}

std::vector<std::array<std::int32_t, 3>> trianglesOf(int side) {
  std::vector<std::array<std::int32_t, 3>> triangles;
  for (int z = 0; z < side; ++z) {
    for (int x = 0; x < side; ++x) {
      const int a = z * (side + 1) + x;
      triangles.push_back({a, a + side + 1, a + 1});
      triangles.push_back({a + 1, a + side + 1, a + side + 2});
    }
  }
  return triangles;
}

// The position that each place gets in the table.
std::vector<std::int32_t> numbersOf(std::size_t places, Mesh kind, std::mt19937& random) {
  std::vector<std::int32_t> numbers(places);
  for (std::size_t i = 0; i < places; ++i) numbers[i] = static_cast<std::int32_t>(i);
  if (kind == Mesh::kShuffled) std::shuffle(numbers.begin(), numbers.end(), random);
  return numbers;
}

morvane::TileMesh meshOf(Mesh kind, int corners) {
  std::mt19937 random(7);
  const int side = sideOf(corners);
  const auto places = placesOf(kind, side, random);
  auto triangles = trianglesOf(side);
  if (kind == Mesh::kShuffled) std::shuffle(triangles.begin(), triangles.end(), random);
  const auto numbers = numbersOf(places.size(), kind, random);
  morvane::TileMesh mesh;
  mesh.positions.setCapacity(static_cast<std::uint32_t>(places.size()));
  mesh.triangles.setCapacity(static_cast<std::uint32_t>(triangles.size()));
  for (const auto& place : places) mesh.positions.append(place, 0);
  mesh.normals.append({0, 1, 0}, 0);
  mesh.uvs.append({0, 0}, 0);
  mesh.colours.append(0, 0);
  for (const auto& [a, b, c] : triangles)
    mesh.triangles.append({{numbers[a], numbers[b], numbers[c]}, {}, {}, {}, 0, 0}, 0);
  return mesh;
}

void weld(const morvane::TileMesh& mesh) {
  const morvane::WeldedMesh welded = morvane::weldTileMesh(mesh);
  benchmark::DoNotOptimize(welded.vertices.data());
  benchmark::DoNotOptimize(welded.triangles.data());
}

// What meshoptimizer starts from: each corner's whole vertex.
std::vector<morvane::VertexKey> cornersOf(const morvane::TileMesh& mesh) {
  std::vector<morvane::VertexKey> corners;
  corners.reserve(3U * mesh.triangles.size());
  for (int i = 0; i < mesh.triangles.size(); ++i)
    for (const std::int32_t position : mesh.triangles[i].positions)
      corners.push_back({mesh.positions[position], mesh.normals[0], mesh.uvs[0], {}, 0});
  return corners;
}

struct Remapped {
  std::vector<unsigned> indices;
  std::vector<morvane::VertexKey> vertices;
};

Remapped remap(const std::vector<morvane::VertexKey>& corners) {
  const std::size_t count = corners.size();
  constexpr std::size_t kSize = sizeof(morvane::VertexKey);
  std::vector<unsigned> places(count);
  Remapped result;
  result.vertices.resize(meshopt_generateVertexRemap<unsigned>(places.data(), nullptr, count,
                                                               corners.data(), count, kSize));
  result.indices.resize(count);
  meshopt_remapIndexBuffer<unsigned>(result.indices.data(), nullptr, count, places.data());
  meshopt_remapVertexBuffer(result.vertices.data(), corners.data(), count, kSize, places.data());
  return result;
}

// Both number the unique vertices in the order in which they appear.
bool agree(const morvane::WeldedMesh& ours, const Remapped& theirs) {
  const std::size_t indexBytes = theirs.indices.size() * sizeof(unsigned);
  const std::size_t vertexBytes = theirs.vertices.size() * sizeof(morvane::VertexKey);
  return ours.triangles.size() * 3 == theirs.indices.size() &&
         ours.vertices.size() == theirs.vertices.size() &&
         std::memcmp(ours.triangles.data(), theirs.indices.data(), indexBytes) == 0 &&
         std::memcmp(ours.vertices.data(), theirs.vertices.data(), vertexBytes) == 0;
}

using SharedMesh = std::shared_ptr<const morvane::TileMesh>;
SharedMesh sharedMesh(Mesh kind, int corners) {
  return std::make_shared<const morvane::TileMesh>(meshOf(kind, corners));
}

std::string nameOf(Mesh kind, int corners) {
  return "weld, " + std::string(kNames[static_cast<int>(kind)]) + ", " +
         std::to_string(corners / 1000) + "k corners";
}

bool declareAgainstMeshoptimizer(Mesh kind, int count) {
  return declare(nameOf(kind, count), [kind, count] {
    Comparison it;
    it.peerName = "meshoptimizer";
    it.target = atLeast(2.5);
    const SharedMesh mesh = sharedMesh(kind, count);
    const auto corners = std::make_shared<const std::vector<morvane::VertexKey>>(cornersOf(*mesh));
    it.ours = [mesh] { weld(*mesh); };
    it.peer = [corners] { benchmark::DoNotOptimize(remap(*corners).vertices.data()); };
    if (!agree(morvane::weldTileMesh(*mesh), remap(*corners)))
      it.problem = "the welded meshes differ";
    return it;
  });
}

// One mesh of ours beside another.
struct Input {
  Mesh kind;
  int corners;
};
bool declareAmongOurs(const Input& input, const Input& peer, const std::string& peerName,
                      double limit) {
  return declare(nameOf(input.kind, input.corners) + " beside " + peerName, [=] {
    Comparison it;
    it.peerName = peerName;
    it.target = atMost(limit);
    it.ours = [mesh = sharedMesh(input.kind, input.corners)] { weld(*mesh); };
    it.peer = [mesh = sharedMesh(peer.kind, peer.corners)] { weld(*mesh); };
    return it;
  });
}

const bool declared = [] {
  constexpr Mesh kKinds[] = {Mesh::kIntegerGrid, Mesh::kRandom, Mesh::kShuffled};
  constexpr int kSizes[] = {kLarge, kMiddle, kSmall};
  for (const int size : kSizes)
    for (const Mesh kind : kKinds) declareAgainstMeshoptimizer(kind, size);
  for (const int size : kSizes)
    declareAmongOurs({Mesh::kIntegerGrid, size}, {Mesh::kRandom, size}, "random", 1.15);
  for (const Mesh kind : kKinds)
    declareAmongOurs({kind, kLarge}, {kind, kMiddle}, "300k corners", 13);
  return true;
}();

}  // namespace
}  // namespace bench
