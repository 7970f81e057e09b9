#ifndef MORVANE_UTIL_PATH_H_
#define MORVANE_UTIL_PATH_H_

#include <filesystem>
#include <string>

#include "util/Status.h"

namespace morvane {

// Names of files are UTF-8 in the whole program, and become what the system takes here alone. On
// POSIX systems a name is bytes of whatever encoding, and stays as it is. On Windows bytes that are
// no UTF-8 become U+FFFD, both slashes are taken, and names that come from the system have forward
// ones, as Maya shows them.

#ifdef _WIN32

std::wstring toWide(const std::string& utf8);
std::string toUtf8(const std::wstring& wide);

// To take a path apart, or to put one together.
std::filesystem::path pathOf(const std::string& name);
std::string nameOf(const std::filesystem::path& path);

// To call the system with: whole, and in the form of any length where it is long.
std::filesystem::path systemPath(const std::string& name);
std::filesystem::path systemPath(const std::filesystem::path& path);

// kBadArgument where the system would take the path for something else than a file of that name.
Status checkFileName(const std::string& path);

#else

inline std::filesystem::path pathOf(const std::string& name) {
  return name;
}
inline std::string nameOf(const std::filesystem::path& path) {
  return path.native();
}
inline std::filesystem::path systemPath(const std::string& name) {
  return name;
}
inline const std::filesystem::path& systemPath(const std::filesystem::path& path) {
  return path;
}
inline Status checkFileName(const std::string&) {
  return {};
}

#endif

}  // namespace morvane

#endif  // MORVANE_UTIL_PATH_H_
