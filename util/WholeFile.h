#ifndef MORVANE_UTIL_WHOLEFILE_H_
#define MORVANE_UTIL_WHOLEFILE_H_

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

#include "util/FileIdentity.h"

namespace morvane {

// Reads a regular file of at most `maxSize` bytes into memory, `size` bytes in all. Fails for
// anything else (a folder, a pipe or a device, which could block or never end) and for a file that
// grows or shrinks meanwhile; `error` then says why, without the path. `identity`, where given,
// tells which file it was.
bool readWholeFile(const char* path, std::uint64_t maxSize, std::unique_ptr<std::uint8_t[]>& bytes,
                   std::size_t& size, std::string& error, FileIdentity* identity = nullptr);

}  // namespace morvane

#endif  // MORVANE_UTIL_WHOLEFILE_H_
