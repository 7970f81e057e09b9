#ifndef _WIN32

#include <fcntl.h>
#include <spawn.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>

#ifdef __APPLE__
#include <mach-o/dyld.h>
#endif

#include "tools/terminal/Platform.h"

extern char** environ;

namespace tools {
namespace {

constexpr int kExtraFile = 3;
constexpr int kAboveStandard = 10;

// What starts this program again, also where its file was replaced meanwhile.
std::string programFile() {
#ifdef __APPLE__
  char name[4096];
  uint32_t size = sizeof name;
  return _NSGetExecutablePath(name, &size) == 0 ? name : "";
#else
  return "/proc/self/exe";
#endif
}

// The copies keep clear of the numbers that the child gives them.
int addFiles(const ChildFiles& files, posix_spawn_file_actions_t& actions, int (&copies)[4]) {
  const int from[] = {files.input, files.output, files.error, files.extra};
  for (int i = 0; i < 4; ++i) {
    copies[i] = fcntl(from[i], F_DUPFD_CLOEXEC, kAboveStandard);
    if (copies[i] < 0) return errno;
    const int failed = posix_spawn_file_actions_adddup2(&actions, copies[i], i);
    if (failed != 0) return failed;
  }
  return 0;
}

int spawn(const std::vector<std::string>& arguments, posix_spawn_file_actions_t& actions,
          pid_t& process) {
  std::vector<std::string> words = {"morvane"};
  words.insert(words.end(), arguments.begin(), arguments.end());
  words.push_back(std::to_string(kExtraFile));
  std::vector<char*> pointers;
  for (std::string& word : words) pointers.push_back(word.data());
  pointers.push_back(nullptr);
  sigset_t blocked;
  sigemptyset(&blocked);
  sigaddset(&blocked, SIGINT);
  posix_spawnattr_t attributes;
  posix_spawnattr_init(&attributes);
  posix_spawnattr_setsigmask(&attributes, &blocked);
  posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGMASK);
  const int failed =
      posix_spawn(&process, programFile().c_str(), &actions, &attributes, pointers.data(), environ);
  posix_spawnattr_destroy(&attributes);
  return failed;
}

}  // namespace

std::vector<std::string> commandLine(int argc, const char* const* argv) {
  return {argv, argv + argc};
}

void prepareStreams() {}

// Its handler blocks the signal, which would wait for the handler's end.
void endByInterrupt(int signal) {
  std::signal(signal, SIG_DFL);
  sigset_t unblocked;
  sigemptyset(&unblocked);
  sigaddset(&unblocked, signal);
  pthread_sigmask(SIG_UNBLOCK, &unblocked, nullptr);
  std::raise(signal);
  std::abort();
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

int openSpool() {
  std::error_code error;
  const auto folder = std::filesystem::temp_directory_path(error);
  std::string name = (error ? std::filesystem::path("/tmp") : folder) / "morvane-XXXXXX";
  const int file = mkstemp(name.data());
  if (file < 0) return file;
  unlink(name.c_str());
  fcntl(file, F_SETFD, FD_CLOEXEC);
  return file;
}

bool rewindFile(int file, bool emptied) {
  return lseek(file, 0, SEEK_SET) == 0 && (!emptied || ftruncate(file, 0) == 0);
}

std::int64_t fileSize(int file) {
  struct stat status;
  return fstat(file, &status) == 0 ? status.st_size : -1;
}

bool startChild(const std::vector<std::string>& arguments, const ChildFiles& files,
                ChildProcess& child, std::string& error) {
  posix_spawn_file_actions_t actions;
  int copies[4] = {-1, -1, -1, -1};
  pid_t process = 0;
  int failed = posix_spawn_file_actions_init(&actions);
  if (failed == 0) {
    failed = addFiles(files, actions, copies);
    if (failed == 0) failed = spawn(arguments, actions, process);
    posix_spawn_file_actions_destroy(&actions);
  }
  for (const int copy : copies)
    if (copy >= 0) close(copy);
  if (failed != 0) error = std::strerror(failed);
  child.id = failed == 0 ? process : 0;
  return failed == 0;
}

int inheritedFile(const std::string& argument) {
  const bool isExtra = argument == std::to_string(kExtraFile);
  return isExtra && fcntl(kExtraFile, F_SETFD, FD_CLOEXEC) == 0 ? kExtraFile : -1;
}

std::string waitForEnd(ChildProcess& child) {
  int status = 0;
  pid_t ended;
  do {
    ended = waitpid(static_cast<pid_t>(child.id), &status, 0);
  } while (ended < 0 && errno == EINTR);
  child.id = 0;
  if (ended < 0) return "ended";
  if (!WIFSIGNALED(status)) return "ended with status " + std::to_string(WEXITSTATUS(status));
  const int signal = WTERMSIG(status);
  return "was ended by signal " + std::to_string(signal) + " (" + strsignal(signal) + ")";
}

}  // namespace tools

#endif
