// Loaded into a program with LD_PRELOAD, lets one of its allocations fail, counted from main().
//
//   MORVANE_STARVE         the number of the one that fails, from 1; "N+": that and all after it
//   MORVANE_STARVE_REPORT  the number of allocations that there were is written to this file at the
//                          end
//
// Without MORVANE_STARVE the program asks for it itself, through starveFrom() and starveNoMore().

#include <dlfcn.h>
#include <fcntl.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <cstring>

extern "C" {
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* block, std::size_t size);
void* __libc_memalign(std::size_t alignment, std::size_t size);
}

namespace {

std::atomic<bool> counts;
std::atomic<long> seen;
long failing = 0;
bool andOn = false;

bool fails() {
  if (!counts) return false;
  const long number = ++seen;
  if (failing == 0 || number < failing || (number > failing && !andOn)) return false;
  errno = ENOMEM;
  return true;
}

void reportCount() {
  counts = false;
  const char* const file = std::getenv("MORVANE_STARVE_REPORT");
  const int out = file != nullptr ? ::open(file, O_WRONLY | O_TRUNC | O_CREAT, 0666) : -1;
  if (out < 0) return;
  char text[32];
  const int length = std::snprintf(text, sizeof text, "%ld\n", seen.load());
  if (::write(out, text, static_cast<std::size_t>(length)) < 0) std::abort();
  ::close(out);
}

int (*realMain)(int, char**, char**) = nullptr;

int countedMain(int argc, char** argv, char** environment) {
  if (const char* const text = std::getenv("MORVANE_STARVE")) {
    failing = std::atol(text);
    andOn = std::strchr(text, '+') != nullptr;
    std::atexit(reportCount);
    counts = true;
  }
  return realMain(argc, argv, environment);
}

using Start = int(int (*)(int, char**, char**), int, char**, void (*)(), void (*)(), void (*)(),
                  void*);

}  // namespace

extern "C" {

// The allocation of that number from here on fails; 0: none does.
void starveFrom(long number) {
  seen = 0;
  failing = number;
  counts = true;
}
// Gives how many there were.
long starveNoMore() {
  counts = false;
  return seen;
}

int __libc_start_main(int (*main)(int, char**, char**), int argc, char** argv, void (*begin)(),
                      void (*end)(), void (*loaderEnd)(), void* stackEnd) {
  realMain = main;
  auto* const next = reinterpret_cast<Start*>(::dlsym(RTLD_NEXT, "__libc_start_main"));
  return next(countedMain, argc, argv, begin, end, loaderEnd, stackEnd);
}

void* malloc(std::size_t size) {
  return fails() ? nullptr : __libc_malloc(size);
}
void* calloc(std::size_t count, std::size_t size) {
  return fails() ? nullptr : __libc_calloc(count, size);
}
void* realloc(void* block, std::size_t size) {
  return fails() ? nullptr : __libc_realloc(block, size);
}
void* aligned_alloc(std::size_t alignment, std::size_t size) {
  return fails() ? nullptr : __libc_memalign(alignment, size);
}
int posix_memalign(void** block, std::size_t alignment, std::size_t size) {
  void* const made = fails() ? nullptr : __libc_memalign(alignment, size);
  if (made == nullptr) return ENOMEM;
  *block = made;
  return 0;
}

}  // extern "C"
