#ifndef MORVANE_BENCH_FILEBYTES_H_
#define MORVANE_BENCH_FILEBYTES_H_

#include <cstddef>
#include <cstdint>
#include <string>

// What nobody who changes a file can do without.
namespace bench {

// 0 when there is no such file.
std::size_t sizeOf(const std::string& path);

// Reads a file into `to`; false unless it has `size` bytes.
bool readInto(const std::string& path, std::uint8_t* to, std::size_t size);

// Replaces a file the way that keeps the old or the new one whole: written beside it, flushed,
// renamed, and the folder flushed.
void replaceFile(const std::string& path, const std::uint8_t* bytes, std::size_t size);

}  // namespace bench

#endif  // MORVANE_BENCH_FILEBYTES_H_
