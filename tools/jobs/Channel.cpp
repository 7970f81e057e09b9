#include "tools/jobs/Channel.h"

#include <cstdint>
#include <vector>

#include "tools/terminal/Platform.h"
#include "util/ByteOrder.h"

namespace tools {
namespace {

constexpr std::size_t kSizeBytes = 4;
constexpr std::uint32_t kLargest = std::uint32_t{1} << 30;

bool readExactly(int file, std::uint8_t* bytes, std::size_t size) {
  while (size > 0) {
    const std::ptrdiff_t count = readSome(file, reinterpret_cast<char*>(bytes), size);
    if (count <= 0) return false;
    bytes += count;
    size -= static_cast<std::size_t>(count);
  }
  return true;
}

}  // namespace

bool Channel::send(const Message& message) const {
  std::vector<std::uint8_t> bytes(kSizeBytes);
  Message::to_cbor(message, bytes);
  const std::size_t size = bytes.size() - kSizeBytes;
  if (size > kLargest) return false;
  morvane::storeLe32(bytes.data(), static_cast<std::uint32_t>(size));
  return writeAll(writeEnd_, reinterpret_cast<const char*>(bytes.data()), bytes.size());
}

std::optional<Message> Channel::receive() const {
  std::uint8_t head[kSizeBytes];
  if (!readExactly(readEnd_, head, sizeof head)) return std::nullopt;
  const std::uint32_t size = morvane::loadLe32(head);
  if (size > kLargest) return std::nullopt;
  std::vector<std::uint8_t> bytes(size);
  if (!readExactly(readEnd_, bytes.data(), size)) return std::nullopt;
  Message message = Message::from_cbor(bytes, true, false);
  if (!message.is_object()) return std::nullopt;
  return message;
}

}  // namespace tools
