#ifndef MORVANE_PSD_PSDTRAILING_H_
#define MORVANE_PSD_PSDTRAILING_H_

#include <cstdint>

#include "psd/PsdRecords.h"

namespace morvane {

// Gives a new layer the trailing data that it takes over from the layer below. Of a sequence of
// tagged blocks ("8BIM" or "8B64", key, length, data padded to even) these are the blocks that
// describe no content, in their order; group headers, texts, fills, adjustments, masks, effects and
// second names stay where they belong. Anything else is taken over whole. False when out of memory.
bool inheritTrailingData(const PsdLayer& below, PsdLayer& layer);

// The byte of a layer's trailing data that a new layer id goes to; null when there is none.
std::uint8_t* layerIdByte(PsdLayer& layer);

}  // namespace morvane

#endif  // MORVANE_PSD_PSDTRAILING_H_
