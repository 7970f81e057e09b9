#include "bench/Report.h"

#include <fstream>
#include <thread>

#include "bench/Comparison.h"

namespace bench {
namespace {

constexpr const char* kIntroduction =
    "# Performance\n"
    "\n"
    "`scripts/bench` measures, and writes this page. Each line is work of this program beside a\n"
    "peer: what one would use instead, or the part of the work that cannot be avoided, such as\n"
    "reading the file. Both are timed in turns in one process: the peer, ours, the peer again, of\n"
    "which the better counts. The ratio is the median over the rounds. \"≥\": times as fast as "
    "the\n"
    "peer; \"≤\": time (or memory) beside the peer's. Work that waits for the disk or for another\n"
    "process is timed by the clock, all other by the processor time it takes; so a flush counts "
    "in\n"
    "the export lines and not in the import ones. Where there is no peer a limit stands in its\n"
    "column.\n";

// What follows "NAME<blanks>:" on the first such line of a system file.
std::string systemValue(const char* file, const std::string& name) {
  std::ifstream in(file);
  for (std::string line; std::getline(in, line);) {
    const std::size_t colon = line.find(':');
    if (line.compare(0, name.size(), name) != 0 || colon == std::string::npos) continue;
    const std::size_t start = line.find_first_not_of(" \t", colon + 1);
    return start == std::string::npos ? "" : line.substr(start);
  }
  return "unknown";
}

std::string memoryText() {
  const double kilobytes = std::strtod(systemValue("/proc/meminfo", "MemTotal").c_str(), nullptr);
  return std::to_string(static_cast<int>(kilobytes / 1024 / 1024 + 0.5)) + " GiB";
}

std::string compilerText() {
#ifdef __clang__
  return std::string("clang++ ") + __clang_version__;
#else
  return std::string("g++ ") + __VERSION__;
#endif
}

}  // namespace

bool writeReport(const std::string& path) {
  std::ofstream out(path);
  out << kIntroduction << "\nMachine: " << systemValue("/proc/cpuinfo", "model name") << ", "
      << std::thread::hardware_concurrency() << " cores, " << memoryText() << " of memory; "
      << compilerText() << ".\n\n"
      << table();
  return static_cast<bool>(out.flush());
}

}  // namespace bench
