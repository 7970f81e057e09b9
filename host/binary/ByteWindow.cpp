#include "host/binary/ByteWindow.h"

#include <algorithm>
#include <new>

namespace host {
namespace {

// As large as several of the blocks in which mesh tables are read, so that nothing is read twice.
constexpr std::size_t kBlock = std::size_t{384} << 10;

}  // namespace

morvane::Status ByteWindow::open(const std::string& path) {
  begin_ = 0;
  held_ = 0;
  status_ = {};
  return file_.open(path.c_str(), UINT64_MAX);
}

const std::uint8_t* ByteWindow::at(std::uint64_t start, std::size_t count) {
  if (failed() || start > size() || count > size() - start) return nullptr;
  const bool held = start >= begin_ && start - begin_ <= held_ && count <= held_ - (start - begin_);
  if (!held && !fill(start, count)) return nullptr;
  return buffer_.get() + (start - begin_);
}

// A large request gets a buffer of its own size; the next small request frees it.
bool ByteWindow::fill(std::uint64_t start, std::size_t count) {
  const std::size_t wanted = std::max(count, kBlock);
  if (wanted > capacity_ || capacity_ > 4 * wanted) {
    buffer_.reset();
    buffer_.reset(new (std::nothrow) std::uint8_t[wanted]);
    capacity_ = buffer_ == nullptr ? 0 : wanted;
  }
  held_ = 0;
  if (buffer_ == nullptr) {
    status_ = {morvane::StatusCode::kOutOfMemory, "out of memory"};
    return false;
  }
  const auto available = std::min<std::uint64_t>(wanted, size() - start);
  begin_ = start;
  status_ = file_.read(start, buffer_.get(), static_cast<std::size_t>(available), held_);
  return !failed();
}

}  // namespace host
