#ifndef MORVANE_PSD_PLANEPACKER_H_
#define MORVANE_PSD_PLANEPACKER_H_

#include <cstddef>
#include <cstdint>
#include <memory>

#include "psd/PackBitsKernel.h"

namespace morvane {

// Packs a plane (see psd/PackBits.h) of which only one row at a time need be there.
//
//   PlanePacker packer(width, height);
//   for (...) packer.pack(row);
//   packed = packer.take(length);
//
// After a failure, for which there is missing memory or a plane that would not fit 32 bits, the
// other calls do nothing and take() gives null.
class PlanePacker {
 public:
  PlanePacker(std::uint32_t width, std::uint32_t height);

  // Packs the next row, `width` bytes.
  void pack(const std::uint8_t* row);

  // Packs `count` rows of equal bytes.
  void packConstant(std::uint8_t value, std::uint32_t count);

  // Packs `count` more rows like the one before.
  void repeat(std::uint32_t count);

  // The packed plane, for the caller to keep, once all rows are packed.
  std::unique_ptr<std::uint8_t[]> take(std::uint32_t& packedLength);

 private:
  bool reserve(std::uint64_t size);
  bool grow(std::uint64_t size);
  void finishRow(std::size_t length);

  const PackBitsKernel& kernel_ = packBitsKernel();
  std::size_t width_;
  std::size_t height_;
  std::size_t rows_ = 0;     // that are packed
  std::size_t lastRow_ = 0;  // its packed length
  std::unique_ptr<std::uint8_t[]> packed_;
  std::size_t capacity_ = 0;
  std::size_t length_;  // with the table of row lengths
  bool failed_ = false;
};

}  // namespace morvane

#endif  // MORVANE_PSD_PLANEPACKER_H_
