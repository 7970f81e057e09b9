#ifndef MORVANE_UTIL_INPUTFILE_H_
#define MORVANE_UTIL_INPUTFILE_H_

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>

#include "util/FileIdentity.h"

namespace morvane {

// A regular file, to be read in parts. Operations that fail say why in `error`, without the path.
class InputFile {
 public:
  // Fails for a file of more than `maxSize` bytes and for anything that is no regular file: a
  // folder, or a pipe or device, which could block or never end.
  bool open(const char* path, std::uint64_t maxSize, std::string& error);

  // In bytes, when it was opened.
  std::uint64_t size() const { return size_; }

  // As it was when it was opened, before anything was read.
  const FileIdentity& identity() const { return identity_; }

  // Reads the bytes from `start` on, up to `count` of them; returns how many there are. Fewer than
  // size() promises is a failure.
  std::size_t read(std::uint64_t start, std::uint8_t* to, std::size_t count, std::string& error);

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
