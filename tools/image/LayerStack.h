#ifndef MORVANE_TOOLS_IMAGE_LAYERSTACK_H_
#define MORVANE_TOOLS_IMAGE_LAYERSTACK_H_

#include <cstdint>
#include <vector>

#include "psd/PsdDocument.h"
#include "tools/image/Picture.h"
#include "tools/image/PictureGrid.h"

namespace tools {

// What a layer is in the list: one with pixels, or the header above a group's layers, or the
// divider below them.
enum class LayerSection { kNone, kHeader, kDivider };
LayerSection sectionOf(const morvane::PsdLayer& layer);

// Whether a layer is visible, and with what opacity, including its groups'.
struct LayerState {
  bool visible = false;
  float opacity = 0;  // 0 to 1
};

// One entry for each layer, bottom first. Group headers and dividers are never visible.
std::vector<LayerState> layerStates(const morvane::PsdDocument& document);

// Paints the visible layers of an 8-bit RGB or gray document, bottom first, over transparency.
// Honoured are opacity, group visibility and opacity, layer masks, clipping, and the blend modes
// normal, multiply, screen, overlay, darken, lighten and linear dodge; any other is taken for
// normal. Not honoured are effects, vector masks, adjustments, fill opacity, and groups that blend
// by themselves. A layer with damaged data is painted as far as it can be read. False when no layer
// left a mark.
bool composeLayers(const morvane::PsdDocument& document, const PictureGrid& grid, Picture& picture);

// Paints one layer of such a document by itself, with its mask, and without its opacity, blend mode
// and clipping. False when it left no mark.
bool paintLayer(const morvane::PsdDocument& document, std::int32_t index, const PictureGrid& grid,
                Picture& picture);

}  // namespace tools

#endif  // MORVANE_TOOLS_IMAGE_LAYERSTACK_H_
