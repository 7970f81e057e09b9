#ifndef MORVANE_UTIL_WHOLEFILE_H_
#define MORVANE_UTIL_WHOLEFILE_H_

#include <cstddef>
#include <cstdint>
#include <memory>

#include "util/FileIdentity.h"
#include "util/Status.h"

namespace morvane {

// Reads a regular file of at most `maxSize` bytes into memory, `size` bytes in all. kTooLarge for
// more, kNotAFile for a folder, a pipe or a device, kChanged for a file that grows or shrinks
// meanwhile; the text does not name the file. `identity`, where given, tells which file it was.
Status readWholeFile(const char* path, std::uint64_t maxSize,
                     std::unique_ptr<std::uint8_t[]>& bytes, std::size_t& size,
                     FileIdentity* identity = nullptr);

}  // namespace morvane

#endif  // MORVANE_UTIL_WHOLEFILE_H_
