#include "util/WholeFile.h"

#include <new>

#include "util/InputFile.h"
#include "util/LargePages.h"

namespace morvane {

bool readWholeFile(const char* path, std::uint64_t maxSize, std::unique_ptr<std::uint8_t[]>& bytes,
                   std::size_t& size, std::string& error, FileIdentity* identity) {
  InputFile file;
  if (!file.open(path, maxSize, error)) return false;
  // One byte more than expected tells a file that has grown.
  const auto room = static_cast<std::size_t>(file.size()) + 1;
  std::unique_ptr<std::uint8_t[]> buffer(new (std::nothrow) std::uint8_t[room]);
  if (!buffer) {
    error = "out of memory for " + std::to_string(file.size()) + " bytes";
    return false;
  }
  askForLargePages(buffer.get(), room);
  // Files of the system's own say that they are empty, and some wait for ever for what they have to
  // tell: what is empty is not read.
  const std::size_t got = file.size() == 0 ? 0 : file.read(0, buffer.get(), room, error);
  if (got < file.size()) return false;
  if (got > file.size()) {
    error = "changed while it was read";
    return false;
  }
  bytes = std::move(buffer);
  size = got;
  if (identity != nullptr) *identity = file.identity();
  return true;
}

}  // namespace morvane
