#include "util/InputFile.h"

#include <algorithm>
#include <cerrno>
#include <string>
#include <system_error>

#include "util/FileFacts.h"
#include "util/Path.h"
#include "util/SystemStatus.h"

namespace morvane {

namespace {

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

Status regularFileSize(const char* path, std::uint64_t& size) {
  const Status named = checkFileName(path);
  if (!named.ok()) return named;
  const FileFacts facts = factsOf(path);
  if (facts.isFolder()) return errnoStatus(EISDIR, StatusCode::kNotAFile);
  if (!facts.exists()) return systemStatus(facts.error, StatusCode::kCannotRead);
  if (!facts.isFile()) return {StatusCode::kNotAFile, "not a regular file"};
  size = facts.size;
  return facts.error ? systemStatus(facts.error, StatusCode::kCannotRead) : Status();
}

}  // namespace

Status InputFile::open(const char* path, std::uint64_t maxSize) {
  const Status found = regularFileSize(path, size_);
  if (!found.ok()) return found;
  if (size_ > maxSize) {
    return {StatusCode::kTooLarge,
            "too large: " + std::to_string(size_) + " bytes, at most " + std::to_string(maxSize)};
  }
  file_.reset(openToRead(path));
  if (!file_) return errnoStatus(errno, StatusCode::kCannotRead);
  identity_ = identityOf(file_.get());
  std::setvbuf(file_.get(), nullptr, _IONBF, 0);  // straight to where it is wanted
  return {};
}

Status InputFile::read(std::uint64_t start, std::uint8_t* to, std::size_t count, std::size_t& got) {
  const std::uint64_t promised = std::min<std::uint64_t>(count, size_ - std::min(start, size_));
  got = seek(file_.get(), start) ? readUpTo(file_.get(), to, count) : 0;
  if (got >= promised) return {};
  if (std::ferror(file_.get())) return errnoStatus(errno, StatusCode::kCannotRead);
  return {StatusCode::kChanged, "changed while it was read"};
}

}  // namespace morvane
