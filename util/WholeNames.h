#ifndef MORVANE_UTIL_WHOLENAMES_H_
#define MORVANE_UTIL_WHOLENAMES_H_

#include <string>
#include <system_error>

namespace morvane {

// Where names of files lead. Like the standard library's functions on paths, but on Windows they
// know names of shares whatever library it is, and leave parts of a name that no file can have for
// checkFileName() to refuse.

// As the name is meant in the folder, without "." and "..".
std::string resolvedName(const std::string& name, const std::string& folder);

// As it is meant in the working folder, and otherwise as it is; the name itself when that folder
// is not known.
std::string absoluteName(const std::string& name);

// Links followed as far as there is something; no matter what the working folder is.
std::string canonicalName(const std::string& name, std::error_code& error);

}  // namespace morvane

#endif  // MORVANE_UTIL_WHOLENAMES_H_
