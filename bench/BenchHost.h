#ifndef MORVANE_BENCH_BENCHHOST_H_
#define MORVANE_BENCH_BENCHHOST_H_

#include <string>

#include "bench/Scratch.h"

// What benchmarks inside the stand-in host share.
namespace bench {

// Starts the host and loads the plug-in from beside the program, once. False when it cannot.
bool startHost();

// Scene-file statements of a grid of `side` x `side` quads, `size` units long, that a plane
// primitive makes. `extra` follows the shape's node.
std::string gridText(const std::string& name, const std::string& parent, int side, double size,
                     const std::string& placed, const std::string& extra = "");

// Runs commands with what they print thrown away; false when one fails.
bool runQuietly(const std::string& commands);

// The most memory that the process has held so far, in MiB.
double peakMemory();

// What the process holds since this was made, in MiB over what it held then.
class MemoryUse {
 public:
  MemoryUse();
  double held() const;
  double peak() const;

 private:
  double start_;
};

}  // namespace bench

#endif  // MORVANE_BENCH_BENCHHOST_H_
