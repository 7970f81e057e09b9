#include "util/Path.h"

#ifdef _WIN32

#include <windows.h>

#include <algorithm>

#include "util/WindowsNames.h"

namespace morvane {

namespace {

// Windows takes 260 characters with the zero at the end, and for a folder 12 fewer.
constexpr std::size_t kLongestPlain = 247;

std::wstring wholePath(const std::wstring& path) {
  const DWORD size = GetFullPathNameW(path.c_str(), 0, nullptr, nullptr);
  std::wstring whole(size, L'\0');
  const DWORD length = GetFullPathNameW(path.c_str(), size, whole.data(), nullptr);
  if (length == 0 || length >= size) return path;
  whole.resize(length);
  return whole;
}

}  // namespace

std::wstring toWide(const std::string& utf8) {
  const int size = static_cast<int>(utf8.size());
  std::wstring wide(utf8.size(), L'\0');  // at most one unit for each byte
  const int length = MultiByteToWideChar(CP_UTF8, 0, utf8.data(), size, wide.data(), size);
  wide.resize(static_cast<std::size_t>(length));
  return wide;
}

std::string toUtf8(const std::wstring& wide) {
  const int units = static_cast<int>(wide.size());
  std::string utf8(wide.size() * 3, '\0');
  const int length = WideCharToMultiByte(CP_UTF8, 0, wide.data(), units, utf8.data(),
                                         static_cast<int>(utf8.size()), nullptr, nullptr);
  utf8.resize(static_cast<std::size_t>(length));
  return utf8;
}

std::filesystem::path pathOf(const std::string& name) {
  return std::filesystem::path(toWide(name));
}

std::string nameOf(const std::filesystem::path& path) {
  std::string name = shortWindowsPath(toUtf8(path.native()));
  std::replace(name.begin(), name.end(), '\\', '/');
  return name;
}

std::filesystem::path systemPath(const std::filesystem::path& path) {
  const std::wstring whole = path.empty() ? std::wstring() : wholePath(path.native());
  if (whole.size() <= kLongestPlain) return path;
  return std::filesystem::path(toWide(longWindowsPath(toUtf8(whole))));
}

std::filesystem::path systemPath(const std::string& name) {
  return systemPath(pathOf(name));
}

Status checkFileName(const std::string& path) {
  const std::string why = whyNoWindowsFile(path);
  return why.empty() ? Status() : Status(StatusCode::kBadArgument, why);
}

}  // namespace morvane

#endif  // _WIN32
