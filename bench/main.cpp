#include <benchmark/benchmark.h>

#include <cstdio>
#include <string>

#include "bench/Comparison.h"
#include "bench/Report.h"

namespace {

// Takes --report=FILE out of the arguments; empty when there is none.
std::string takeReportPath(int& argc, char** argv) {
  const std::string option = "--report=";
  std::string path;
  int kept = 0;
  for (int i = 0; i < argc; ++i) {
    const std::string argument = argv[i];
    if (argument.compare(0, option.size(), option) == 0) {
      path = argument.substr(option.size());
    } else {
      argv[kept++] = argv[i];
    }
  }
  argc = kept;
  return path;
}

}  // namespace

// All options but --report=FILE (write the table there too, with the machine it is of) are Google
// Benchmark's.
int main(int argc, char** argv) {
  const std::string report = takeReportPath(argc, argv);
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 2;
  benchmark::RunSpecifiedBenchmarks();
  std::printf("\n%s", bench::table().c_str());
  if (report.empty() || bench::writeReport(report)) return 0;
  std::fprintf(stderr, "cannot write %s\n", report.c_str());
  return 1;
}
