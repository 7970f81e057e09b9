#ifndef MORVANE_BENCH_LAYEREDFILES_H_
#define MORVANE_BENCH_LAYEREDFILES_H_

#include <cstdint>
#include <string>

#include "bench/Planes.h"

namespace bench {

// A file of side x side pixels in the scratch folder, made once a run, of four layers: a photo,
// flat art twice, and a data layer of 1 MiB, as a tile that was exported before has it.
const std::string& layeredFile(std::uint32_t side);

// What exportTile does with its texture: loads the file, takes the data layer out, adds one of 1
// MiB and saves the file in place. False when it cannot.
bool replaceDataLayer(const std::string& path);

// The same in a process that does nothing else: prints the most memory it held, in KiB. The exit
// status of the program.
int replaceDataLayerAlone(const std::string& path);

// An uncompressed TGA file of side x side pixels of flat art, 24 or 32 bits.
std::string tgaFile(std::uint32_t side, unsigned bits);

}  // namespace bench

#endif  // MORVANE_BENCH_LAYEREDFILES_H_
