#include "psd/PsdDocument.h"

#include <algorithm>
#include <cstring>
#include <limits>

#include "psd/PackBits.h"
#include "psd/PsdFormat.h"
#include "psd/PsdNames.h"
#include "util/ReserveMore.h"

namespace morvane {

PsdDocument::PsdDocument(std::uint32_t width, std::uint32_t height) {
  reset(width, height);
}

void PsdDocument::reset(std::uint32_t width, std::uint32_t height) {
  *this = PsdDocument();
  std::memcpy(signature, "8BPS", 4);
  version = 1;
  channels = 3;
  depth = 8;
  colourMode = kRgbMode;
  mergedCompression = 1;
  constexpr std::uint32_t kPlanes = 3;  // one below the other, packed as one
  mergedLength = 1;  // promised and not there: without its merged image no document is saved
  if (height > std::numeric_limits<std::uint32_t>::max() / kPlanes) return;
  std::unique_ptr<std::uint8_t[]> packed =
      packBitsEncodeFilledPlane(width, kPlanes * height, nullptr, 0, 0, mergedLength);
  if (!packed) return;
  mergedData = std::move(packed);
  rows = height;
  columns = width;
}

std::int32_t PsdDocument::findLayer(const char* name) const {
  if (!name) return -1;
  for (std::int32_t i = 0; i < layerCount; ++i) {
    const char* const candidate = layers[i].name.get();
    if (candidate && std::strcmp(candidate, name) == 0) return i;
  }
  return -1;
}

PsdResource* PsdDocument::findResource(std::uint16_t id) const {
  for (const auto& resource : resources)
    if (resource->id == id) return resource.get();
  return nullptr;
}

bool PsdDocument::insertResource(std::unique_ptr<PsdResource> resource, std::uint16_t afterId) {
  constexpr std::uint32_t kFixedSize = 4 + 2 + 4;  // signature, id, data size
  if (!resource || !reserveMore(resources, 1)) return false;
  resourcesLength += kFixedSize + nameFieldSize(*resource, kResourceNameAlignment);
  const auto hasId = [=](const auto& other) { return other->id == afterId; };
  auto at = std::find_if(resources.begin(), resources.end(), hasId);
  if (at != resources.end()) ++at;
  resources.insert(at, std::move(resource));
  return true;
}

}  // namespace morvane
