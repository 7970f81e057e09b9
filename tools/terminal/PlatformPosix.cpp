#ifndef _WIN32

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>

#ifdef __APPLE__
#include <mach-o/dyld.h>
#endif

#include "tools/terminal/Platform.h"

namespace tools {

std::vector<std::string> commandLine(int argc, const char* const* argv) {
  return {argv, argv + argc};
}

void prepareStreams() {}

void endByInterrupt(int signal) {
  std::signal(signal, SIG_DFL);
  std::raise(signal);
  std::abort();
}

std::string programFolder() {
  std::error_code error;
#ifdef __APPLE__
  char name[4096];
  uint32_t size = sizeof name;
  if (_NSGetExecutablePath(name, &size) != 0) return "";
  const auto program = std::filesystem::canonical(name, error);
#else
  const auto program = std::filesystem::read_symlink("/proc/self/exe", error);
#endif
  return error ? "" : program.parent_path().string();
}

void setEnvironment(const char* name, const std::string& value) {
  ::setenv(name, value.c_str(), 1);
}

void letWritesFail() {
  std::signal(SIGPIPE, SIG_IGN);
  std::signal(SIGXFSZ, SIG_IGN);
}

void flushUnlessBusy() {
  if (ftrylockfile(stdout) != 0) return;
  std::fflush(stdout);
  funlockfile(stdout);
}

bool standardErrorIsTerminal() {
  return isatty(STDERR_FILENO) == 1;
}

bool openPipe(int (&ends)[2]) {
  if (pipe(ends) != 0) return false;
  for (const int end : ends) fcntl(end, F_SETFD, FD_CLOEXEC);
  return true;
}

int duplicate(int file) {
  return fcntl(file, F_DUPFD_CLOEXEC, 0);
}

bool redirect(int from, int to) {
  return dup2(to, from) >= 0;
}

std::ptrdiff_t readSome(int file, char* bytes, std::size_t size) {
  ssize_t count;
  do {
    count = read(file, bytes, size);
  } while (count < 0 && errno == EINTR);
  return count;
}

bool writeAll(int file, const char* bytes, std::size_t size) {
  while (size > 0) {
    const ssize_t count = write(file, bytes, size);
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) return false;
    bytes += count;
    size -= static_cast<std::size_t>(count);
  }
  return true;
}

void closeFile(int file) {
  close(file);
}

}  // namespace tools

#endif
