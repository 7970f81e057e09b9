#ifndef MORVANE_BENCH_SCRATCH_H_
#define MORVANE_BENCH_SCRATCH_H_

#include <string>

namespace bench {

// A folder of this run's own, removed at exit.
const std::string& scratchFolder();

void writeFile(const std::string& path, const std::string& text);

}  // namespace bench

#endif  // MORVANE_BENCH_SCRATCH_H_
