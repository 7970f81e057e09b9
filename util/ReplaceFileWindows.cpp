#ifdef _WIN32

#include <windows.h>

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <system_error>

#include "util/ReplaceFileTarget.h"
#include "util/SystemStatus.h"

namespace morvane {

namespace {

constexpr int kMaxNames = 1000;
constexpr std::size_t kMaxWrite = std::size_t{1} << 30;
constexpr std::uint64_t kAbandonedTicks = std::uint64_t{24} * 60 * 60 * 10'000'000;

Status lastStatus() {
  return systemStatus(std::error_code(static_cast<int>(GetLastError()), std::system_category()),
                      StatusCode::kCannotWrite);
}

// The file that a symbolic link names; the path itself when it is none or cannot be followed.
std::string resolved(const std::string& path) {
  const HANDLE file = CreateFileA(path.c_str(), 0, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                  OPEN_EXISTING, 0, nullptr);
  if (file == INVALID_HANDLE_VALUE) return path;
  char text[4096];
  const DWORD length = GetFinalPathNameByHandleA(file, text, sizeof text, FILE_NAME_NORMALIZED);
  CloseHandle(file);
  return length > 0 && length < sizeof text ? std::string(text, length) : path;
}

std::uint64_t otherNamesOf(const std::string& path) {
  const HANDLE file = CreateFileA(path.c_str(), 0, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                  OPEN_EXISTING, 0, nullptr);
  BY_HANDLE_FILE_INFORMATION found = {};
  if (file == INVALID_HANDLE_VALUE) return 0;
  const bool known = GetFileInformationByHandle(file, &found);
  CloseHandle(file);
  return known && found.nNumberOfLinks > 1 ? found.nNumberOfLinks - 1 : 0;
}

std::uint64_t ticks(const FILETIME& time) {
  return std::uint64_t{time.dwHighDateTime} << 32 | time.dwLowDateTime;
}

}  // namespace

FileReplacer::Target::~Target() {
  if (file_) CloseHandle(file_);
  if (!temporaryPath_.empty()) DeleteFileA(temporaryPath_.c_str());
}

Status FileReplacer::Target::open(const std::string& path, std::uint64_t& otherNames) {
  const DWORD link = GetFileAttributesA(path.c_str());
  const bool isLink = link != INVALID_FILE_ATTRIBUTES && (link & FILE_ATTRIBUTE_REPARSE_POINT);
  targetPath_ = isLink ? resolved(path) : path;
  const DWORD attributes = GetFileAttributesA(targetPath_.c_str());
  if (attributes != INVALID_FILE_ATTRIBUTES) {
    if (attributes & FILE_ATTRIBUTE_DIRECTORY) return {StatusCode::kNotAFile, "Is a directory"};
    if (attributes & FILE_ATTRIBUTE_READONLY)
      return {StatusCode::kReadOnly, FileReplacer::kReadOnlyReason};
    otherNames = settings.inPlace ? 0 : otherNamesOf(targetPath_);
  }
  Status status = createTemporary();
  if (status.ok()) removeAbandoned();
  return status;
}

Status FileReplacer::Target::createTemporary() {
  static std::atomic<unsigned> counter{0};
  const std::string folder = targetPath_.substr(0, targetPath_.find_last_of("/\\:") + 1);
  for (int attempt = 0; attempt < kMaxNames; ++attempt) {
    char name[64];
    std::snprintf(name, sizeof name, "morvane-%lx-%x.tmp", GetCurrentProcessId(), counter++);
    const std::string path = folder + name;
    const HANDLE file = CreateFileA(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW,
                                    FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file != INVALID_HANDLE_VALUE) {
      file_ = file;
      temporaryPath_ = path;
      return {};
    }
    if (GetLastError() != ERROR_FILE_EXISTS) break;
  }
  return lastStatus();
}

// Ages are taken from the folder's own clock, which need not be this machine's. A file that
// somebody is writing cannot be deleted.
void FileReplacer::Target::removeAbandoned() {
  const std::string folder = targetPath_.substr(0, targetPath_.find_last_of("/\\:") + 1);
  FILETIME own;
  WIN32_FIND_DATAA found;
  if (!GetFileTime(file_, nullptr, nullptr, &own)) return;
  const HANDLE search = FindFirstFileA((folder + "morvane-*.tmp").c_str(), &found);
  if (search == INVALID_HANDLE_VALUE) return;
  do {
    if (ticks(found.ftLastWriteTime) + kAbandonedTicks < ticks(own))
      DeleteFileA((folder + found.cFileName).c_str());
  } while (FindNextFileA(search, &found));
  FindClose(search);
}

Status FileReplacer::Target::write(const std::uint8_t* bytes, std::size_t size,
                                   std::size_t& written) {
  DWORD count = 0;
  const DWORD wanted = static_cast<DWORD>(std::min(size, kMaxWrite));
  if (!WriteFile(file_, bytes, wanted, &count, nullptr) || count == 0) return lastStatus();
  written = count;
  return {};
}

// ReplaceFile keeps the attributes and access rights of the file that is replaced; a file that does
// not exist yet is moved into place instead, which fails where one is by then. CopyFile writes into
// a file that is there.
Status FileReplacer::Target::commit(const FileIdentity* expected, FileIdentity& written) {
  if (!FlushFileBuffers(file_)) return lastStatus();
  const HANDLE file = file_;
  file_ = nullptr;
  if (!CloseHandle(file)) return lastStatus();
  const FileIdentity now = identityAt(targetPath_);
  if (expected != nullptr && (expected->known ? !isSameFile(*expected, now) : now.known))
    return foundAnother();
  const bool exists = GetFileAttributesA(targetPath_.c_str()) != INVALID_FILE_ATTRIBUTES;
  if (exists && settings.inPlace) return writeInPlace(written);
  const BOOL moved =
      exists ? ReplaceFileA(targetPath_.c_str(), temporaryPath_.c_str(), nullptr,
                            REPLACEFILE_IGNORE_MERGE_ERRORS, nullptr, nullptr)
             : MoveFileExA(temporaryPath_.c_str(), targetPath_.c_str(), MOVEFILE_WRITE_THROUGH);
  if (!moved) return lastStatus();
  temporaryPath_.clear();
  written = identityAt(targetPath_);
  return {};
}

Status FileReplacer::Target::writeInPlace(FileIdentity& written) {
  const std::string copy = targetPath_ + ".morvane-copy";
  if (!MoveFileExA(temporaryPath_.c_str(), copy.c_str(), MOVEFILE_WRITE_THROUGH)) {
    if (GetLastError() != ERROR_ALREADY_EXISTS) return lastStatus();
    return {StatusCode::kCannotWrite, copy +
                                          " is there: what a save in place wanted to write before "
                                          "it was cut off; use it or remove it"};
  }
  temporaryPath_.clear();
  if (!CopyFileA(copy.c_str(), targetPath_.c_str(), FALSE)) {
    const Status status = lastStatus();
    return {status.code(), status.text() + "; the whole new content is in " + copy};
  }
  written = identityAt(targetPath_);
  DeleteFileA(copy.c_str());
  return {};
}

}  // namespace morvane

#endif  // _WIN32
