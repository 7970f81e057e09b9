#ifndef MORVANE_UTIL_FILEFACTS_H_
#define MORVANE_UTIL_FILEFACTS_H_

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <string>
#include <system_error>

namespace morvane {

// What a path leads to, links followed.
struct FileFacts {
  std::filesystem::file_type type = std::filesystem::file_type::none;
  std::uint64_t size = 0;  // in bytes; of a regular file, else 0
  std::error_code error;   // why the type or the size is not known, or why there is nothing

  bool isFile() const { return type == std::filesystem::file_type::regular; }
  bool isFolder() const { return type == std::filesystem::file_type::directory; }
  bool exists() const {
    return type != std::filesystem::file_type::none &&
           type != std::filesystem::file_type::not_found;
  }
};

FileFacts factsOf(const std::string& name);

// Opens the file for reading its bytes as they are; the caller closes it with std::fclose. Null,
// with errno set, when it fails. Others may write, rename or replace the file meanwhile.
std::FILE* openToRead(const std::string& name);

}  // namespace morvane

#endif  // MORVANE_UTIL_FILEFACTS_H_
