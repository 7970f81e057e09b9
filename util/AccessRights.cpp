#include "util/AccessRights.h"

#ifndef _WIN32

#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <system_error>

#include "util/ByteOrder.h"

#ifdef __linux__
#include <sys/xattr.h>
#endif

#include "util/SystemStatus.h"

namespace morvane {

namespace {

Status lastStatus(const char* what) {
  const Status reason = errnoStatus(errno, StatusCode::kCannotWrite);
  return {reason.code(), std::string(what) + ": " + reason.text()};
}

// What a file system says of something that it does not have.
bool isUnsupported() {
  return errno == EINVAL || errno == ENOTSUP || errno == ENOSYS;
}

// Repeats a system call that a signal interrupted.
template <typename Call>
bool succeeds(Call call) {
  int result = call();
  while (result < 0 && errno == EINTR) result = call();
  return result == 0;
}

// Only root may give a file away, and others may pass it only to a group of their own. Where that
// is refused the file stays the caller's. False for any other failure.
bool give(int file, uid_t owner, gid_t group) {
  const auto given = [&](uid_t to) { return succeeds([&] { return ::fchown(file, to, group); }); };
  if (given(owner)) return true;
  if (errno == EPERM && given(static_cast<uid_t>(-1))) return true;
  return errno == EPERM || isUnsupported();
}

// A file system without permissions refuses every change of them, even to those that the file has.
bool setMode(int file, mode_t mode) {
  if (succeeds([&] { return ::fchmod(file, mode); })) return true;
  const int reason = errno;
  struct stat status;
  if (::fstat(file, &status) == 0 && (status.st_mode & 0777) == mode) return true;
  errno = reason;
  return false;
}

// When the group changes, the new group may do no more than others might before; and the others,
// who now include the old group, may do no more than that group might.
mode_t withoutGroup(mode_t mode) {
  const mode_t both = mode >> 3 & mode & 0007;
  return (mode & 0700) | both << 3 | both;
}

#ifdef __linux__

constexpr char kAccessList[] = "system.posix_acl_access";
constexpr std::size_t kMaxAttribute =
    64 * 1024;  // the system's limit for a value and for the names

// The system's form of an access list: a version of 4 bytes, then entries of a tag and permissions
// of 2 bytes each and an identifier of 4, little-endian.
constexpr std::size_t kVersionSize = 4;
constexpr std::size_t kEntrySize = 8;
constexpr std::uint16_t kOwningGroup = 0x04;
constexpr std::uint16_t kMask = 0x10;
constexpr std::uint16_t kOthers = 0x20;
constexpr std::uint16_t kHighestTag = kOthers;

// False, with errno, when the file has none of that name.
bool readAttribute(const std::string& path, const char* name, std::string& value) {
  value.resize(kMaxAttribute);
  const ssize_t size = ::getxattr(path.c_str(), name, &value[0], value.size());
  value.resize(size > 0 ? static_cast<std::size_t>(size) : 0);
  return size >= 0;
}

// As withoutGroup() does with a mode.
std::string listWithoutGroup(std::string list) {
  auto* const bytes = reinterpret_cast<std::uint8_t*>(&list[0]);
  std::uint8_t* found[kHighestTag + 1] = {};
  for (std::size_t at = kVersionSize; list.size() - at >= kEntrySize; at += kEntrySize) {
    const std::uint16_t tag = loadLe16(bytes + at);
    if (tag <= kHighestTag) found[tag] = bytes + at + 2;
  }
  std::uint8_t* const group = found[kOwningGroup];
  std::uint8_t* const others = found[kOthers];
  if (group != nullptr && others != nullptr) {
    const std::uint8_t mask = found[kMask] != nullptr ? *found[kMask] : 0x07;
    *others &= *group & mask;
    *group &= *others;
  }
  return list;
}

bool dropList(int file) {
  return succeeds([&] { return ::fremovexattr(file, kAccessList); }) || errno == ENODATA ||
         isUnsupported();
}

#endif

}  // namespace

Status AccessRights::readFrom(const std::string& path, const struct stat& status) {
  mode_ = status.st_mode & 0777;
  owner_ = status.st_uid;
  group_ = status.st_gid;
  return readAttributes(path);
}

Status AccessRights::giveTo(int file) const {
#ifdef __linux__
  for (const auto& [name, value] : attributes_)
    if (::fsetxattr(file, name.c_str(), value.data(), value.size(), 0) != 0 && !isUnsupported())
      return lastStatus("its extended attributes cannot be kept");
#endif
  if (!give(file, owner_, group_)) return lastStatus("its owner cannot be kept");
  struct stat status;
  if (::fstat(file, &status) != 0) return lastStatus("its group cannot be kept");
  return permit(file, status.st_gid == group_);
}

#ifdef __linux__

Status AccessRights::readAttributes(const std::string& path) {
  if (!readAttribute(path, kAccessList, accessList_) && errno != ENODATA && !isUnsupported())
    return lastStatus("its access list cannot be read");
  if (accessList_.size() < kVersionSize) accessList_.clear();
  std::string names(kMaxAttribute, '\0');
  const ssize_t size = ::listxattr(path.c_str(), &names[0], names.size());
  names.resize(size > 0 ? static_cast<std::size_t>(size) : 0);
  for (std::size_t at = 0; at < names.size();) {
    const std::string name = names.c_str() + at;
    at += name.size() + 1;
    std::string value;
    if (name.compare(0, 5, "user.") == 0 && readAttribute(path, name.c_str(), value))
      attributes_.emplace_back(name, value);
  }
  return {};
}

// A list replaces the permissions: those for the group are its mask, not the group's.
Status AccessRights::permit(int file, bool hasGroup) const {
  if (!dropList(file)) return lastStatus("its access list cannot be kept");
  const mode_t mode = accessList_.empty() ? mode_ : mode_ & 0707;
  if (!setMode(file, hasGroup ? mode : withoutGroup(mode)))
    return lastStatus("its permissions cannot be kept");
  if (accessList_.empty()) return {};
  const std::string list = hasGroup ? accessList_ : listWithoutGroup(accessList_);
  const bool kept = ::fsetxattr(file, kAccessList, list.data(), list.size(), 0) == 0;
  return kept ? Status() : lastStatus("its access list cannot be kept");
}

#else

Status AccessRights::readAttributes(const std::string&) {
  return {};
}

Status AccessRights::permit(int file, bool hasGroup) const {
  return setMode(file, hasGroup ? mode_ : withoutGroup(mode_))
             ? Status()
             : lastStatus("its permissions cannot be kept");
}

#endif

}  // namespace morvane

#endif  // _WIN32
