#include "psd/PsdInput.h"

#include <cstring>

#include "util/ByteOrder.h"

namespace morvane {

std::uint8_t PsdInput::u8() {
  const std::uint8_t* const at = take(1);
  return at ? *at : std::uint8_t{0};
}

std::uint16_t PsdInput::u16() {
  const std::uint8_t* const at = take(2);
  return at ? loadBe16(at) : std::uint16_t{0};
}

std::uint32_t PsdInput::u32() {
  const std::uint8_t* const at = take(4);
  return at ? loadBe32(at) : std::uint32_t{0};
}

void PsdInput::copy(void* to, std::size_t size) {
  const std::uint8_t* const at = take(size);
  if (at && size != 0) std::memcpy(to, at, size);
}

std::uint8_t* PsdInput::take(std::size_t size) {
  if (!has(size)) return nullptr;
  std::uint8_t* const at = bytes_ + position_;
  position_ += size;
  return at;
}

PsdOpaque PsdInput::takeOpaque(std::size_t size) {
  PsdOpaque taken;
  if (size == 0) return taken;
  std::uint8_t* const at = take(size);
  if (!at) return taken;
  taken.length = static_cast<std::uint32_t>(size);
  taken.bytes = Bytes::view(at);
  return taken;
}

void PsdInput::setPart(const char* name, int index) {
  partName_ = name;
  partIndex_ = index;
}

void PsdInput::fail(const std::string& what, StatusCode code) {
  if (!ok()) return;
  const std::string index = partIndex_ >= 0 ? ' ' + std::to_string(partIndex_) : std::string();
  status_ = {code, partName_ + index + ": " + what + " at byte " + std::to_string(position_)};
}

bool PsdInput::has(std::size_t size) {
  if (size > left())
    fail(std::to_string(size) + " bytes wanted, " + std::to_string(left()) + " left");
  return ok();
}

PsdPart::PsdPart(PsdInput& in, std::size_t length) : in_(in), outerEnd_(in.end_) {
  if (in.has(length)) in.end_ = in.position_ + length;
}

}  // namespace morvane
