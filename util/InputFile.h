#ifndef MORVANE_UTIL_INPUTFILE_H_
#define MORVANE_UTIL_INPUTFILE_H_

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <memory>

#include "util/FileIdentity.h"
#include "util/Status.h"

namespace morvane {

// A regular file, to be read in parts. The text of a failure does not name it.
class InputFile {
 public:
  // kTooLarge for a file of more than `maxSize` bytes, and kNotAFile for a folder, or for a pipe or
  // device, which could block or never end.
  Status open(const char* path, std::uint64_t maxSize);

  // In bytes, when it was opened.
  std::uint64_t size() const { return size_; }

  // As it was when it was opened, before anything was read.
  const FileIdentity& identity() const { return identity_; }

  // Reads the bytes from `start` on, up to `count` of them; `got` becomes how many there are. Fewer
  // than size() promises is a failure: kChanged, or what the system says.
  Status read(std::uint64_t start, std::uint8_t* to, std::size_t count, std::size_t& got);

 private:
  struct CloseFile {
    void operator()(std::FILE* file) const { std::fclose(file); }
  };

  std::unique_ptr<std::FILE, CloseFile> file_;
  std::uint64_t size_ = 0;
  FileIdentity identity_;
};

}  // namespace morvane

#endif  // MORVANE_UTIL_INPUTFILE_H_
