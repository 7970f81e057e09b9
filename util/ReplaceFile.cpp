#include "util/ReplaceFile.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <new>

#include "util/ReplaceFileTarget.h"

namespace morvane {

namespace {

constexpr std::size_t kBufferSize = 64 * 1024;
constexpr long kLongestWait = 24L * 60 * 60;

SaveSettings settingsOfEnvironment() {
  SaveSettings settings;
  const char* const wait = std::getenv("MORVANE_WAIT");
  char* end = nullptr;
  const long seconds = wait != nullptr ? std::strtol(wait, &end, 10) : 0;
  if (wait != nullptr && end != wait && *end == '\0')
    settings.waitSeconds = static_cast<int>(std::clamp(seconds, 0L, kLongestWait));
  const char* const inPlace = std::getenv("MORVANE_IN_PLACE");
  settings.inPlace = inPlace != nullptr && std::strcmp(inPlace, "1") == 0;
  return settings;
}

}  // namespace

std::string temporaryName(unsigned long process, unsigned number) {
  char name[64];
  std::snprintf(name, sizeof name, ".morvane-%lx-%x.tmp", process, number);
  return name;
}

bool isTemporaryName(const std::string& name) {
  unsigned long process = 0;
  unsigned number = 0;
  return std::sscanf(name.c_str(), ".morvane-%lx-%x", &process, &number) == 2 &&
         name == temporaryName(process, number);
}

FileReplacer::FileReplacer() = default;
FileReplacer::~FileReplacer() = default;

bool FileReplacer::open(const char* path) {
  path_ = path ? path : "";
  target_.reset(new (std::nothrow) Target);
  buffer_.reset(new (std::nothrow) std::uint8_t[kBufferSize]);
  if (!target_ || !buffer_) return fail({StatusCode::kOutOfMemory, "out of memory"});
  target_->settings = settingsOfEnvironment();
  const Status opened = target_->open(path_, otherNames_);
  return opened.ok() || fail(opened);
}

bool FileReplacer::append(const void* bytes, std::size_t size) {
  if (!target_) return false;
  if (size > kBufferSize - buffered_ && !flush()) return false;
  const auto* const from = static_cast<const std::uint8_t*>(bytes);
  if (size >= kBufferSize) return write(from, size);
  if (size != 0) std::memcpy(buffer_.get() + buffered_, from, size);
  buffered_ += size;
  return true;
}

bool FileReplacer::commit() {
  if (!target_ || !flush()) return false;
  const Status committed = target_->commit(expects_ ? &read_ : nullptr, written_);
  if (!committed.ok()) return fail(committed);
  target_.reset();
  return true;
}

bool FileReplacer::flush() {
  const std::size_t size = buffered_;
  buffered_ = 0;
  return write(buffer_.get(), size);
}

bool FileReplacer::write(const std::uint8_t* bytes, std::size_t size) {
  while (size != 0) {
    std::size_t written = 0;
    const Status taken = target_->write(bytes, size, written);
    if (!taken.ok()) return fail(taken);
    bytes += written;
    size -= written;
  }
  return true;
}

bool FileReplacer::fail(const Status& reason) {
  status_ = {reason.code(), "cannot write " + path_ + ": " + reason.text()};
  target_.reset();  // removes the temporary file
  return false;
}

}  // namespace morvane
