#ifdef _WIN32

#include <windows.h>

#include <algorithm>
#include <atomic>
#include <utility>
#include <vector>

#include "util/Path.h"
#include "util/ReplaceFileTarget.h"
#include "util/SystemStatus.h"
#include "util/WindowsHandles.h"

namespace morvane {

namespace {

constexpr int kMaxNames = 1000;
constexpr std::size_t kMaxWrite = std::size_t{1} << 30;
constexpr std::uint64_t kAbandonedTicks = std::uint64_t{24} * 60 * 60 * 10'000'000;
constexpr DWORD kPause = 20;  // milliseconds
constexpr int kPausesInASecond = 1000 / kPause;
// An old file on its way out. Nobody clears it away before its successor has its name.
constexpr wchar_t kOldSuffix[] = L".old";

Status lastStatus() {
  return windowsStatus(GetLastError(), StatusCode::kCannotWrite);
}

// The file that a symbolic link names; the path itself when it is none or cannot be followed.
std::wstring resolved(const std::wstring& path) {
  const DWORD attributes = GetFileAttributesW(path.c_str());
  if (attributes == INVALID_FILE_ATTRIBUTES || !(attributes & FILE_ATTRIBUTE_REPARSE_POINT))
    return path;
  const HANDLE file = openToLook(path);
  if (file == INVALID_HANDLE_VALUE) return path;
  std::wstring target(32768, L'\0');
  const DWORD length =
      GetFinalPathNameByHandleW(file, target.data(), static_cast<DWORD>(target.size()), 0);
  CloseHandle(file);
  if (length == 0 || length >= target.size()) return path;
  target.resize(length);
  return target;
}

std::uint64_t otherNamesOf(const std::wstring& path) {
  const HANDLE file = openToLook(path);
  BY_HANDLE_FILE_INFORMATION found = {};
  if (file == INVALID_HANDLE_VALUE) return 0;
  const bool known = GetFileInformationByHandle(file, &found);
  CloseHandle(file);
  return known && found.nNumberOfLinks > 1 ? found.nNumberOfLinks - 1 : 0;
}

std::uint64_t ticks(const FILETIME& time) {
  return std::uint64_t{time.dwHighDateTime} << 32 | time.dwLowDateTime;
}

std::wstring folderOf(const std::wstring& path) {
  return path.substr(0, path.find_last_of(L"/\\:") + 1);
}

bool exists(const std::wstring& path) {
  return GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES;
}

// Programs that read a file for a moment (virus scanners, indexers, previews) hinder its
// replacement meanwhile.
bool isHeldByOthers(DWORD error) {
  return error == ERROR_SHARING_VIOLATION || error == ERROR_LOCK_VIOLATION ||
         error == ERROR_USER_MAPPED_FILE || error == ERROR_ACCESS_DENIED ||
         error == ERROR_UNABLE_TO_REMOVE_REPLACED;
}

// Of a file system that cannot do such a thing at all.
bool isUnknown(DWORD error) {
  return error == ERROR_INVALID_FUNCTION || error == ERROR_NOT_SUPPORTED ||
         error == ERROR_CALL_NOT_IMPLEMENTED || error == ERROR_INVALID_PARAMETER;
}

// Repeats a call for so many seconds while other programs keep it from succeeding; for one second
// at most where that may as well be forbidden for good. What it failed with, or ERROR_SUCCESS.
template <typename Call>
DWORD repeated(int seconds, Call call) {
  for (long pauses = 0;; ++pauses) {
    if (call()) return ERROR_SUCCESS;
    const DWORD error = GetLastError();
    const long most = error == ERROR_ACCESS_DENIED ? std::min(seconds, 1) : seconds;
    if (pauses >= most * kPausesInASecond || !isHeldByOthers(error)) return error;
    Sleep(kPause);
  }
}

Status heldStatus(DWORD error, int seconds) {
  if (error == ERROR_ACCESS_DENIED || !isHeldByOthers(error))
    return windowsStatus(error, StatusCode::kCannotWrite);
  return {StatusCode::kCannotWrite,
          "another program keeps it open; waited " + std::to_string(seconds) + " s"};
}

bool copyAttributes(const std::wstring& from, const std::wstring& to) {
  const DWORD attributes = GetFileAttributesW(from.c_str());
  return attributes == INVALID_FILE_ATTRIBUTES || SetFileAttributesW(to.c_str(), attributes);
}

bool copyAccessList(const std::wstring& from, const std::wstring& to) {
  DWORD size = 0;
  GetFileSecurityW(from.c_str(), DACL_SECURITY_INFORMATION, nullptr, 0, &size);
  std::vector<unsigned char> descriptor(size);
  const bool hasList = size > 0 && GetFileSecurityW(from.c_str(), DACL_SECURITY_INFORMATION,
                                                    descriptor.data(), size, &size);
  return !hasList || SetFileSecurityW(to.c_str(), DACL_SECURITY_INFORMATION, descriptor.data()) ||
         isUnknown(GetLastError());
}

// ReplaceFile keeps access list, alternate streams and most attributes; some network drives do not
// know it. The old file then has the name `old`, or (there) is gone.
bool replace(const std::wstring& target, const std::wstring& by, const std::wstring& old) {
  if (!copyAttributes(target, by)) return false;
  if (ReplaceFileW(target.c_str(), by.c_str(), old.c_str(), 0, nullptr, nullptr)) return true;
  const DWORD error = GetLastError();
  // Half done: the old file has its new name, its successor not yet.
  if (error == ERROR_UNABLE_TO_MOVE_REPLACEMENT_2) {
    if (MoveFileExW(by.c_str(), target.c_str(), MOVEFILE_WRITE_THROUGH)) return true;
    MoveFileExW(old.c_str(), target.c_str(), MOVEFILE_WRITE_THROUGH);
  }
  if (isUnknown(error)) {
    return copyAccessList(target, by) &&
           MoveFileExW(by.c_str(), target.c_str(),
                       MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH);
  }
  SetLastError(error);
  return false;
}

}  // namespace

FileReplacer::Target::~Target() {
  if (file_) CloseHandle(file_);
  if (!temporaryPath_.empty()) DeleteFileW(temporaryPath_.c_str());
}

Status FileReplacer::Target::open(const std::string& path, std::uint64_t& otherNames) {
  if (path.empty()) return windowsStatus(ERROR_FILE_NOT_FOUND, StatusCode::kCannotWrite);
  const Status named = checkFileName(path);
  if (!named.ok()) return named;
  targetPath_ = resolved(systemPath(path).native());
  const DWORD attributes = GetFileAttributesW(targetPath_.c_str());
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
  for (int attempt = 0; attempt < kMaxNames; ++attempt) {
    const std::string name = temporaryName(GetCurrentProcessId(), counter++);
    const std::wstring path = systemPath(toUtf8(folderOf(targetPath_)) + name).native();
    const HANDLE file = CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW,
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
  const std::wstring folder = folderOf(temporaryPath_);
  FILETIME own;
  WIN32_FIND_DATAW found;
  if (!GetFileTime(file_, nullptr, nullptr, &own)) return;
  const HANDLE search = FindFirstFileW((folder + L".morvane-*").c_str(), &found);
  if (search == INVALID_HANDLE_VALUE) return;
  do {
    if (isTemporaryName(toUtf8(found.cFileName)) &&
        ticks(found.ftLastWriteTime) + kAbandonedTicks < ticks(own))
      DeleteFileW((folder + found.cFileName).c_str());
  } while (FindNextFileW(search, &found));
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

Status FileReplacer::Target::finishTemporary() {
  if (!FlushFileBuffers(file_)) return lastStatus();
  const HANDLE file = std::exchange(file_, nullptr);
  return CloseHandle(file) ? Status() : lastStatus();
}

// A rename over nothing fails where a file is by then.
Status FileReplacer::Target::commit(const FileIdentity* expected, FileIdentity& written) {
  Status status = finishTemporary();
  if (!status.ok()) return status;
  if (expected != nullptr) {
    const FileIdentity now = identityAt(toUtf8(targetPath_));
    if (expected->known ? !isSameFile(*expected, now) : now.known) return foundAnother();
  }
  if (settings.inPlace && exists(targetPath_)) return writeInPlace(written);
  if (exists(targetPath_))
    status = renameOver(expected);
  else if (MoveFileExW(temporaryPath_.c_str(), targetPath_.c_str(), MOVEFILE_WRITE_THROUGH))
    temporaryPath_.clear();
  else if (GetLastError() == ERROR_ALREADY_EXISTS)
    status = expected != nullptr ? foundAnother() : renameOver(nullptr);
  else
    status = lastStatus();
  if (status.ok()) written = identityAt(toUtf8(targetPath_));
  return status;
}

// What had the target's name is looked at before it goes: should others have saved between the
// comparison and here, they get the name back.
Status FileReplacer::Target::renameOver(const FileIdentity* expected) {
  const std::wstring old = temporaryPath_ + kOldSuffix;
  const DWORD error =
      repeated(settings.waitSeconds, [&] { return replace(targetPath_, temporaryPath_, old); });
  if (error != ERROR_SUCCESS) {
    if (exists(targetPath_) || !exists(old)) return heldStatus(error, settings.waitSeconds);
    return {StatusCode::kCannotWrite, windowsStatus(error, StatusCode::kCannotWrite).text() +
                                          "; the old file is " + toUtf8(old) +
                                          ": give it its name back"};
  }
  temporaryPath_ = old;  // for the destructor to remove
  const FileIdentity replaced = identityAt(toUtf8(old));
  if (expected == nullptr || !replaced.known || isSameFile(*expected, replaced)) return {};
  const auto giveBack = [&] {
    return MoveFileExW(old.c_str(), targetPath_.c_str(),
                       MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) != 0;
  };
  temporaryPath_.clear();
  if (repeated(settings.waitSeconds, giveBack) == ERROR_SUCCESS) return foundAnother();
  return {StatusCode::kCannotWrite,
          lastStatus().text() + "; " + toUtf8(old) +
              " has what somebody else wrote meanwhile: give it the file's name"};
}

Status FileReplacer::Target::writeInPlace(FileIdentity& written) {
  const std::wstring copy = targetPath_ + L".morvane-copy";
  if (!MoveFileExW(temporaryPath_.c_str(), copy.c_str(), MOVEFILE_WRITE_THROUGH)) {
    if (GetLastError() != ERROR_ALREADY_EXISTS) return lastStatus();
    return {StatusCode::kCannotWrite, toUtf8(copy) +
                                          " is there: what a save in place wanted to write before "
                                          "it was cut off; use it or remove it"};
  }
  temporaryPath_.clear();
  const DWORD error = repeated(settings.waitSeconds, [&] {
    return CopyFileW(copy.c_str(), targetPath_.c_str(), FALSE) != 0;
  });
  if (error != ERROR_SUCCESS) {
    const Status status = heldStatus(error, settings.waitSeconds);
    return {status.code(), status.text() + "; the whole new content is in " + toUtf8(copy)};
  }
  written = identityAt(toUtf8(targetPath_));
  DeleteFileW(copy.c_str());
  return {};
}

}  // namespace morvane

#endif  // _WIN32
