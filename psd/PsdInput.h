#ifndef MORVANE_PSD_PSDINPUT_H_
#define MORVANE_PSD_PSDINPUT_H_

#include <cstddef>
#include <cstdint>
#include <string>

#include "psd/PsdRecords.h"
#include "util/Status.h"

namespace morvane {

// Reads big-endian numbers and bytes of a file in memory, never past the end of the current part.
// The first attempt to do so is kept as the status, and every later read gives zeros. So callers
// need ask ok() only before they loop over what they have read, or take memory for it.
class PsdInput {
 public:
  // The bytes outlive this object and what it hands out.
  PsdInput(std::uint8_t* bytes, std::size_t size) : bytes_(bytes), end_(size) {}

  bool ok() const { return status_.ok(); }
  const Status& status() const { return status_; }
  std::size_t position() const { return position_; }
  std::size_t left() const { return end_ - position_; }

  std::uint8_t u8();
  std::uint16_t u16();
  std::uint32_t u32();
  std::int32_t i32() { return static_cast<std::int32_t>(u32()); }
  void copy(void* to, std::size_t size);

  // A view of the next `size` bytes, which are then read; null when there are fewer.
  std::uint8_t* take(std::size_t size);
  PsdOpaque takeOpaque(std::size_t size);

  // Names what is being read, for the status: "layer 3". The text outlives this object.
  void setPart(const char* name, int index = -1);

  void fail(const std::string& what, StatusCode code = StatusCode::kDamaged);
  void failForMemory() { fail("out of memory", StatusCode::kOutOfMemory); }

 private:
  friend class PsdPart;

  bool has(std::size_t size);

  std::uint8_t* bytes_;
  std::size_t position_ = 0;
  std::size_t end_;
  const char* partName_ = "header";
  int partIndex_ = -1;
  Status status_;
};

// While it lives, the next `length` bytes are all that the input has left. A length over what was
// left is the input's error.
class PsdPart {
 public:
  PsdPart(PsdInput& in, std::size_t length);
  ~PsdPart() { in_.end_ = outerEnd_; }
  PsdPart(const PsdPart&) = delete;
  PsdPart& operator=(const PsdPart&) = delete;

 private:
  PsdInput& in_;
  std::size_t outerEnd_;
};

}  // namespace morvane

#endif  // MORVANE_PSD_PSDINPUT_H_
