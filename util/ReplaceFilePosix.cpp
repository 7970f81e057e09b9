#ifndef _WIN32

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstdio>
#include <memory>
#include <system_error>

#include "util/ReplaceFileTarget.h"

namespace morvane {

namespace {

constexpr int kMaxLinks = 40;
constexpr int kMaxNames = 1000;
constexpr std::size_t kMaxWrite = std::size_t{1} << 30;
constexpr char kPrefix[] = ".morvane-";
constexpr char kSuffix[] = ".tmp";
constexpr time_t kAbandonedSeconds = 24 * 60 * 60;

std::string reasonOf(int error) {
  return std::generic_category().message(error);
}
std::string lastReason() {
  return reasonOf(errno);
}

// Repeats a system call that a signal interrupted.
template <typename Call>
auto retried(Call call) -> decltype(call()) {
  auto result = call();
  while (result < 0 && errno == EINTR) result = call();
  return result;
}

// The text of the symbolic link, or an empty one when the name is none.
std::string linkText(const std::string& path) {
  char text[4096];
  const ssize_t length = ::readlink(path.c_str(), text, sizeof text);
  const bool whole = length > 0 && static_cast<std::size_t>(length) < sizeof text;
  return whole ? std::string(text, static_cast<std::size_t>(length)) : std::string();
}

std::size_t nameStart(const std::string& path) {
  const std::size_t slash = path.rfind('/');
  return slash == std::string::npos ? 0 : slash + 1;
}

// What a file system says of something that it cannot do at all, and nothing can be done about.
bool isUnsupported() {
  return errno == EINVAL || errno == ENOTSUP || errno == ENOSYS;
}

bool flushed(int descriptor) {
  return retried([&] { return ::fsync(descriptor); }) == 0 || isUnsupported();
}

bool isTemporaryName(const std::string& name) {
  const std::size_t prefix = sizeof kPrefix - 1;
  const std::size_t suffix = sizeof kSuffix - 1;
  return name.size() > prefix + suffix && name.compare(0, prefix, kPrefix) == 0 &&
         name.compare(name.size() - suffix, suffix, kSuffix) == 0;
}

// Only root may give a file away, and everybody only to a group of their own. Where that is refused
// the file stays the caller's. False for any other failure.
bool giveTo(int file, uid_t owner, gid_t group) {
  const auto given = [&](uid_t to) {
    return retried([&] { return ::fchown(file, to, group); }) == 0;
  };
  if (given(owner)) return true;
  if (errno == EPERM && given(static_cast<uid_t>(-1))) return true;
  return errno == EPERM || isUnsupported();
}

// A file system without permissions refuses to set even those that all its files have.
bool permit(int file, mode_t mode) {
  if (retried([&] { return ::fchmod(file, mode); }) == 0) return true;
  const int reason = errno;
  struct stat status;
  if (::fstat(file, &status) == 0 && (status.st_mode & 0777) == mode) return true;
  errno = reason;
  return false;
}

}  // namespace

FileReplacer::Target::~Target() {
  if (file_ >= 0) ::close(file_);
  if (!temporaryName_.empty()) ::unlinkat(folder_, temporaryName_.c_str(), 0);
  if (folder_ >= 0) ::close(folder_);
}

std::string FileReplacer::Target::open(const std::string& path) {
  if (path.empty()) return reasonOf(ENOENT);
  std::string reason = openFolder(path);
  if (reason.empty()) reason = inspectTarget();
  if (reason.empty()) reason = createTemporary();
  if (reason.empty()) removeAbandoned();
  return reason;
}

// The folder is opened before anything is written, so that a rename can always be flushed.
std::string FileReplacer::Target::openFolder(std::string path) {
  std::string text = linkText(path);
  for (int links = 0; !text.empty(); text = linkText(path)) {
    if (++links > kMaxLinks) return reasonOf(ELOOP);
    path = text[0] == '/' ? text : path.substr(0, nameStart(path)) + text;
  }
  targetName_ = path.substr(nameStart(path));
  if (targetName_.empty()) return reasonOf(EISDIR);
  const std::string folder = path.substr(0, nameStart(path));
  folder_ = retried([&] {
    return ::open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  });
  return folder_ >= 0 ? std::string() : lastReason();
}

// A rename needs no permission for the file that it replaces. One that its owner has made read-only
// must not be replaced all the same, so its write permission is asked for here as opening it would;
// for root, who may open anything, a file without any write permission counts as read-only.
std::string FileReplacer::Target::inspectTarget() {
  struct stat status;
  if (::fstatat(folder_, targetName_.c_str(), &status, 0) != 0) {
    return errno == ENOENT ? std::string() : lastReason();
  }
  if (S_ISDIR(status.st_mode)) return reasonOf(EISDIR);
  if (!S_ISREG(status.st_mode)) return "not a regular file";
  if ((status.st_mode & 0222) == 0) return reasonOf(EACCES);
  if (::faccessat(folder_, targetName_.c_str(), W_OK, AT_EACCESS) != 0) return lastReason();
  exists_ = true;
  mode_ = status.st_mode & 0777;
  owner_ = status.st_uid;
  group_ = status.st_gid;
  return std::string();
}

std::string FileReplacer::Target::createTemporary() {
  static std::atomic<unsigned> counter{0};
  for (int attempt = 0; attempt < kMaxNames; ++attempt) {
    char name[64];
    std::snprintf(name, sizeof name, "%s%lx-%x%s", kPrefix, static_cast<unsigned long>(::getpid()),
                  counter++, kSuffix);
    // Nobody else reads it before it has its permissions.
    const mode_t mode = exists_ ? 0600 : 0666;
    file_ = retried([&] {
      return ::openat(folder_, name, O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, mode);
    });
    if (file_ >= 0) {
      temporaryName_ = name;
      return std::string();
    }
    if (errno != EEXIST) break;
  }
  return lastReason();
}

// Ages are taken from the folder's own clock, which need not be this machine's. Should a file go
// that somebody still writes, then their commit() fails and nothing is lost.
void FileReplacer::Target::removeAbandoned() {
  struct stat own;
  if (::fstat(file_, &own) != 0) return;
  const int listed = ::openat(folder_, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (listed < 0) return;
  DIR* const entries = ::fdopendir(listed);
  if (!entries) {
    ::close(listed);
    return;
  }
  while (const dirent* const entry = ::readdir(entries)) {
    struct stat found;
    if (isTemporaryName(entry->d_name) &&
        ::fstatat(folder_, entry->d_name, &found, AT_SYMLINK_NOFOLLOW) == 0 &&
        S_ISREG(found.st_mode) && own.st_mtime - found.st_mtime > kAbandonedSeconds) {
      ::unlinkat(folder_, entry->d_name, 0);
    }
  }
  ::closedir(entries);
}

std::size_t FileReplacer::Target::write(const std::uint8_t* bytes, std::size_t size,
                                        std::string& reason) {
  const ssize_t written = retried([&] { return ::write(file_, bytes, std::min(size, kMaxWrite)); });
  if (written > 0) return static_cast<std::size_t>(written);
  reason = written < 0 ? lastReason() : reasonOf(EIO);
  return 0;
}

std::string FileReplacer::Target::commit() {
  if (exists_ && (!giveTo(file_, owner_, group_) || !permit(file_, mode_))) return lastReason();
  if (!flushed(file_)) return lastReason();
  const int descriptor = file_;
  file_ = -1;  // whatever close() says, the descriptor is gone
  if (::close(descriptor) != 0 && errno != EINTR) return lastReason();
  const auto rename = [&] {
    return ::renameat(folder_, temporaryName_.c_str(), folder_, targetName_.c_str());
  };
  if (retried(rename) != 0) return lastReason();
  temporaryName_.clear();
  if (!flushed(folder_))
    return "the new file is there, but its folder is not flushed: " + lastReason();
  return std::string();
}

}  // namespace morvane

#endif  // _WIN32
