#include "library/DocumentFile.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <new>
#include <string>
#include <system_error>

#include "util/FileExtension.h"

namespace morvane {
namespace {

// A path with a zero byte would name another file than the caller means.
bool isPath(std::string_view path) {
  return !path.empty() && path.find('\0') == std::string_view::npos;
}

Status badPath() {
  return {StatusCode::kBadArgument, "a path is neither empty nor holds a zero byte"};
}

// Why a file that was not loaded was not: what the system says of the name, before what the content
// may be.
StatusCode readFailure(const std::string& path) {
  const std::string extension = lowerExtension(path);
  if (extension != ".psd" && extension != ".tga") return StatusCode::kBadArgument;
  std::error_code code;
  const std::filesystem::file_status status = std::filesystem::status(path, code);
  if (code == std::errc::permission_denied) return StatusCode::kNotAllowed;
  if (!std::filesystem::exists(status)) return StatusCode::kNotFound;
  if (!std::filesystem::is_regular_file(status)) return StatusCode::kCannotRead;
  errno = 0;
  std::FILE* const file = std::fopen(path.c_str(), "rb");
  if (file == nullptr) return errno == EACCES ? StatusCode::kNotAllowed : StatusCode::kCannotRead;
  std::fclose(file);
  return StatusCode::kDamaged;
}

// What keeps a file from being written is known by trying: a folder that takes no new name, or a
// file that may not be changed.
StatusCode writeFailure(const std::string& path) {
  std::error_code code;
  const std::filesystem::path folder = std::filesystem::path(path).parent_path();
  const auto folderStatus = std::filesystem::status(folder.empty() ? "." : folder, code);
  if (code == std::errc::permission_denied) return StatusCode::kNotAllowed;
  if (!std::filesystem::exists(folderStatus)) return StatusCode::kNotFound;
  errno = 0;
  std::FILE* const file = std::fopen(path.c_str(), "r+b");
  const int reason = errno;
  if (file != nullptr) std::fclose(file);
  return file == nullptr && reason == EACCES ? StatusCode::kNotAllowed : StatusCode::kCannotWrite;
}

}  // namespace

Status loadDocument(std::string_view path, PsdDocument& document) {
  if (!isPath(path)) return badPath();
  const std::string name(path);
  std::string error;
  if (document.load(name.c_str(), &error)) return {};
  return {readFailure(name), name + ": " + error};
}

Status parseDocument(std::unique_ptr<std::uint8_t[]> bytes, std::size_t size,
                     PsdDocument& document) {
  std::string error;
  if (document.loadBytes(std::move(bytes), size, &error)) return {};
  return {StatusCode::kDamaged, error};
}

Status parseDocument(const std::uint8_t* bytes, std::size_t size, PsdDocument& document) {
  std::unique_ptr<std::uint8_t[]> copy(new (std::nothrow) std::uint8_t[size + 1]);
  if (copy == nullptr)
    return {StatusCode::kOutOfMemory, "no memory for " + std::to_string(size) + " bytes"};
  if (size != 0) std::memcpy(copy.get(), bytes, size);
  return parseDocument(std::move(copy), size, document);
}

Status saveDocument(const PsdDocument& document, std::string_view path) {
  if (!isPath(path)) return badPath();
  const std::string name(path);
  std::string error;
  if (document.save(name.c_str(), &error)) return {};
  return {writeFailure(name), error};
}

Status writeDocument(const PsdDocument& document, std::vector<std::uint8_t>& bytes) {
  std::string error;
  if (document.saveBytes(bytes, &error)) return {};
  return {StatusCode::kDamaged, error};
}

}  // namespace morvane
