#include "util/InputFile.h"

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <system_error>

namespace morvane {

namespace {

std::string lastReason() {
  return std::generic_category().message(errno);
}

bool seek(std::FILE* file, std::uint64_t place) {
#ifdef _WIN32
  return ::_fseeki64(file, static_cast<long long>(place), SEEK_SET) == 0;
#else
  return ::fseeko(file, static_cast<off_t>(place), SEEK_SET) == 0;
#endif
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

bool InputFile::open(const char* path, std::uint64_t maxSize, std::string& error) {
  if (!regularFileSize(path, size_, error)) return false;
  if (size_ > maxSize) {
    error = "too large: " + std::to_string(size_) + " bytes, at most " + std::to_string(maxSize);
    return false;
  }
  file_.reset(std::fopen(path, "rb"));
  if (!file_) {
    error = lastReason();
    return false;
  }
  identity_ = identityOf(file_.get());
  std::setvbuf(file_.get(), nullptr, _IONBF, 0);  // straight to where it is wanted
  return true;
}

std::size_t InputFile::read(std::uint64_t start, std::uint8_t* to, std::size_t count,
                            std::string& error) {
  const std::uint64_t promised = std::min<std::uint64_t>(count, size_ - std::min(start, size_));
  const std::size_t got = seek(file_.get(), start) ? readUpTo(file_.get(), to, count) : 0;
  if (got < promised) error = std::ferror(file_.get()) ? lastReason() : "changed while it was read";
  return got;
}

}  // namespace morvane
