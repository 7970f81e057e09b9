#include "bench/FileBytes.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>

namespace bench {

std::size_t sizeOf(const std::string& path) {
  std::error_code code;
  const auto size = std::filesystem::file_size(path, code);
  return code ? 0 : static_cast<std::size_t>(size);
}

bool readInto(const std::string& path, std::uint8_t* to, std::size_t size) {
  const int file = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
  std::size_t got = 0;
  for (ssize_t part = 1; part > 0 && got < size; got += static_cast<std::size_t>(part))
    part = ::read(file, to + got, size - got);
  ::close(file);
  return got == size;
}

void replaceFile(const std::string& path, const std::uint8_t* bytes, std::size_t size) {
  const std::string temporary = path + ".new";
  const int file = ::open(temporary.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
  while (size != 0) {
    const ssize_t part = ::write(file, bytes, size);
    if (part <= 0) break;
    bytes += part;
    size -= static_cast<std::size_t>(part);
  }
  ::fsync(file);
  ::close(file);
  ::rename(temporary.c_str(), path.c_str());
  const std::string parent = std::filesystem::path(path).parent_path().string();
  const int folder = ::open(parent.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  ::fsync(folder);
  ::close(folder);
}

}  // namespace bench
