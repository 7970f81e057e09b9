#include "util/WholeNames.h"

#include <filesystem>

#include "util/Path.h"

#ifdef _WIN32
#include "util/WindowsHandles.h"
#include "util/WindowsNames.h"
#endif

namespace morvane {

namespace fs = std::filesystem;

#ifdef _WIN32

namespace {

// Each drive has a working folder of its own.
std::string workingFolder(const std::string& name) {
  const bool hasDrive = name.size() > 1 && name[1] == ':';
  const std::wstring here = toWide(hasDrive ? name.substr(0, 2) : ".");
  std::wstring folder(32768, L'\0');
  const DWORD length =
      GetFullPathNameW(here.c_str(), static_cast<DWORD>(folder.size()), folder.data(), nullptr);
  folder.resize(length < folder.size() ? length : 0);
  return toUtf8(folder);
}

}  // namespace

std::string resolvedName(const std::string& name, const std::string& folder) {
  return normalWindowsPath(joinedWindowsPath(folder, name));
}

std::string absoluteName(const std::string& name) {
  const std::string folder = name.empty() ? std::string() : workingFolder(name);
  return folder.empty() ? name : joinedWindowsPath(folder, name);
}

std::string canonicalName(const std::string& name, std::error_code& error) {
  error.clear();
  const HANDLE file = openToLook(systemPath(name).native(), FILE_FLAG_BACKUP_SEMANTICS);
  if (file == INVALID_HANDLE_VALUE) return normalWindowsPath(absoluteName(name));
  std::wstring found(32768, L'\0');
  const DWORD length =
      GetFinalPathNameByHandleW(file, found.data(), static_cast<DWORD>(found.size()), 0);
  CloseHandle(file);
  if (length == 0 || length >= found.size()) return normalWindowsPath(absoluteName(name));
  found.resize(length);
  return nameOf(fs::path(found));
}

#else

std::string resolvedName(const std::string& name, const std::string& folder) {
  return (fs::path(folder) / name).lexically_normal().native();
}

std::string absoluteName(const std::string& name) {
  std::error_code error;
  const fs::path absolute = fs::absolute(name, error);
  return error ? name : absolute.native();
}

std::string canonicalName(const std::string& name, std::error_code& error) {
  return fs::weakly_canonical(name, error).native();
}

#endif

}  // namespace morvane
