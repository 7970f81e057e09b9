#include "bench/BenchHost.h"

#include <fcntl.h>
#include <malloc.h>
#include <sys/resource.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <fstream>

#include "host/Host.h"

namespace bench {
namespace {

// Standard output goes nowhere while one of these lives.
class Silence {
 public:
  Silence() : kept_(::dup(1)) {
    std::fflush(stdout);
    const int nowhere = ::open("/dev/null", O_WRONLY | O_CLOEXEC);
    ::dup2(nowhere, 1);
    ::close(nowhere);
  }
  ~Silence() {
    std::fflush(stdout);
    ::dup2(kept_, 1);
    ::close(kept_);
  }
  Silence(const Silence&) = delete;
  Silence& operator=(const Silence&) = delete;

 private:
  int kept_;
};

}  // namespace

bool startHost() {
  static const bool started = [] {
    const auto program = std::filesystem::read_symlink("/proc/self/exe");
    host::start(std::filesystem::current_path().string());
    const auto build = program.parent_path().parent_path();
    host::addPlugInFolder((build / "plug-ins").string());
    host::addScriptFolder((build / "scripts").string());
    return host::loadPlugin("morvane");
  }();
  return started;
}

std::string gridText(const std::string& name, const std::string& parent, int side, double size,
                     const std::string& placed, const std::string& extra) {
  const std::string below = parent.empty() ? "" : " -p \"" + parent + "\"";
  const std::string divisions = std::to_string(side);
  const std::string length = std::to_string(size);
  return "createNode transform -n \"" + name + "\"" + below + ";\n" + placed +
         "createNode mesh -n \"" + name + "Shape\" -p \"" + name + "\";\n" + extra +
         "createNode polyPlane -n \"" + name + "Maker\";\n\tsetAttr \".w\" " + length +
         ";\n\tsetAttr \".h\" " + length + ";\n\tsetAttr \".sw\" " + divisions +
         ";\n\tsetAttr \".sh\" " + divisions + ";\nconnectAttr \"" + name + "Maker.out\" \"" +
         name + "Shape.i\";\n";
}

bool runQuietly(const std::string& commands) {
  const Silence silence;
  return host::execute(commands, "benchmark");
}

namespace {

// A line of the system's description of this process, in MiB.
double statusOf(const std::string& name) {
  std::ifstream status("/proc/self/status");
  for (std::string line; std::getline(status, line);)
    if (line.compare(0, name.size(), name) == 0) return std::stod(line.substr(name.size())) / 1024;
  return 0;
}

}  // namespace

// Memory that was given back is not counted, nor the most that there was before.
MemoryUse::MemoryUse() {
  ::malloc_trim(0);
  std::ofstream("/proc/self/clear_refs") << "5";
  start_ = statusOf("VmRSS:");
}

double MemoryUse::held() const {
  return statusOf("VmRSS:") - start_;
}

double MemoryUse::peak() const {
  return statusOf("VmHWM:") - start_;
}

double peakMemory() {
  rusage usage{};
  ::getrusage(RUSAGE_SELF, &usage);
  return static_cast<double>(usage.ru_maxrss) / 1024.0;
}

}  // namespace bench
