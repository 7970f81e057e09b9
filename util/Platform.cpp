#include "util/Platform.h"

namespace morvane {
namespace {

#if defined(_WIN32)
constexpr const char* kSeparators = "/\\";

std::size_t driveLength(const std::string& path) {
  return path.size() > 1 && path[1] == ':' ? 2 : 0;
}
#else
constexpr const char* kSeparators = "/";

std::size_t driveLength(const std::string&) {
  return 0;
}
#endif

}  // namespace

SplitPath splitPath(const std::string& path) {
  const std::size_t directoryStart = driveLength(path);
  const std::size_t separator = path.find_last_of(kSeparators);
  std::size_t nameStart = directoryStart;
  if (separator != std::string::npos && separator >= directoryStart) nameStart = separator + 1;
  std::size_t extensionStart = path.rfind('.');
  if (extensionStart == std::string::npos || extensionStart < nameStart)
    extensionStart = path.size();
  return {path.substr(0, directoryStart), path.substr(directoryStart, nameStart - directoryStart),
          path.substr(nameStart, extensionStart - nameStart), path.substr(extensionStart)};
}

}  // namespace morvane
