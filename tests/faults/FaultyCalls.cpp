// Loaded into a program with LD_PRELOAD, lets chosen system calls fail or kills the program at
// them.
//
//   MORVANE_FAULTS         one or several KIND@N, separated by commas: at the N-th call of those
//   that
//                          the kind is for (from 1). KIND@N+ is that call and all after it but
//                          close and unlink, as when a disk is full.
//   MORVANE_FAULTS_FOLDER  only calls for files below this folder (its real path) count.
//   MORVANE_FAULTS_REPORT  a line "KIND CALL PATH" is added to this file for every fault.
//
// MORVANE_FAULTS_PAINTED  with the kind "paint", two paths separated by a colon: the first is
// renamed to
//                        the second before the call, as a paint program saves.
//
// Kinds: the name of an error (see kErrors) or "kill" for calls that change something, "short" and
// "kill-half" for writes, of which half is then made, and "read" for opening and reading a file.

#include <dlfcn.h>
#include <fcntl.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <string>

namespace {

const struct {
  const char* name;
  int number;
} kErrors[] = {{"ENOSPC", ENOSPC}, {"EIO", EIO},     {"EACCES", EACCES}, {"EINTR", EINTR},
               {"EDQUOT", EDQUOT}, {"EXDEV", EXDEV}, {"read", EIO}};

enum class Call { kChange, kWrite, kRead };
enum class Effect { kNone, kError, kHalf, kHalfThenKill };

struct Fault {
  std::string kind;
  int at = 0;
  bool andOn = false;
  int seen = 0;

  bool befalls(Call call, const std::string& name) {
    const bool halves = kind == "short" || kind == "kill-half";
    if ((kind == "read") != (call == Call::kRead) || (halves && call != Call::kWrite)) return false;
    const bool cleansUp = name == "close" || name.compare(0, 6, "unlink") == 0;
    return ++seen == at || (andOn && seen > at && !cleansUp);
  }
};

struct Faults {
  Fault list[2];
  std::string folder;

  Faults() {
    const char* text = std::getenv("MORVANE_FAULTS");
    const char* const below = std::getenv("MORVANE_FAULTS_FOLDER");
    if (!text || !below) return;
    folder = std::string(below) + '/';
    for (Fault& fault : list) {
      char kind[16];
      int length = 0;
      if (std::sscanf(text, "%15[^@]@%d%n", kind, &fault.at, &length) != 2) return;
      fault.kind = kind;
      text += length;
      fault.andOn = *text == '+';
      while (*text == '+' || *text == ',') ++text;
    }
  }
};

template <typename Function>
Function* next(const char* name, Function*) {
  return reinterpret_cast<Function*>(::dlsym(RTLD_NEXT, name));
}
#define NEXT(name) next(#name, &::name)

void report(const std::string& line) {
  const char* const file = std::getenv("MORVANE_FAULTS_REPORT");
  const int out = NEXT(open)(file ? file : "/dev/stderr", O_WRONLY | O_APPEND | O_CREAT, 0666);
  if (NEXT(write)(out, line.data(), line.size()) < 0) std::abort();
  NEXT(close)(out);
}

void paint() {
  const char* const paths = std::getenv("MORVANE_FAULTS_PAINTED");
  const std::string both = paths != nullptr ? paths : "";
  const std::size_t colon = both.find(':');
  const std::string from = both.substr(0, colon);
  if (colon == both.npos || NEXT(rename)(from.c_str(), both.c_str() + colon + 1) != 0) std::abort();
}

std::string linkText(const std::string& link) {
  char text[4096];
  const ssize_t length = ::readlink(link.c_str(), text, sizeof text);
  return length > 0 ? std::string(text, static_cast<std::size_t>(length)) : std::string();
}
std::string pathOf(int file) {
  return linkText("/proc/self/fd/" + std::to_string(file));
}
std::string pathOf(int folder, const char* name) {
  if (name[0] == '/') return name;
  return (folder == AT_FDCWD ? linkText("/proc/self/cwd") : pathOf(folder)) + '/' + name;
}

// Counts a call and says what becomes of it; sets errno for an error. Does not return from a kill.
Effect effectOn(Call call, const char* name, const std::string& path) {
  static Faults faults;
  const std::string& folder = faults.folder;
  if (folder.empty() || (path + '/').compare(0, folder.size(), folder) != 0) return Effect::kNone;
  Effect effect = Effect::kNone;
  for (Fault& fault : faults.list) {
    if (!fault.befalls(call, name)) continue;
    report(fault.kind + ' ' + name + ' ' + path + '\n');
    if (fault.kind == "kill") ::kill(::getpid(), SIGKILL);
    if (fault.kind == "paint") {
      paint();
      continue;
    }
    effect = fault.kind == "short" ? Effect::kHalf : Effect::kHalfThenKill;
    for (const auto& error : kErrors) {
      if (fault.kind != error.name) continue;
      effect = Effect::kError;
      errno = error.number;
    }
  }
  return effect;
}

template <typename Next, typename... Arguments>
int change(const char* name, const std::string& path, Next call, Arguments... arguments) {
  return effectOn(Call::kChange, name, path) == Effect::kError ? -1 : call(arguments...);
}

}  // namespace

