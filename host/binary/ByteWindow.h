#ifndef MORVANE_HOST_BINARY_BYTEWINDOW_H_
#define MORVANE_HOST_BINARY_BYTEWINDOW_H_

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

#include "util/InputFile.h"
#include "util/Status.h"

namespace host {

// Reads a file through a window that moves along it. It holds one block in memory, or as much as
// one call asked for.
class ByteWindow {
 public:
  // The text of a failure does not name the file.
  morvane::Status open(const std::string& path);

  std::uint64_t size() const { return file_.size(); }

  // The `count` bytes from `start` on, good until the next call. Null when the file does not have
  // them all, or cannot be read; in the latter case `failed` is true from then on.
  const std::uint8_t* at(std::uint64_t start, std::size_t count);
  bool failed() const { return !status_.ok(); }
  const morvane::Status& status() const { return status_; }

 private:
  bool fill(std::uint64_t start, std::size_t count);

  morvane::InputFile file_;
  std::unique_ptr<std::uint8_t[]> buffer_;
  std::size_t capacity_ = 0;
  std::uint64_t begin_ = 0;  // in the file, of what the buffer holds
  std::size_t held_ = 0;
  morvane::Status status_;
};

}  // namespace host

#endif  // MORVANE_HOST_BINARY_BYTEWINDOW_H_
