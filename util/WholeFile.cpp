#include "util/WholeFile.h"

#include <new>
#include <string>
#include <utility>

#include "util/InputFile.h"
#include "util/LargePages.h"

namespace morvane {

Status readWholeFile(const char* path, std::uint64_t maxSize,
                     std::unique_ptr<std::uint8_t[]>& bytes, std::size_t& size,
                     FileIdentity* identity) {
  InputFile file;
  const Status opened = file.open(path, maxSize);
  if (!opened.ok()) return opened;
  // One byte more than expected tells a file that has grown.
  const auto room = static_cast<std::size_t>(file.size()) + 1;
  std::unique_ptr<std::uint8_t[]> buffer(new (std::nothrow) std::uint8_t[room]);
  if (!buffer) {
    return {StatusCode::kOutOfMemory,
            "out of memory for " + std::to_string(file.size()) + " bytes"};
  }
  askForLargePages(buffer.get(), room);
  // Files of the system itself claim to be empty, and reading some of them waits for ever. So a
  // file that claims to be empty is not read.
  std::size_t got = 0;
  const Status taken = file.size() == 0 ? Status() : file.read(0, buffer.get(), room, got);
  if (!taken.ok()) return taken;
  if (got > file.size()) return {StatusCode::kChanged, "changed while it was read"};
  bytes = std::move(buffer);
  size = got;
  if (identity != nullptr) *identity = file.identity();
  return {};
}

}  // namespace morvane
