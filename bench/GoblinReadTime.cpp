#include <malloc.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <vector>

#include "library/Goblins.h"

namespace {

double secondsUsed() {
  return static_cast<double>(std::clock()) / CLOCKS_PER_SEC;
}

}  // namespace

// goblin-read-time FILE ROUNDS: the median processor time, in seconds, of reading the goblins of a
// file and of making a mesh of each.
int main(int argc, char** argv) {
  if (argc != 3) return 2;
  std::vector<double> read;
  std::vector<double> meshes;
  for (int round = std::atoi(argv[2]); round > 0; --round) {
    ::malloc_trim(0);  // so that memory is as fresh as in a new process
    const double start = secondsUsed();
    morvane::GoblinTile tile;
    if (!morvane::GoblinTile::read(argv[1], tile).ok()) return 1;
    const double there = secondsUsed();
    std::size_t triangles = 0;
    for (std::size_t i = 0; i < tile.size(); ++i) triangles += tile.goblin(i).triangles.size();
    if (triangles == 0) return 1;
    read.push_back(there - start);
    meshes.push_back(secondsUsed() - there);
  }
  std::sort(read.begin(), read.end());
  std::sort(meshes.begin(), meshes.end());
  std::printf("%.6f %.6f\n", read[read.size() / 2], meshes[meshes.size() / 2]);
}
