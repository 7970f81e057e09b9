#ifndef MORVANE_TOOLS_IMAGE_PICTUREGRID_H_
#define MORVANE_TOOLS_IMAGE_PICTUREGRID_H_

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace tools {

// Cuts one side of an image into the pixels of a smaller picture: every source pixel belongs to
// exactly one cell, and every cell has at least one.
struct PictureAxis {
  std::uint32_t source;  // at least 1
  std::uint32_t cells;   // 1 to source

  std::uint32_t cellOf(std::uint32_t position) const {
    return static_cast<std::uint32_t>(std::uint64_t{position} * cells / source);
  }
  std::uint32_t first(std::uint32_t cell) const {
    return static_cast<std::uint32_t>((std::uint64_t{cell} * source + cells - 1) / cells);
  }
  std::uint32_t size(std::uint32_t cell) const { return first(cell + 1) - first(cell); }
};

struct PictureGrid {
  PictureAxis x;
  PictureAxis y;

  PictureGrid(std::uint32_t width, std::uint32_t height, std::uint32_t maxSide)
      : x{width, shrunk(width, std::max(width, height), maxSide)},
        y{height, shrunk(height, std::max(width, height), maxSide)} {}

  std::size_t cells() const { return std::size_t{x.cells} * y.cells; }

 private:
  static std::uint32_t shrunk(std::uint32_t side, std::uint32_t longer, std::uint32_t maxSide) {
    if (longer <= maxSide) return side;
    return std::max(1u, static_cast<std::uint32_t>(std::uint64_t{side} * maxSide / longer));
  }
};

}  // namespace tools

#endif  // MORVANE_TOOLS_IMAGE_PICTUREGRID_H_
