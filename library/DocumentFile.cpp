#include "library/DocumentFile.h"

#include <cstring>
#include <new>
#include <string>
#include <utility>

namespace morvane {
namespace {

// The system would read a path only up to its zero byte, and open another file.
bool isPath(std::string_view path) {
  return !path.empty() && path.find('\0') == std::string_view::npos;
}

Status badPath() {
  return {StatusCode::kBadArgument, "a path is neither empty nor holds a zero byte"};
}

}  // namespace

Status loadDocument(std::string_view path, PsdDocument& document) {
  if (!isPath(path)) return badPath();
  const std::string name(path);
  Status status;
  if (document.load(name.c_str(), &status)) return status;
  return {status.code(), name + ": " + status.text()};
}

Status parseDocument(std::unique_ptr<std::uint8_t[]> bytes, std::size_t size,
                     PsdDocument& document) {
  Status status;
  document.loadBytes(std::move(bytes), size, &status);
  return status;
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
  Status status;
  document.save(std::string(path).c_str(), &status);
  return status;
}

Status writeDocument(const PsdDocument& document, std::vector<std::uint8_t>& bytes) {
  Status status;
  document.saveBytes(bytes, &status);
  return status;
}

}  // namespace morvane
