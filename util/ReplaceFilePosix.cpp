#ifndef _WIN32

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>
#include <new>
#include <system_error>
#include <utility>

#include "util/FileLock.h"
#include "util/ReplaceFileTarget.h"

namespace morvane {

namespace {

constexpr int kMaxLinks = 40;
constexpr int kMaxNames = 1000;
constexpr std::size_t kMaxWrite = std::size_t{1} << 30;
constexpr std::size_t kNameSize = 64;
constexpr std::size_t kCopySize = std::size_t{1} << 20;
constexpr char kCopySuffix[] = ".morvane-copy";
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

void nameTemporary(char (&name)[kNameSize], unsigned long process, unsigned number) {
  std::snprintf(name, sizeof name, ".morvane-%lx-%x.tmp", process, number);
}

// Whether createTemporary() makes such names.
bool isTemporaryName(const char* name) {
  unsigned long process = 0;
  unsigned number = 0;
  char made[kNameSize];
  if (std::sscanf(name, ".morvane-%lx-%x", &process, &number) != 2) return false;
  nameTemporary(made, process, number);
  return std::strcmp(name, made) == 0;
}

// A rename that fails where the name is taken: at once on file systems that can, else after asking.
int renameToFree(int folder, const char* from, const char* to) {
#ifdef RENAME_NOREPLACE
  const auto rename = [&] { return ::renameat2(folder, from, folder, to, RENAME_NOREPLACE); };
  if (retried(rename) == 0) return 0;
  if (!isUnsupported()) return -1;
#endif
  if (::faccessat(folder, to, F_OK, AT_SYMLINK_NOFOLLOW) == 0) {
    errno = EEXIST;
    return -1;
  }
  return retried([&] { return ::renameat(folder, from, folder, to); });
}

#ifdef RENAME_EXCHANGE
int exchangeNames(int folder, const char* one, const char* other) {
  return retried([&] { return ::renameat2(folder, one, folder, other, RENAME_EXCHANGE); });
}
#endif

bool writeAll(int file, const std::uint8_t* bytes, std::size_t size) {
  while (size != 0) {
    const ssize_t written = retried([&] { return ::write(file, bytes, size); });
    if (written <= 0) return false;
    bytes += written;
    size -= static_cast<std::size_t>(written);
  }
  return true;
}

// From the beginning of both; `to` then ends where `from` does.
bool copyWhole(int from, int to) {
  const std::unique_ptr<std::uint8_t[]> buffer(new (std::nothrow) std::uint8_t[kCopySize]);
  if (!buffer) {
    errno = ENOMEM;
    return false;
  }
  off_t total = 0;
  for (;;) {
    const ssize_t count = retried([&] { return ::read(from, buffer.get(), kCopySize); });
    if (count < 0) return false;
    if (count == 0) break;
    if (!writeAll(to, buffer.get(), static_cast<std::size_t>(count))) return false;
    total += count;
  }
  return retried([&] { return ::ftruncate(to, total); }) == 0 && flushed(to);
}

}  // namespace

FileReplacer::Target::~Target() {
  if (file_ >= 0) ::close(file_);
  if (!temporaryName_.empty()) ::unlinkat(folder_, temporaryName_.c_str(), 0);
  if (target_ >= 0) ::close(target_);
  if (folder_ >= 0) ::close(folder_);
}

std::string FileReplacer::Target::open(const std::string& path, std::uint64_t& otherNames) {
  if (path.empty()) return reasonOf(ENOENT);
  std::string reason = openFolder(path);
  if (reason.empty()) reason = inspectTarget(otherNames);
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
  targetPath_ = path;
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
std::string FileReplacer::Target::inspectTarget(std::uint64_t& otherNames) {
  struct stat status;
  if (::fstatat(folder_, targetName_.c_str(), &status, 0) != 0)
    return errno == ENOENT ? std::string() : lastReason();
  if (S_ISDIR(status.st_mode)) return reasonOf(EISDIR);
  if (!S_ISREG(status.st_mode)) return "not a regular file";
  if ((status.st_mode & 0222) == 0) return reasonOf(EACCES);
  if (::faccessat(folder_, targetName_.c_str(), W_OK, AT_EACCESS) != 0) return lastReason();
  exists_ = true;
  otherNames = settings.inPlace ? 0 : status.st_nlink - 1;
  return rights_.readFrom(targetPath_, status);
}

std::string FileReplacer::Target::createTemporary() {
  static std::atomic<unsigned> counter{0};
  for (int attempt = 0; attempt < kMaxNames; ++attempt) {
    char name[kNameSize];
    nameTemporary(name, static_cast<unsigned long>(::getpid()), counter++);
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

std::string FileReplacer::Target::finishTemporary(FileIdentity& written) {
  if (exists_ && !settings.inPlace) {
    const std::string reason = rights_.giveTo(file_);
    if (!reason.empty()) return reason;
  }
  if (!flushed(file_)) return lastReason();
  const int descriptor = file_;
  file_ = -1;  // whatever close() says, the descriptor is gone
  if (::close(descriptor) != 0 && errno != EINTR) return lastReason();
  written = temporaryIdentity();
  return std::string();
}

// Whoever is about to replace the file holds its lock, so that one who waited for that finds
// another file under the name.
std::string FileReplacer::Target::lockTarget() {
  target_ = retried([&] {
    return ::openat(folder_, targetName_.c_str(),
                    O_WRONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
  });
  if (target_ < 0) return errno == ENOENT ? std::string() : lastReason();
  return lockFile(target_, settings.waitSeconds);
}

std::string FileReplacer::Target::commit(const FileIdentity* expected, FileIdentity& written,
                                         bool& foundAnother) {
  std::string reason = finishTemporary(written);
  if (reason.empty()) reason = lockTarget();
  if (!reason.empty()) return reason;
  if (expected != nullptr) {
    const FileIdentity now = identityAt(targetPath_);
    foundAnother = expected->known ? !isSameFile(*expected, now) : now.known;
    if (foundAnother) return kFoundAnother;
  }
  if (settings.inPlace && target_ >= 0) return writeInPlace(written);
  if (expected == nullptr)
    reason = renameOver();
  else if (expected->known)
    reason = exchange(*expected, written, foundAnother);
  else
    reason = renameToTarget(foundAnother);
  if (!reason.empty()) return reason;
  if (!flushed(folder_))
    return "the new file is there, but its folder is not flushed: " + lastReason();
  return std::string();
}

// The files change names, and what had the target's is looked at before it goes: should others have
// saved between the comparison and here, they get the name back. File systems that cannot exchange
// names leave them that moment.
std::string FileReplacer::Target::exchange(const FileIdentity& expected,
                                           const FileIdentity& written, bool& foundAnother) {
#ifdef RENAME_EXCHANGE
  if (exchangeNames(folder_, temporaryName_.c_str(), targetName_.c_str()) != 0)
    return isUnsupported() ? renameOver() : lastReason();
  foundAnother = !isSameFile(expected, temporaryIdentity());
  if (!foundAnother) return std::string();
  bool isBack = exchangeNames(folder_, temporaryName_.c_str(), targetName_.c_str()) == 0;
  if (isBack && !isSameFile(written, temporaryIdentity()))  // saved again meanwhile
    isBack = exchangeNames(folder_, temporaryName_.c_str(), targetName_.c_str()) == 0;
  if (isBack) return kFoundAnother;
  const std::string reason = lastReason();
  const std::string kept = std::exchange(temporaryName_, std::string());
  return reason + "; " + kept + " has what somebody else wrote meanwhile: give it the file's name";
#else
  static_cast<void>(expected);
  static_cast<void>(written);
  static_cast<void>(foundAnother);
  return renameOver();
#endif
}

FileIdentity FileReplacer::Target::temporaryIdentity() const {
  return identityAt(targetPath_.substr(0, nameStart(targetPath_)) + temporaryName_);
}

std::string FileReplacer::Target::renameOver() {
  const auto rename = [&] {
    return ::renameat(folder_, temporaryName_.c_str(), folder_, targetName_.c_str());
  };
  if (retried(rename) != 0) return lastReason();
  temporaryName_.clear();
  return std::string();
}

std::string FileReplacer::Target::renameToTarget(bool& foundAnother) {
  if (renameToFree(folder_, temporaryName_.c_str(), targetName_.c_str()) != 0) {
    foundAnother = errno == EEXIST;
    return foundAnother ? kFoundAnother : lastReason();
  }
  temporaryName_.clear();
  return std::string();
}

// The new content gets a name that nobody clears away before it is needed no more.
std::string FileReplacer::Target::writeInPlace(FileIdentity& written) {
  const std::string copy = targetName_ + kCopySuffix;
  if (renameToFree(folder_, temporaryName_.c_str(), copy.c_str()) != 0) {
    return errno == EEXIST ? copy +
                                 " is there: what a save in place wanted to write before it was "
                                 "cut off; use it or remove it"
                           : lastReason();
  }
  temporaryName_.clear();
  const int source =
      retried([&] { return ::openat(folder_, copy.c_str(), O_RDONLY | O_NOFOLLOW | O_CLOEXEC); });
  const bool isWritten = flushed(folder_) && source >= 0 && copyWhole(source, target_);
  const std::string reason = isWritten ? std::string() : lastReason();
  if (source >= 0) ::close(source);
  if (!isWritten) return reason + "; the whole new content is in " + copy;
  written = identityAt(targetPath_);
  ::unlinkat(folder_, copy.c_str(), 0);
  return std::string();
}

}  // namespace morvane

#endif  // _WIN32
