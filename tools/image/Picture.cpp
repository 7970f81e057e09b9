#include "tools/image/Picture.h"

#include <algorithm>

#include "psd/PlaneRows.h"
#include "psd/PsdFormat.h"
#include "tools/image/LayerStack.h"
#include "tools/image/PictureGrid.h"

namespace tools {
namespace {

using morvane::PlaneRows;
using morvane::PsdDocument;
using Plane = std::vector<std::uint8_t>;

constexpr std::uint32_t kMaxShownSide = 300000;
constexpr std::uint32_t kPaletteSize = 256;  // entries, one plane of bytes for each of R, G, B

// The number of planes of a colour; 0 when the mode is not shown.
std::uint32_t colourPlanes(std::uint16_t mode) {
  const bool isShown = mode != morvane::kBitmapMode && mode != morvane::kLabMode;
  return isShown ? morvane::colourPlanesOf(mode) : 0;
}

// Averages the next plane of `rows` into one value for each cell. A sample has `step` bytes, of
// which only the first, the high one, counts. It is looked up in `palette` where there is one.
bool reducePlane(PlaneRows& rows, const PictureGrid& grid, std::uint32_t step,
                 const std::uint8_t* palette, Plane& plane) {
  plane.resize(grid.cells());
  std::vector<std::uint64_t> sums(grid.x.cells);
  std::vector<std::uint32_t> cellOf(grid.x.source);
  for (std::uint32_t x = 0; x < grid.x.source; ++x) cellOf[x] = grid.x.cellOf(x);
  for (std::uint32_t cellY = 0; cellY < grid.y.cells; ++cellY) {
    std::fill(sums.begin(), sums.end(), 0);
    for (std::uint32_t i = grid.y.size(cellY); i > 0; --i) {
      const std::uint8_t* row = rows.next();
      if (row == nullptr) return false;
      for (const std::uint32_t cell : cellOf) {
        sums[cell] += palette ? palette[*row] : *row;
        row += step;
      }
    }
    for (std::uint32_t x = 0; x < grid.x.cells; ++x) {
      const std::uint64_t count = std::uint64_t{grid.x.size(x)} * grid.y.size(cellY);
      plane[std::size_t{cellY} * grid.x.cells + x] =
          static_cast<std::uint8_t>((sums[x] + count / 2) / count);
    }
  }
  return true;
}

struct MergedImage {
  Plane colours[4];
  Plane alpha;  // empty: opaque
};

PlaneRows rowsOf(const PsdDocument& d) {
  const std::uint64_t rowBytes = std::uint64_t{d.columns} * (d.depth / 8u);
  return {d.mergedCompression, d.mergedData.get(), d.mergedLength, rowBytes,
          std::uint64_t{d.rows} * d.channels};
}

bool reduceMerged(const PsdDocument& d, const PictureGrid& grid, MergedImage& image) {
  const std::uint32_t step = d.depth / 8u;
  const std::uint32_t planes = colourPlanes(d.colourMode);
  if (d.colourMode == morvane::kIndexedMode) {
    for (std::uint32_t c = 0; c < 3; ++c) {
      PlaneRows rows = rowsOf(d);
      const std::uint8_t* palette = d.colourModeData.get() + c * kPaletteSize;
      if (!reducePlane(rows, grid, step, palette, image.colours[c])) return false;
    }
    return true;
  }
  PlaneRows rows = rowsOf(d);
  for (std::uint32_t c = 0; c < planes; ++c)
    if (!reducePlane(rows, grid, step, nullptr, image.colours[c])) return false;
  const bool hasAlpha = d.mergedAlpha && d.channels > planes;
  return !hasAlpha || reducePlane(rows, grid, step, nullptr, image.alpha);
}

std::uint8_t mixed(std::uint8_t ink, std::uint8_t black) {
  return static_cast<std::uint8_t>((ink * black + 127) / 255);
}

// Ink is stored the other way round: 255 is none.
void store(const MergedImage& image, std::uint16_t mode, Picture& picture) {
  const bool onePlane = colourPlanes(mode) == 1 && mode != morvane::kIndexedMode;
  std::uint8_t* to = picture.rgba.data();
  for (std::size_t i = 0; i < picture.rgba.size() / 4; ++i) {
    for (std::size_t c = 0; c < 3; ++c) {
      const std::uint8_t value = image.colours[onePlane ? 0 : c][i];
      *to++ = mode == morvane::kCmykMode ? mixed(value, image.colours[3][i]) : value;
    }
    *to++ = image.alpha.empty() ? 255 : image.alpha[i];
  }
}

bool isOneColour(const Picture& picture) {
  const auto& bytes = picture.rgba;
  return std::equal(bytes.begin() + 4, bytes.end(), bytes.begin());
}

constexpr std::uint8_t kNearlyBlack = 8;

bool isBlack(const Picture& picture) {
  for (std::size_t i = 0; i < picture.rgba.size(); ++i)
    if (i % 4 != 3 && picture.rgba[i] > kNearlyBlack) return false;
  return true;
}

void noteTransparency(Picture& picture) {
  for (std::size_t i = 3; i < picture.rgba.size(); i += 4)
    if (picture.rgba[i] < 255) picture.transparent = true;
}

bool hasShownSize(const PsdDocument& document) {
  return std::min(document.columns, document.rows) > 0 &&
         std::max(document.columns, document.rows) <= kMaxShownSide;
}

// Why the merged image cannot be shown, as far as the header tells; empty when it may be.
std::string refusal(const PsdDocument& d) {
  if (colourPlanes(d.colourMode) == 0)
    return "pictures of colour mode " + std::to_string(d.colourMode) + " are not shown";
  if (d.depth != 8 && d.depth != 16)
    return "pictures of " + std::to_string(d.depth) + " bits are not shown";
  if (d.mergedCompression > 1) {
    return "the merged image is compressed in a way that is not read (" +
           std::to_string(d.mergedCompression) + ")";
  }
  const bool planesMissing = d.channels < colourPlanes(d.colourMode);
  const bool paletteMissing =
      d.colourMode == morvane::kIndexedMode && d.colourModeLength < 3 * kPaletteSize;
  if (planesMissing || paletteMissing) return "the merged image has no colours";
  return rowsOf(d).isReadable() ? "" : "the merged image is cut off";
}

bool readMerged(const PsdDocument& document, const PictureGrid& grid, Picture& picture,
                std::string& fault) {
  fault = refusal(document);
  if (!fault.empty()) return false;
  MergedImage image;
  if (!reduceMerged(document, grid, image)) {
    fault = "the merged image is cut off";
    return false;
  }
  picture.rgba.resize(4 * grid.cells());
  store(image, document.colourMode, picture);
  return true;
}

void averageCell(const Picture& picture, const PictureGrid& grid, std::uint32_t cellX,
                 std::uint32_t cellY, std::uint8_t* to) {
  std::uint64_t sums[4] = {};
  for (std::uint32_t y = grid.y.first(cellY); y < grid.y.first(cellY + 1); ++y) {
    const std::uint8_t* from =
        &picture.rgba[4 * (std::size_t{y} * picture.width + grid.x.first(cellX))];
    for (std::uint32_t i = 0; i < 4 * grid.x.size(cellX); ++i) sums[i % 4] += *from++;
  }
  const std::uint64_t count = std::uint64_t{grid.x.size(cellX)} * grid.y.size(cellY);
  for (int c = 0; c < 4; ++c) to[c] = static_cast<std::uint8_t>((sums[c] + count / 2) / count);
}

}  // namespace

bool readPicture(const PsdDocument& document, std::uint32_t maxSide, Picture& picture,
                 std::string& fault) {
  if (!hasShownSize(document)) {
    fault = "an image of " + std::to_string(document.columns) + " x " +
            std::to_string(document.rows) + " pixels is not shown";
    return false;
  }
  const PictureGrid grid(document.columns, document.rows, maxSide);
  picture = Picture();
  picture.width = grid.x.cells;
  picture.height = grid.y.cells;
  const bool merged = readMerged(document, grid, picture, fault);
  if (!merged || isOneColour(picture) || isBlack(picture)) {
    Picture composed = picture;
    if (composeLayers(document, grid, composed)) picture = std::move(composed);
  }
  if (!merged && !picture.composed) return false;
  picture.black = isBlack(picture);
  noteTransparency(picture);
  return true;
}

std::optional<Picture> readComposite(const PsdDocument& document, std::uint32_t maxSide) {
  if (!hasShownSize(document)) return std::nullopt;
  const PictureGrid grid(document.columns, document.rows, maxSide);
  Picture picture;
  picture.width = grid.x.cells;
  picture.height = grid.y.cells;
  if (!composeLayers(document, grid, picture)) return std::nullopt;
  picture.black = isBlack(picture);
  noteTransparency(picture);
  return picture;
}

std::optional<LayerPicture> readLayer(const PsdDocument& document, std::int32_t index,
                                      std::uint32_t maxSide) {
  Picture whole;
  if (!hasShownSize(document)) return std::nullopt;
  const PictureGrid grid(document.columns, document.rows, maxSide);
  if (!paintLayer(document, index, grid, whole)) return std::nullopt;
  std::uint32_t left = whole.width;
  std::uint32_t top = whole.height;
  std::uint32_t right = 0;
  std::uint32_t bottom = 0;
  for (std::uint32_t y = 0; y < whole.height; ++y) {
    for (std::uint32_t x = 0; x < whole.width; ++x) {
      if (whole.rgba[4 * (std::size_t{y} * whole.width + x) + 3] == 0) continue;
      left = std::min(left, x);
      right = std::max(right, x + 1);
      top = std::min(top, y);
      bottom = y + 1;
    }
  }
  LayerPicture layer;
  layer.left = left;
  layer.top = top;
  layer.picture.width = right > left ? right - left : 0;
  layer.picture.height = bottom > top ? bottom - top : 0;
  if (layer.picture.width == 0 || layer.picture.height == 0) return std::nullopt;
  for (std::uint32_t y = top; y < bottom; ++y) {
    const auto row = whole.rgba.begin() + std::ptrdiff_t{4} * y * whole.width;
    layer.picture.rgba.insert(layer.picture.rgba.end(), row + std::ptrdiff_t{4} * left,
                              row + std::ptrdiff_t{4} * right);
  }
  noteTransparency(layer.picture);
  return layer;
}

Picture scaledDown(const Picture& picture, std::uint32_t maxSide) {
  const PictureGrid grid(picture.width, picture.height, maxSide);
  Picture small;
  small.width = grid.x.cells;
  small.height = grid.y.cells;
  small.transparent = picture.transparent;
  small.composed = picture.composed;
  small.black = picture.black;
  small.rgba.resize(4 * grid.cells());
  for (std::uint32_t y = 0; y < small.height; ++y)
    for (std::uint32_t x = 0; x < small.width; ++x)
      averageCell(picture, grid, x, y, &small.rgba[4 * (std::size_t{y} * small.width + x)]);
  return small;
}

}  // namespace tools
