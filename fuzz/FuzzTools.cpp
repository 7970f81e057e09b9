#include "fuzz/FuzzTools.h"

#include <fcntl.h>
#include <sanitizer/allocator_interface.h>
#include <unistd.h>

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace morvane::fuzz {

namespace {

std::atomic<std::int64_t> heldBytes;
std::atomic<std::int64_t> mostHeldBytes;

void onAllocation(const volatile void*, std::size_t size) {
  const std::int64_t held = heldBytes += static_cast<std::int64_t>(size);
  if (held > mostHeldBytes) mostHeldBytes = held;
}

void onFree(const volatile void* block) {
  if (block == nullptr) return;
  const void* const plain = const_cast<const void*>(block);
  heldBytes -= static_cast<std::int64_t>(__sanitizer_get_allocated_size(plain));
}

void installHooks() {
  static const bool installed =
      __sanitizer_install_malloc_and_free_hooks(onAllocation, onFree) != 0;
  require(installed, "no room for the hooks that count memory");
}

}  // namespace

void require(bool holds, const char* what) {
  if (holds) return;
  std::fprintf(stderr, "fuzz: %s\n", what);
  std::abort();
}

MemoryWatch::MemoryWatch() {
  installHooks();
  start_ = heldBytes;
  mostHeldBytes = start_;
}

std::size_t MemoryWatch::peak() const {
  return static_cast<std::size_t>(mostHeldBytes - start_);
}

void MemoryWatch::requireAtMost(std::size_t multiple, std::size_t inputSize,
                                std::size_t constant) const {
  if (peak() <= multiple * inputSize + constant) return;
  std::fprintf(stderr, "fuzz: %zu bytes of input made the program hold %zu bytes\n", inputSize,
               peak());
  std::abort();
}

std::string scratchFolder() {
  static const std::string folder = [] {
    const auto path =
        std::filesystem::temp_directory_path() / ("fuzz-" + std::to_string(::getpid()));
    std::filesystem::create_directories(path);
    return path.string();
  }();
  return folder;
}

std::string scratchPath(const std::string& name) {
  return scratchFolder() + "/" + name;
}

std::string writeScratch(const std::string& name, std::string_view bytes) {
  const std::string path = scratchPath(name);
  const int file = ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
  const bool written =
      file >= 0 && ::write(file, bytes.data(), bytes.size()) == static_cast<ssize_t>(bytes.size());
  require(written && ::close(file) == 0, "the scratch folder cannot be written to");
  return path;
}

std::string readScratch(const std::string& name) {
  std::ifstream in(scratchPath(name), std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

}  // namespace morvane::fuzz
