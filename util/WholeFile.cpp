#include "util/WholeFile.h"

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <new>
#include <system_error>

#include "util/LargePages.h"

namespace morvane {

namespace {

struct CloseFile {
  void operator()(std::FILE* file) const { std::fclose(file); }
};
using File = std::unique_ptr<std::FILE, CloseFile>;

std::string lastReason() {
  return std::generic_category().message(errno);
}

// Reads until `size` bytes are there, the file ends or an error comes; a signal does not end it.
std::size_t readUpTo(std::FILE* file, std::uint8_t* to, std::size_t size) {
  std::size_t got = 0;
  while (got < size) {
    errno = 0;
    got += std::fread(to + got, 1, size - got, file);
    if (got == size || !std::ferror(file) || errno != EINTR) break;
    std::clearerr(file);
  }
  return got;
}

bool regularFileSize(const char* path, std::uint64_t& size, std::string& error) {
  std::error_code code;
  const std::filesystem::file_status status = std::filesystem::status(path, code);
  if (!std::filesystem::is_regular_file(status)) {
    if (!code) code = std::make_error_code(std::errc::is_a_directory);
    error = std::filesystem::is_directory(status) || !std::filesystem::exists(status)
                ? code.message()
                : "not a regular file";
    return false;
  }
  size = std::filesystem::file_size(path, code);
  if (code) error = code.message();
  return !code;
}

}  // namespace

bool readWholeFile(const char* path, std::uint64_t maxSize, std::unique_ptr<std::uint8_t[]>& bytes,
                   std::size_t& size, std::string& error) {
  std::uint64_t expected = 0;
  if (!regularFileSize(path, expected, error)) return false;
  if (expected > maxSize) {
    error = "too large: " + std::to_string(expected) + " bytes, at most " + std::to_string(maxSize);
    return false;
  }
  const File file(std::fopen(path, "rb"));
  if (!file) {
    error = lastReason();
    return false;
  }
  std::setvbuf(file.get(), nullptr, _IONBF, 0);  // straight into our buffer
  // One byte more than expected tells a file that has grown.
  const auto room = static_cast<std::size_t>(expected) + 1;
  std::unique_ptr<std::uint8_t[]> buffer(new (std::nothrow) std::uint8_t[room]);
  if (!buffer) {
    error = "out of memory for " + std::to_string(expected) + " bytes";
    return false;
  }
  askForLargePages(buffer.get(), room);
  // Files of the system's own say that they are empty, and some wait for ever for what they have to
  // tell: what is empty is not read.
  const std::size_t got = expected == 0 ? 0 : readUpTo(file.get(), buffer.get(), room);
  if (got != expected) {
    error = std::ferror(file.get()) ? lastReason() : "changed while it was read";
    return false;
  }
  bytes = std::move(buffer);
  size = got;
  return true;
}

}  // namespace morvane
