#include "util/FileIdentity.h"

#include <system_error>

#include "util/Path.h"
#include "util/WholeNames.h"

#ifdef _WIN32
#include <io.h>

#include "util/WindowsHandles.h"
#else
#include <sys/stat.h>
#endif

namespace morvane {

#ifdef _WIN32

namespace {

std::uint64_t joined(DWORD high, DWORD low) {
  return std::uint64_t{high} << 32 | low;
}

FileIdentity identityOfHandle(HANDLE file) {
  FileIdentity identity;
  BY_HANDLE_FILE_INFORMATION found;
  if (!GetFileInformationByHandle(file, &found)) return identity;
  identity.known = true;
  identity.device = found.dwVolumeSerialNumber;
  identity.file = joined(found.nFileIndexHigh, found.nFileIndexLow);
  identity.size = joined(found.nFileSizeHigh, found.nFileSizeLow);
  identity.seconds = static_cast<std::int64_t>(
      joined(found.ftLastWriteTime.dwHighDateTime, found.ftLastWriteTime.dwLowDateTime));
  return identity;
}

}  // namespace

FileIdentity identityOf(std::FILE* file) {
  return identityOfHandle(reinterpret_cast<HANDLE>(::_get_osfhandle(::_fileno(file))));
}

FileIdentity identityAt(const std::string& path) {
  const HANDLE file = openToLook(systemPath(path).native());
  if (file == INVALID_HANDLE_VALUE) return FileIdentity();
  const FileIdentity identity = identityOfHandle(file);
  CloseHandle(file);
  return identity;
}

#else

namespace {

FileIdentity identityOfStatus(const struct stat& status) {
  FileIdentity identity;
  identity.known = true;
  identity.device = static_cast<std::uint64_t>(status.st_dev);
  identity.file = static_cast<std::uint64_t>(status.st_ino);
  identity.size = static_cast<std::uint64_t>(status.st_size);
#ifdef __APPLE__
  const struct timespec& written = status.st_mtimespec;
#else
  const struct timespec& written = status.st_mtim;
#endif
  identity.seconds = written.tv_sec;
  identity.fraction = written.tv_nsec;
  return identity;
}

}  // namespace

FileIdentity identityOf(std::FILE* file) {
  struct stat status;
  return ::fstat(::fileno(file), &status) == 0 ? identityOfStatus(status) : FileIdentity();
}

FileIdentity identityAt(const std::string& path) {
  struct stat status;
  return ::stat(path.c_str(), &status) == 0 ? identityOfStatus(status) : FileIdentity();
}

#endif

bool isSameFile(const FileIdentity& a, const FileIdentity& b) {
  return a.known && b.known && a.device == b.device && a.file == b.file && a.size == b.size &&
         a.seconds == b.seconds && a.fraction == b.fraction;
}

bool isSamePlace(const std::string& a, const std::string& b) {
  if (a == b) return true;
#ifdef _WIN32
  // Names in capitals and in small letters are one.
  const FileIdentity one = identityAt(a);
  const FileIdentity other = identityAt(b);
  if (one.known && other.known) return one.device == other.device && one.file == other.file;
#endif
  std::error_code failed;
  const std::string first = canonicalName(a, failed);
  if (failed) return false;
  const std::string second = canonicalName(b, failed);
  return !failed && first == second;
}

}  // namespace morvane
