#include "tools/image/LayerStack.h"

#include <algorithm>
#include <cstring>
#include <optional>
#include <string_view>

#include "geometry/GoblinGeometry.h"
#include "psd/PlaneRows.h"
#include "psd/PsdFormat.h"
#include "util/ByteOrder.h"

namespace tools {
namespace {

using morvane::PlaneRows;
using morvane::PsdChannelInfo;
using morvane::PsdDocument;
using morvane::PsdLayer;

using BlendFunction = float (*)(float below, float above);

float normalBlend(float, float above) {
  return above;
}
float multiply(float below, float above) {
  return below * above;
}
float screen(float below, float above) {
  return below + above - below * above;
}
float overlay(float below, float above) {
  return below <= 0.5f ? 2 * below * above : 1 - 2 * (1 - below) * (1 - above);
}
float darken(float below, float above) {
  return std::min(below, above);
}
float lighten(float below, float above) {
  return std::max(below, above);
}
float linearDodge(float below, float above) {
  return std::min(1.0f, below + above);
}

BlendFunction blendOf(const char* key) {
  static constexpr struct {
    std::string_view key;
    BlendFunction function;
  } kModes[] = {{"mul ", multiply}, {"scrn", screen},  {"over", overlay},
                {"dark", darken},   {"lite", lighten}, {"lddg", linearDodge}};
  for (const auto& mode : kModes)
    if (mode.key == std::string_view(key, 4)) return mode.function;
  return normalBlend;
}

// Finds a channel by its id among the layer's; `channels` is the first of these in the document's
// table.
std::optional<PlaneRows> openChannel(const PsdLayer& record, const morvane::PsdChannel* channels,
                                     std::uint16_t id, std::int64_t width, std::int64_t height) {
  if (width <= 0 || height <= 0) return std::nullopt;
  for (std::uint16_t c = 0; c < record.channelCount; ++c) {
    const PsdChannelInfo& info = record.channelInfos[c];
    if (info.id != id || info.length < 2) continue;
    const morvane::PsdChannel& channel = channels[c];
    PlaneRows rows(channel.compression, channel.data.get(), info.length - 2,
                   static_cast<std::uint64_t>(width), static_cast<std::uint64_t>(height));
    if (rows.isReadable()) return rows;
  }
  return std::nullopt;
}

// A layer's mask, row by row of the image from wherever it begins.
class MaskRows {
 public:
  MaskRows(const PsdLayer& layer, const morvane::PsdChannel* channels)
      : mask_(layer.mask), y_(mask_.top) {
    if (mask_.size == 0 || mask_.flags & morvane::kMaskDisabled) return;
    rows_ =
        openChannel(layer, channels, morvane::kMaskChannel, std::int64_t{mask_.right} - mask_.left,
                    std::int64_t{mask_.bottom} - mask_.top);
  }

  // Rows are asked for from the top down.
  void moveTo(std::int64_t y) {
    row_ = nullptr;
    if (!rows_ || y < mask_.top || y >= mask_.bottom) return;
    while (y_ <= y) {
      row_ = rows_->next();
      if (row_ == nullptr) return rows_.reset();
      ++y_;
    }
  }

  float at(std::int64_t x) const {
    if (!rows_) return 1;
    const bool inside = row_ != nullptr && x >= mask_.left && x < mask_.right;
    return static_cast<float>(inside ? row_[x - mask_.left] : mask_.defaultColour) / 255;
  }

 private:
  const morvane::PsdLayerMask& mask_;
  std::optional<PlaneRows> rows_;
  const std::uint8_t* row_ = nullptr;
  std::int64_t y_;  // of the next row
};

// Sums of the source pixels in each cell of one row of the picture.
struct CellSum {
  float colour[3] = {};  // weighted by alpha
  float alpha = 0;
};

class LayerPainter {
 public:
  LayerPainter(const PictureGrid& grid, Picture& picture)
      : grid_(grid), picture_(picture), base_(grid.cells()), sums_(grid.x.cells) {}

  // True when the layer left a mark.
  bool paint(const PsdLayer& layer, const morvane::PsdChannel* channels, bool isGray,
             float opacity);
  // The same without regard to what lies below the layer.
  bool paintAlone(const PsdLayer& layer, const morvane::PsdChannel* channels, bool isGray) {
    clipped_ = false;
    blend_ = normalBlend;
    opacity_ = 1;
    return paintPixels(layer, channels, isGray);
  }

