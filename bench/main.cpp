#include <benchmark/benchmark.h>

#include <cstdio>
#include <string>

#include "bench/Comparison.h"
#include "bench/LayeredFiles.h"
#include "bench/Report.h"

namespace {

// Takes an option of the form "--name=" out of the arguments; its value, empty when it is not
// there.
std::string takeOption(const std::string& option, int& argc, char** argv) {
  std::string value;
  int kept = 0;
  for (int i = 0; i < argc; ++i) {
    const std::string argument = argv[i];
    if (argument.compare(0, option.size(), option) == 0)
      value = argument.substr(option.size());
    else
      argv[kept++] = argv[i];
  }
  argc = kept;
  return value;
}

}  // namespace

// Options are those of Google Benchmark, and:
//   --report=FILE              writes the table there too, with the machine it is of
//   --replace-data-layer=FILE  does only that, for measurements of whole processes
int main(int argc, char** argv) {
  const std::string report = takeOption("--report=", argc, argv);
  const std::string texture = takeOption("--replace-data-layer=", argc, argv);
  if (!texture.empty()) return bench::replaceDataLayerAlone(texture);
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 2;
  benchmark::RunSpecifiedBenchmarks();
  std::printf("\n%s", bench::table().c_str());
  if (report.empty() || bench::writeReport(report)) return 0;
  std::fprintf(stderr, "cannot write %s\n", report.c_str());
  return 1;
}
