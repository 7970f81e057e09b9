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
#include <new>
#include <utility>

#include "util/FileLock.h"
#include "util/ReplaceFileTarget.h"
#include "util/SystemStatus.h"

namespace morvane {

namespace {

constexpr int kMaxLinks = 40;
constexpr int kMaxNames = 1000;
constexpr std::size_t kMaxWrite = std::size_t{1} << 30;
constexpr std::size_t kCopySize = std::size_t{1} << 20;
constexpr char kCopySuffix[] = ".morvane-copy";
constexpr time_t kAbandonedSeconds = 24 * 60 * 60;

Status statusOf(int error) {
  return errnoStatus(error, StatusCode::kCannotWrite);
}
Status lastStatus() {
  return statusOf(errno);
}

Status readOnly() {
  return {StatusCode::kReadOnly, FileReplacer::kReadOnlyReason};
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

// The errors by which a file system says that it cannot do such a thing at all; nothing can be done
// about them.
bool isUnsupported() {
  return errno == EINVAL || errno == ENOTSUP || errno == ENOSYS;
}

bool flushed(int descriptor) {
  return retried([&] { return ::fsync(descriptor); }) == 0 || isUnsupported();
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

Status FileReplacer::Target::open(const std::string& path, std::uint64_t& otherNames) {
  if (path.empty()) return statusOf(ENOENT);
  Status status = openFolder(path);
  if (status.ok()) status = inspectTarget(otherNames);
  if (status.ok()) status = createTemporary();
  if (status.ok()) removeAbandoned();
  return status;
}

// The folder is opened before anything is written, so that a rename can always be flushed.
Status FileReplacer::Target::openFolder(std::string path) {
  std::string text = linkText(path);
  for (int links = 0; !text.empty(); text = linkText(path)) {
    if (++links > kMaxLinks) return statusOf(ELOOP);
    path = text[0] == '/' ? text : path.substr(0, nameStart(path)) + text;
  }
  targetPath_ = path;
  targetName_ = path.substr(nameStart(path));
  if (targetName_.empty()) return statusOf(EISDIR);
  const std::string folder = path.substr(0, nameStart(path));
  folder_ = retried([&] {
    return ::open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  });
  return folder_ >= 0 ? Status() : lastStatus();
}

// A rename needs no permission for the file that it replaces. One that its owner has made read-only
// must not be replaced all the same, so its write permission is asked for here as opening it would;
// for root, who may open anything, a file without any write permission counts as read-only.
Status FileReplacer::Target::inspectTarget(std::uint64_t& otherNames) {
  struct stat status;
  if (::fstatat(folder_, targetName_.c_str(), &status, 0) != 0)
    return errno == ENOENT ? Status() : lastStatus();
  if (S_ISDIR(status.st_mode)) return statusOf(EISDIR);
  if (!S_ISREG(status.st_mode)) return {StatusCode::kNotAFile, "not a regular file"};
  if ((status.st_mode & 0222) == 0) return readOnly();
  if (::faccessat(folder_, targetName_.c_str(), W_OK, AT_EACCESS) != 0)
    return errno == EACCES ? readOnly() : lastStatus();
  exists_ = true;
  otherNames = settings.inPlace ? 0 : status.st_nlink - 1;
  return rights_.readFrom(targetPath_, status);
}

Status FileReplacer::Target::createTemporary() {
  static std::atomic<unsigned> counter{0};
  for (int attempt = 0; attempt < kMaxNames; ++attempt) {
    const std::string name = temporaryName(static_cast<unsigned long>(::getpid()), counter++);
    // Nobody else reads it before it has its permissions.
    const mode_t mode = exists_ ? 0600 : 0666;
    file_ = retried([&] {
      return ::openat(folder_, name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC,
                      mode);
    });
    if (file_ >= 0) {
      temporaryName_ = name;
      return {};
    }
    if (errno != EEXIST) break;
  }
  return lastStatus();
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

Status FileReplacer::Target::write(const std::uint8_t* bytes, std::size_t size,
                                   std::size_t& written) {
  const ssize_t count = retried([&] { return ::write(file_, bytes, std::min(size, kMaxWrite)); });
  if (count <= 0) return count < 0 ? lastStatus() : statusOf(EIO);
  written = static_cast<std::size_t>(count);
  return {};
}

Status FileReplacer::Target::finishTemporary(FileIdentity& written) {
  if (exists_ && !settings.inPlace) {
    const Status given = rights_.giveTo(file_);
    if (!given.ok()) return given;
  }
  if (!flushed(file_)) return lastStatus();
  const int descriptor = file_;
  file_ = -1;  // whatever close() says, the descriptor is gone
  if (::close(descriptor) != 0 && errno != EINTR) return lastStatus();
  written = temporaryIdentity();
  return {};
}

// Whoever is about to replace the file holds its lock, so that one who waited for that finds
// another file under the name.
Status FileReplacer::Target::lockTarget() {
  target_ = retried([&] {
    return ::openat(folder_, targetName_.c_str(),
                    O_WRONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
  });
  if (target_ < 0) return errno == ENOENT ? Status() : lastStatus();
  return lockFile(target_, settings.waitSeconds);
}

Status FileReplacer::Target::commit(const FileIdentity* expected, FileIdentity& written) {
  Status status = finishTemporary(written);
  if (status.ok()) status = lockTarget();
  if (!status.ok()) return status;
  if (expected != nullptr) {
    const FileIdentity now = identityAt(targetPath_);
    if (expected->known ? !isSameFile(*expected, now) : now.known) return foundAnother();
  }
  if (settings.inPlace && target_ >= 0) return writeInPlace(written);
  if (expected == nullptr)
    status = renameOver();
  else if (expected->known)
    status = exchange(*expected, written);
  else
    status = renameToTarget();
  if (!status.ok() || flushed(folder_)) return status;
  status = lastStatus();
  return {status.code(), "the new file is there, but its folder is not flushed: " + status.text()};
}

// The files change names, and what had the target's is looked at before it goes: should others have
// saved between the comparison and here, they get the name back. File systems that cannot exchange
// names leave them that moment.
Status FileReplacer::Target::exchange(const FileIdentity& expected, const FileIdentity& written) {
#ifdef RENAME_EXCHANGE
  if (exchangeNames(folder_, temporaryName_.c_str(), targetName_.c_str()) != 0)
    return isUnsupported() ? renameOver() : lastStatus();
  if (isSameFile(expected, temporaryIdentity())) return {};
  bool isBack = exchangeNames(folder_, temporaryName_.c_str(), targetName_.c_str()) == 0;
  if (isBack && !isSameFile(written, temporaryIdentity()))  // saved again meanwhile
    isBack = exchangeNames(folder_, temporaryName_.c_str(), targetName_.c_str()) == 0;
  if (isBack) return foundAnother();
  const std::string kept = std::exchange(temporaryName_, std::string());
  return {StatusCode::kCannotWrite,
          lastStatus().text() + "; " + kept +
              " has what somebody else wrote meanwhile: give it the file's name"};
#else
  static_cast<void>(expected);
  static_cast<void>(written);
  return renameOver();
#endif
}

FileIdentity FileReplacer::Target::temporaryIdentity() const {
  return identityAt(targetPath_.substr(0, nameStart(targetPath_)) + temporaryName_);
}

Status FileReplacer::Target::renameOver() {
  const auto rename = [&] {
    return ::renameat(folder_, temporaryName_.c_str(), folder_, targetName_.c_str());
  };
  if (retried(rename) != 0) return lastStatus();
  temporaryName_.clear();
  return {};
}

Status FileReplacer::Target::renameToTarget() {
  if (renameToFree(folder_, temporaryName_.c_str(), targetName_.c_str()) != 0)
    return errno == EEXIST ? foundAnother() : lastStatus();
  temporaryName_.clear();
  return {};
}

// The new content gets a name that nobody clears away while it is needed.
Status FileReplacer::Target::writeInPlace(FileIdentity& written) {
  const std::string copy = targetName_ + kCopySuffix;
  if (renameToFree(folder_, temporaryName_.c_str(), copy.c_str()) != 0) {
    if (errno != EEXIST) return lastStatus();
    return {StatusCode::kCannotWrite, copy +
                                          " is there: what a save in place wanted to write before "
                                          "it was cut off; use it or remove it"};
  }
  temporaryName_.clear();
  const int source =
      retried([&] { return ::openat(folder_, copy.c_str(), O_RDONLY | O_NOFOLLOW | O_CLOEXEC); });
  const bool isWritten = flushed(folder_) && source >= 0 && copyWhole(source, target_);
  const Status status = isWritten ? Status() : lastStatus();
  if (source >= 0) ::close(source);
  if (!isWritten) return {status.code(), status.text() + "; the whole new content is in " + copy};
  written = identityAt(targetPath_);
  ::unlinkat(folder_, copy.c_str(), 0);
  return {};
}

}  // namespace morvane

#endif  // _WIN32