 private:
  bool paintPixels(const PsdLayer& layer, const morvane::PsdChannel* channels, bool isGray);
  void addRow(const PsdLayer& layer, const std::uint8_t* const* rows, const MaskRows& mask);
  bool paintCells(std::uint32_t cellY);
  void blendPixel(std::uint8_t* pixel, const float* colour, float alpha) const;

  const PictureGrid& grid_;
  Picture& picture_;
  std::vector<std::uint8_t> base_;  // alpha of the last layer that is not clipped
  std::vector<CellSum> sums_;
  BlendFunction blend_ = normalBlend;
  float opacity_ = 1;
  bool clipped_ = false;
};

void LayerPainter::addRow(const PsdLayer& layer, const std::uint8_t* const* rows,
                          const MaskRows& mask) {
  const std::int64_t first = std::max(0, layer.left);
  const std::int64_t end = std::min<std::int64_t>(grid_.x.source, layer.right);
  for (std::int64_t x = first; x < end; ++x) {
    const std::int64_t i = x - layer.left;
    const float alpha = (rows[3] ? static_cast<float>(rows[3][i]) / 255 : 1) * mask.at(x);
    CellSum& sum = sums_[grid_.x.cellOf(static_cast<std::uint32_t>(x))];
    for (int c = 0; c < 3; ++c) sum.colour[c] += alpha * static_cast<float>(rows[c][i]);
    sum.alpha += alpha;
  }
}

// The usual "source over", with the blend mode where both are opaque. Colours are 0 to 1.
void LayerPainter::blendPixel(std::uint8_t* pixel, const float* colour, float alpha) const {
  const float below = static_cast<float>(pixel[3]) / 255;
  const float result = alpha + below * (1 - alpha);
  for (int c = 0; c < 3; ++c) {
    const float under = static_cast<float>(pixel[c]) / 255;
    const float mixed = (1 - below) * colour[c] + below * blend_(under, colour[c]);
    const float value = ((1 - alpha) * below * under + alpha * mixed) / result;
    pixel[c] = static_cast<std::uint8_t>(std::clamp(value, 0.0f, 1.0f) * 255 + 0.5f);
  }
  pixel[3] = static_cast<std::uint8_t>(std::min(result, 1.0f) * 255 + 0.5f);
}

bool LayerPainter::paintCells(std::uint32_t cellY) {
  bool marked = false;
  for (std::uint32_t x = 0; x < grid_.x.cells; ++x) {
    const CellSum sum = sums_[x];
    sums_[x] = CellSum();
    if (!(sum.alpha > 0)) continue;
    const std::size_t cell = std::size_t{cellY} * grid_.x.cells + x;
    const auto count =
        static_cast<float>(grid_.x.size(x)) * static_cast<float>(grid_.y.size(cellY));
    float alpha = std::min(1.0f, sum.alpha / count) * opacity_;
    if (clipped_)
      alpha *= static_cast<float>(base_[cell]) / 255;
    else
      base_[cell] = static_cast<std::uint8_t>(alpha * 255 + 0.5f);
    if (!(alpha > 0)) continue;
    float colour[3];
    for (int c = 0; c < 3; ++c) colour[c] = sum.colour[c] / sum.alpha / 255;
    blendPixel(&picture_.rgba[4 * cell], colour, alpha);
    marked = true;
  }
  return marked;
}

bool LayerPainter::paint(const PsdLayer& layer, const morvane::PsdChannel* own, bool isGray,
                         float opacity) {
  clipped_ = layer.clipping != 0;
  if (!clipped_) std::fill(base_.begin(), base_.end(), std::uint8_t{0});
  blend_ = blendOf(layer.blendKey);
  opacity_ = opacity;
  return paintPixels(layer, own, isGray);
}

bool LayerPainter::paintPixels(const PsdLayer& layer, const morvane::PsdChannel* own, bool isGray) {
  const std::int64_t width = std::int64_t{layer.right} - layer.left;
  const std::int64_t height = std::int64_t{layer.bottom} - layer.top;
  std::optional<PlaneRows> channels[4];
  for (std::uint16_t c = 0; c < 3; ++c) {
    channels[c] = openChannel(layer, own, isGray ? 0 : c, width, height);
    if (!channels[c]) return false;
  }
  channels[3] = openChannel(layer, own, morvane::kTransparencyChannel, width, height);
  MaskRows mask(layer, own);

  bool marked = false;
  std::uint32_t cellY = 0;
  const std::int64_t end = std::min<std::int64_t>(layer.bottom, grid_.y.source);
  for (std::int64_t y = layer.top; y < end; ++y) {
    const std::uint8_t* rows[4] = {};
    for (int c = 0; c < 4; ++c) {
      if (!channels[c]) continue;
      rows[c] = channels[c]->next();
      if (rows[c] == nullptr) return paintCells(cellY) || marked;
    }
    if (y < 0) continue;
    const std::uint32_t cell = grid_.y.cellOf(static_cast<std::uint32_t>(y));
    if (cell != cellY) marked = paintCells(cellY) || marked;
    cellY = cell;
    mask.moveTo(y);
    addRow(layer, rows, mask);
  }
  return paintCells(cellY) || marked;
}

bool isPaintable(const PsdDocument& document) {
  return document.depth == 8 &&
         (document.colourMode == morvane::kRgbMode || document.colourMode == morvane::kGrayMode);
}

bool carriesData(const PsdLayer& layer) {
  return layer.name && std::strcmp(layer.name.get(), morvane::kGoblinLayerName) == 0;
}

}  // namespace

// From the layer's "lsct" block: 1 and 2 are a group's header, above its layers, 3 the divider
// below them.
LayerSection sectionOf(const PsdLayer& layer) {
  const std::uint8_t* at = layer.trailingData.get();
  std::uint32_t left = at == nullptr ? 0 : layer.trailingLength;
  while (left >= 12) {
    const std::uint32_t length = morvane::loadBe32(at + 8);
    if (length > left - 12) break;
    if (std::memcmp(at + 4, "lsct", 4) == 0 && length >= 4) {
      const std::uint32_t kind = morvane::loadBe32(at + 12);
      return kind == 3                ? LayerSection::kDivider
             : kind == 1 || kind == 2 ? LayerSection::kHeader
                                      : LayerSection::kNone;
    }
    const std::uint32_t step = std::min(left, 12 + length + length % 2);
    at += step;
    left -= step;
  }
  return LayerSection::kNone;
}

std::vector<LayerState> layerStates(const PsdDocument& document) {
  std::vector<LayerState> states(document.layers.size());
  std::vector<LayerState> groups = {{true, 1}};
  for (std::size_t i = states.size(); i-- > 0;) {
    const PsdLayer& layer = document.layers[i];
    const LayerState& group = groups.back();
    const LayerState own = {group.visible && !(layer.flags & morvane::kLayerHidden),
                            group.opacity * static_cast<float>(layer.opacity) / 255};
    switch (sectionOf(layer)) {
      case LayerSection::kNone:
        states[i] = own;
        break;
      case LayerSection::kHeader:
        groups.push_back(own);
        break;
      case LayerSection::kDivider:
        if (groups.size() > 1) groups.pop_back();
        break;
    }
  }
  return states;
}

bool composeLayers(const PsdDocument& document, const PictureGrid& grid, Picture& picture) {
  if (!isPaintable(document)) return false;
  const std::vector<LayerState> states = layerStates(document);
  picture.rgba.assign(4 * grid.cells(), 0);
  LayerPainter painter(grid, picture);
  bool baseVisible = true;
  const bool isGray = document.colourMode == morvane::kGrayMode;
  const morvane::PsdChannel* next = document.channelTable.data();
  for (std::int32_t i = 0; i < document.layerCount; ++i) {
    const PsdLayer& layer = document.layers[static_cast<std::size_t>(i)];
    const LayerState& state = states[static_cast<std::size_t>(i)];
    const morvane::PsdChannel* const channels = next;
    next += layer.channelCount;
    if (sectionOf(layer) != LayerSection::kNone) continue;
    if (layer.clipping == 0) baseVisible = state.visible;
    if (!state.visible || !baseVisible || carriesData(layer)) continue;
    if (painter.paint(layer, channels, isGray, state.opacity)) picture.composed = true;
  }
  return picture.composed;
}

bool paintLayer(const PsdDocument& document, std::int32_t index, const PictureGrid& grid,
                Picture& picture) {
  const PsdLayer& layer = document.layers[static_cast<std::size_t>(index)];
  if (!isPaintable(document) || sectionOf(layer) != LayerSection::kNone || carriesData(layer))
    return false;
  const morvane::PsdChannel* channels = document.channelTable.data();
  for (std::int32_t i = 0; i < index; ++i)
    channels += document.layers[static_cast<std::size_t>(i)].channelCount;
  picture.width = grid.x.cells;
  picture.height = grid.y.cells;
  picture.rgba.assign(4 * grid.cells(), 0);
  return LayerPainter(grid, picture)
      .paintAlone(layer, channels, document.colourMode == morvane::kGrayMode);
}

}  // namespace tools
