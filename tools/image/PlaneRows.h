#ifndef MORVANE_TOOLS_IMAGE_PLANEROWS_H_
#define MORVANE_TOOLS_IMAGE_PLANEROWS_H_

#include <cstddef>
#include <cstdint>
#include <vector>

namespace tools {

// Gives the rows of a raw or packed plane (see psd/PackBits.h) one after the other, so that a
// picture of any size is read with a few rows of memory. Rows of several planes that lie behind one
// another, as in a merged image, are one long plane.
class PlaneRows {
 public:
  // `data` must outlive this object. `height` rows of `rowBytes` bytes; a packed plane starts with
  // as many row lengths, which are stepped over.
  PlaneRows(std::uint16_t compression, const std::uint8_t* data, std::size_t length,
            std::uint64_t rowBytes, std::uint64_t height);

  // False when the compression is none of the two, or when so few bytes cannot hold such rows.
  bool isReadable() const { return readable_; }

  // The next row, good until the next call; null when the data ends before the row does.
  const std::uint8_t* next();

 private:
  bool takePacket();
  std::size_t unpack(std::uint8_t* to, std::size_t room);

  const std::uint8_t* at_;
  const std::uint8_t* end_;
  std::size_t rowBytes_;
  std::vector<std::uint8_t> row_;  // of a packed plane
  std::size_t literal_ = 0;        // what is left of the packet that the last row ended in
  std::size_t repeats_ = 0;
  bool packed_;
  bool readable_;
};

}  // namespace tools

#endif  // MORVANE_TOOLS_IMAGE_PLANEROWS_H_
