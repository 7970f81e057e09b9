#include "util/FileFacts.h"

#ifdef _WIN32
#include <fcntl.h>
#include <io.h>

#include <cerrno>

#include "util/Path.h"
#include "util/WindowsHandles.h"
#endif

namespace morvane {

namespace fs = std::filesystem;

#ifdef _WIN32

namespace {

std::error_code lastError() {
  return std::error_code(static_cast<int>(GetLastError()), std::system_category());
}

FileFacts missing(const std::error_code& error) {
  const bool isNotThere = error == std::errc::no_such_file_or_directory;
  return {isNotThere ? fs::file_type::not_found : fs::file_type::none, 0, error};
}

}  // namespace

// The standard library is not used: in some implementations its calls refuse long paths.
FileFacts factsOf(const std::string& name) {
  if (!checkFileName(name).ok())
    return missing(std::error_code(ERROR_FILE_NOT_FOUND, std::system_category()));
  const HANDLE file = openToLook(systemPath(name).native(), FILE_FLAG_BACKUP_SEMANTICS);
  if (file == INVALID_HANDLE_VALUE) return missing(lastError());
  FileFacts facts;
  BY_HANDLE_FILE_INFORMATION found;
  if (GetFileType(file) != FILE_TYPE_DISK) {
    facts.type = fs::file_type::character;
  } else if (!GetFileInformationByHandle(file, &found)) {
    facts.error = lastError();
  } else if (found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) {
    facts.type = fs::file_type::directory;
  } else {
    facts.type = fs::file_type::regular;
    facts.size = std::uint64_t{found.nFileSizeHigh} << 32 | found.nFileSizeLow;
  }
  CloseHandle(file);
  return facts;
}

// The library's own call would keep others from renaming the file.
std::FILE* openToRead(const std::string& name) {
  if (!checkFileName(name).ok()) {
    errno = EINVAL;
    return nullptr;
  }
  const HANDLE file = CreateFileW(systemPath(name).c_str(), GENERIC_READ, kShareAll, nullptr,
                                  OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (file == INVALID_HANDLE_VALUE) {
    errno = lastError().default_error_condition().value();
    return nullptr;
  }
  const int descriptor =
      ::_open_osfhandle(reinterpret_cast<std::intptr_t>(file), _O_RDONLY | _O_BINARY);
  if (descriptor < 0) CloseHandle(file);
  std::FILE* const stream = descriptor < 0 ? nullptr : ::_fdopen(descriptor, "rb");
  if (stream == nullptr && descriptor >= 0) ::_close(descriptor);
  return stream;
}

#else

FileFacts factsOf(const std::string& name) {
  FileFacts facts;
  facts.type = fs::status(name, facts.error).type();
  const std::uintmax_t size = facts.isFile() ? fs::file_size(name, facts.error) : 0;
  if (!facts.error) facts.size = size;
  return facts;
}

std::FILE* openToRead(const std::string& name) {
  return std::fopen(name.c_str(), "rb");
}

#endif

}  // namespace morvane
