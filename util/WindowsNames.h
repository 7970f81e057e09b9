#ifndef MORVANE_UTIL_WINDOWSNAMES_H_
#define MORVANE_UTIL_WINDOWSNAMES_H_

#include <string>

namespace morvane {

// How Windows reads the names of files, in UTF-8; the rules are those of "Naming Files, Paths, and
// Namespaces" in its documentation. Plain functions of text, for every system.

// Why a path cannot name a file there, in words that follow the path ("'con' is the name of a
// device"); empty for one that can. Windows itself takes such a path for something else: a device,
// a stream of another file, a name without its last dots and blanks.
std::string whyNoWindowsFile(const std::string& path);

// The form of a whole path ("C:\a\b", "\\machine\share\a") that may be longer than 260 characters.
// Its parts must be separated by backslashes alone, without "." and "..". A path that has such a
// form, or is not whole, stays.
std::string longWindowsPath(const std::string& path);

// The other way.
std::string shortWindowsPath(const std::string& path);

// As a path is meant in a folder: itself where it is whole or of another drive. With forward
// slashes.
std::string joinedWindowsPath(const std::string& folder, const std::string& path);

// Without "." and "..", and with single forward slashes but for the two before a machine's name.
std::string normalWindowsPath(const std::string& path);

}  // namespace morvane

#endif  // MORVANE_UTIL_WINDOWSNAMES_H_
