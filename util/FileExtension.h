#ifndef MORVANE_UTIL_FILEEXTENSION_H_
#define MORVANE_UTIL_FILEEXTENSION_H_

#include <string>

#include "util/Path.h"

namespace morvane {

// Of a file's name, its ASCII letters in lower case: ".ma"; empty where there is none, as for
// ".ma" itself.
inline std::string lowerExtension(const std::string& file) {
  std::string extension = nameOf(pathOf(file).extension());
  for (char& c : extension) c = c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
  return extension;
}

}  // namespace morvane

#endif  // MORVANE_UTIL_FILEEXTENSION_H_
