#include "host/text/Environment.h"

#include <cstdlib>
#include <string_view>

#if !defined(_WIN32)
extern char** environ;
#endif

namespace host::mel {
namespace {

char** variables() {
#if defined(_WIN32)
  return _environ;
#else
  return environ;
#endif
}

}  // namespace

std::vector<std::string> environmentNames() {
  std::vector<std::string> names;
  for (char** entry = variables(); entry != nullptr && *entry != nullptr; ++entry) {
    const std::string_view text = *entry;
    names.emplace_back(text.substr(0, text.find('=')));
  }
  return names;
}

}  // namespace host::mel
