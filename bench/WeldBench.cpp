#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdint>

#include "export/TileMesh.h"

// Welding a grid of triangles whose coordinates are integers, all of whose keys meet in one bucket,
// against the same grid with random coordinates.
namespace bench {
namespace {

float randomCoordinate() {
  static std::uint32_t state = 1;
  state = state * 1664525U + 1013904223U;
  return static_cast<float>(state >> 8) / 16777216.0F * 1000.0F;
}

morvane::TileMesh grid(int side, bool integers) {
  morvane::TileMesh mesh;
  const int row = side + 1;
  const auto slack = static_cast<std::uint32_t>(row * row);
  for (int i = 0; i < row * row; ++i) {
    const morvane::Float3 place = {static_cast<float>(i % row), 0, static_cast<float>(i / row)};
    const morvane::Float3 anywhere = {randomCoordinate(), randomCoordinate(), randomCoordinate()};
    mesh.positions.append(integers ? place : anywhere, slack);
  }
  mesh.normals.append({0, 1, 0}, 0);
  mesh.uvs.append({0, 0}, 0);
  mesh.colours.append(0, 0);
  for (int i = 0; i < side * side; ++i) {
    const int a = i / side * row + i % side;
    mesh.triangles.append({{a, a + row, a + 1}, {}, {}, {}, 0, 0}, 2 * slack);
    mesh.triangles.append({{a + 1, a + row, a + row + 1}, {}, {}, {}, 0, 0}, 2 * slack);
  }
  return mesh;
}

void weld(benchmark::State& state, bool integers) {
  const int side = static_cast<int>(std::sqrt(static_cast<double>(state.range(0)) / 6));
  const morvane::TileMesh mesh = grid(side, integers);
  for (auto _ : state) {
    const morvane::WeldedMesh welded = morvane::weldTileMesh(mesh);
    if (welded.vertices.size() != static_cast<std::size_t>(side + 1) * (side + 1))
      state.SkipWithError("another number of vertices than the grid has");
  }
  state.SetItemsProcessed(state.iterations() * 6 * side * side);
}
BENCHMARK_CAPTURE(weld, random, false)
    ->Arg(30000)
    ->Arg(300000)
    ->Arg(3000000)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(weld, integers, true)
    ->Arg(30000)
    ->Arg(300000)
    ->Arg(3000000)
    ->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace bench