#define ON_FILE(name, parameters, ...)                           \
  int name parameters {                                          \
    return change(#name, pathOf(file), NEXT(name), __VA_ARGS__); \
  }
#define ON_PATH(name, folder, parameters, ...)                           \
  int name parameters {                                                  \
    return change(#name, pathOf(folder, path), NEXT(name), __VA_ARGS__); \
  }
#define OPEN(name, folder, parameters, ...)                                             \
  int name parameters {                                                                 \
    va_list more;                                                                       \
    va_start(more, flags);                                                              \
    const mode_t mode = (flags & O_CREAT) ? va_arg(more, mode_t) : 0;                   \
    va_end(more);                                                                       \
    const bool changes = flags & (O_WRONLY | O_RDWR | O_CREAT | O_TRUNC | O_DIRECTORY); \
    const std::string changed = changes ? pathOf(folder, path) : std::string();         \
    return change(#name, changed, NEXT(name), __VA_ARGS__, mode);                       \
  }

extern "C" {

OPEN(open, AT_FDCWD, (const char* path, int flags, ...), path, flags)
OPEN(openat, folder, (int folder, const char* path, int flags, ...), folder, path, flags)
ON_FILE(ftruncate, (int file, off_t size) noexcept, file, size)
ON_FILE(fsync, (int file), file)
ON_FILE(fdatasync, (int file), file)
ON_FILE(fchmod, (int file, mode_t mode) noexcept, file, mode)
ON_FILE(fchown, (int file, uid_t owner, gid_t group) noexcept, file, owner, group)
ON_PATH(chmod, AT_FDCWD, (const char* path, mode_t mode) noexcept, path, mode)
ON_PATH(unlink, AT_FDCWD, (const char* path) noexcept, path)
ON_PATH(unlinkat, folder, (int folder, const char* path, int flags) noexcept, folder, path, flags)
ON_PATH(mkstemp, AT_FDCWD, (char* path), path)
ON_PATH(rename, AT_FDCWD, (const char* path, const char* to) noexcept, path, to)
ON_PATH(renameat, folder, (int folder, const char* path, int toFolder, const char* to) noexcept,
        folder, path, toFolder, to)

ON_PATH(renameat2, folder,
        (int folder, const char* path, int toFolder, const char* to, unsigned flags) noexcept,
        folder, path, toFolder, to, flags)
ON_FILE(fsetxattr,
        (int file, const char* name, const void* value, std::size_t size, int flags) noexcept, file,
        name, value, size, flags)
ON_FILE(fremovexattr, (int file, const char* name) noexcept, file, name)

ssize_t write(int file, const void* from, std::size_t size) {
  const Effect effect = effectOn(Call::kWrite, "write", pathOf(file));
  if (effect == Effect::kError) return -1;
  const ssize_t written = NEXT(write)(file, from, effect == Effect::kNone ? size : (size + 1) / 2);
  if (effect == Effect::kHalfThenKill) ::kill(::getpid(), SIGKILL);
  return written;
}

// Closes the file whatever it says, as the system does.
int close(int file) {
  const bool fails = effectOn(Call::kChange, "close", pathOf(file)) == Effect::kError;
  const int error = errno;
  const int closed = NEXT(close)(file);
  if (fails) errno = error;
  return fails ? -1 : closed;
}

std::FILE* fopen(const char* path, const char* mode) {
  const bool fails = effectOn(Call::kRead, "fopen", pathOf(AT_FDCWD, path)) == Effect::kError;
  return fails ? nullptr : NEXT(fopen)(path, mode);
}

// After some bytes, puts a file that cannot be read in the place of the one that is being read.
std::size_t fread(void* to, std::size_t size, std::size_t count, std::FILE* file) {
  if (effectOn(Call::kRead, "fread", pathOf(fileno(file))) != Effect::kError)
    return NEXT(fread)(to, size, count, file);
  const std::size_t bytes = size * count;
  const std::size_t got = NEXT(fread)(to, 1, bytes < 1000 ? bytes : 1000, file);
  const int unreadable = NEXT(open)("/proc/self/mem", O_RDONLY);
  ::dup2(unreadable, fileno(file));
  NEXT(close)(unreadable);
  ::lseek(fileno(file), 0, SEEK_SET);
  return (got + NEXT(fread)(static_cast<char*>(to) + got, 1, bytes - got, file)) / size;
}

}  // extern "C"
