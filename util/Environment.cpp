#include "util/Environment.h"

#include <cstdlib>
#include <filesystem>
#include <string_view>
#include <system_error>

#ifdef _WIN32
#include <windows.h>

#include "util/Path.h"
#else
#ifdef __APPLE__
#include <mach-o/dyld.h>
#endif
extern char** environ;
#endif

namespace morvane {

#ifdef _WIN32

std::optional<std::string> environmentValue(const std::string& name) {
  const wchar_t* const value = ::_wgetenv(toWide(name).c_str());
  if (value == nullptr) return std::nullopt;
  return toUtf8(value);
}

std::vector<std::string> environmentNames() {
  std::vector<std::string> names;
  wchar_t* const block = GetEnvironmentStringsW();
  for (const wchar_t* entry = block; entry != nullptr && *entry != L'\0';) {
    const std::wstring text = entry;
    // The working folder of each drive stands among them as "=C:".
    if (text[0] != L'=') names.push_back(toUtf8(text.substr(0, text.find(L'='))));
    entry += text.size() + 1;
  }
  if (block != nullptr) FreeEnvironmentStringsW(block);
  return names;
}

std::string programFolder() {
  std::wstring name(32768, L'\0');
  const DWORD length = GetModuleFileNameW(nullptr, name.data(), static_cast<DWORD>(name.size()));
  if (length == 0 || length == name.size()) return "";
  name.resize(length);
  return nameOf(std::filesystem::path(name).parent_path());
}

#else

std::optional<std::string> environmentValue(const std::string& name) {
  const char* const value = std::getenv(name.c_str());
  if (value == nullptr) return std::nullopt;
  return std::string(value);
}

std::vector<std::string> environmentNames() {
  std::vector<std::string> names;
  for (char** entry = environ; entry != nullptr && *entry != nullptr; ++entry) {
    const std::string_view text = *entry;
    names.emplace_back(text.substr(0, text.find('=')));
  }
  return names;
}

std::string programFolder() {
  std::error_code error;
#ifdef __APPLE__
  char name[4096];
  uint32_t size = sizeof name;
  if (_NSGetExecutablePath(name, &size) != 0) return "";
  const auto program = std::filesystem::canonical(name, error);
#else
  const auto program = std::filesystem::read_symlink("/proc/self/exe", error);
#endif
  return error ? "" : program.parent_path().string();
}

#endif

}  // namespace morvane
