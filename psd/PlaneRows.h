#ifndef MORVANE_PSD_PLANEROWS_H_
#define MORVANE_PSD_PLANEROWS_H_

#include <cstddef>
#include <cstdint>
#include <memory>

namespace morvane {

// Gives the rows of a raw or packed plane (see psd/PackBits.h) one after the other, so that a
// picture of any size is read with a few rows of memory. Rows of several planes that lie behind one
// another, as in a merged image, are one long plane.
class PlaneRows {
 public:
  // `data` must outlive this object. `height` rows of `rowBytes` bytes; a packed plane starts with
  // as many row lengths, which are stepped over.
  PlaneRows(std::uint16_t compression, const std::uint8_t* data, std::size_t length,
            std::uint64_t rowBytes, std::uint64_t height);

  // False when the compression is unknown, when the bytes cannot hold even one row, and when there
  // is no memory for one.
  bool isReadable() const { return readable_; }

  // Whether so many bytes can hold all of the rows. Asked before memory for all rows is taken, it
  // keeps that memory in proportion to the file. Whether they do hold them is known only after the
  // last row.
  bool mayBeWhole() const { return mayBeWhole_; }

  // The next row, good until the next call; null when the data ends before the row does.
  const std::uint8_t* next();

 private:
  bool fill();

  const std::uint8_t* at_;
  const std::uint8_t* end_;
  std::size_t rowBytes_;
  bool packed_;
  bool readable_ = false;
  bool mayBeWhole_ = false;
  // Of a packed plane: bytes still packed, and some already unpacked.
  std::uint64_t left_ = 0;
  std::unique_ptr<std::uint8_t[]> unpacked_;
  std::size_t capacity_ = 0;
  std::size_t begin_ = 0;
  std::size_t held_ = 0;
};

}  // namespace morvane

#endif  // MORVANE_PSD_PLANEROWS_H_
