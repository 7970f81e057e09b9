#ifndef MORVANE_UTIL_FILEIDENTITY_H_
#define MORVANE_UTIL_FILEIDENTITY_H_

#include <cstdint>
#include <cstdio>
#include <string>

namespace morvane {

// Tells the content of a file from any later content: which file it is, when it was last written,
// and its size then. Two writes to the same size within one tick of the file system's clock look
// the same.
struct FileIdentity {
  bool known = false;
  std::uint64_t device = 0;
  std::uint64_t file = 0;  // its number on the device
  std::uint64_t size = 0;  // in bytes
  std::int64_t seconds = 0;
  std::int64_t fraction = 0;  // of a second: nanoseconds, on Windows none
};

// Two that are not known are equal to nothing.
bool isSameFile(const FileIdentity& a, const FileIdentity& b);

// Not known when the system does not say.
FileIdentity identityOf(std::FILE* file);
// Of the file that the path, or the symbolic link there, names. Not known when there is none.
FileIdentity identityAt(const std::string& path);

// Whether two paths lead to one place, links followed; there need not be a file.
bool isSamePlace(const std::string& a, const std::string& b);

}  // namespace morvane

#endif  // MORVANE_UTIL_FILEIDENTITY_H_
