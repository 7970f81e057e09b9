#include "util/Environment.h"

#include <cstdlib>
#include <string_view>

#ifdef _WIN32
#include <windows.h>

#include "util/Path.h"
#else
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

#endif

}  // namespace morvane
