#include <algorithm>
#include <cstring>
#include <initializer_list>
#include <iterator>
#include <limits>
#include <new>

#include "psd/PackBits.h"
#include "psd/PsdDocument.h"
#include "psd/PsdFormat.h"
#include "psd/PsdNames.h"
#include "psd/PsdTrailing.h"
#include "util/ByteOrder.h"
#include "util/ReserveMore.h"

namespace morvane {

namespace {

constexpr std::uint16_t kLayerState = 1024;  // image resources
constexpr std::uint16_t kLayerGroups = 1026;
constexpr std::uint16_t kLayerIdSeed = 1044;
constexpr std::uint16_t kBeforeLayerState = 1016;

constexpr std::uint32_t kGroupEntry = 2;  // bytes for each layer in kLayerGroups
constexpr std::uint8_t kBaseFlags = 9;    // transparency protected; bit 4 carries meaning
constexpr std::uint8_t kLayerFlags = 8;

std::uint32_t recordSize(const PsdLayer& layer) {
  return 34 + 6 * std::uint32_t{layer.channelCount} + layer.extraLength;
}

// The channels of a new layer: three colours, after the transparency unless it is the base layer.
bool setChannels(PsdLayer& layer, std::initializer_list<std::uint16_t> ids) {
  layer.channelInfos.reset(new (std::nothrow) PsdChannelInfo[ids.size()]);
  if (!layer.channelInfos) return false;
  for (std::uint16_t id : ids) layer.channelInfos[layer.channelCount++].id = id;
  return true;
}

bool setFullBlendingRanges(PsdBlendingRanges& blending) {
  constexpr std::uint32_t kFullRange = 0x0000FFFF;
  constexpr std::uint32_t kCount = 4;
  blending.length = 8 * (1 + kCount);
  blending.graySource = blending.grayDestination = kFullRange;
  blending.ranges.reset(new (std::nothrow) PsdBlendingRange[kCount]);
  if (!blending.ranges) return false;
  std::fill_n(blending.ranges.get(), kCount, PsdBlendingRange{kFullRange, kFullRange});
  return true;
}

// Sets the name in both its forms; an empty one has no characters.
bool setName(PsdLayer& layer, const char* name) {
  const auto length = static_cast<std::uint32_t>(std::strlen(name));
  layer.name.reset(new (std::nothrow) char[length + 1]);
  layer.unicodeChars.reset(new (std::nothrow) std::uint16_t[length + (length & 1)]());
  if (!layer.name || !layer.unicodeChars) return false;
  std::memcpy(layer.name.get(), name, length + 1);
  for (std::uint32_t i = 0; i < length; ++i)
    layer.unicodeChars[i] = static_cast<unsigned char>(name[i]);
  std::memcpy(layer.unicodeSignature, "8BIM", 4);
  std::memcpy(layer.unicodeKey, "luni", 4);
  layer.unicodeCount = length;
  layer.unicodeBlockLength = 4 + 2 * (length + (length & 1));
  return true;
}

void setExtraLength(PsdLayer& layer) {
  constexpr std::uint32_t kMaskSize = 4;
  constexpr std::uint32_t kUnicodeHeader = 12;
  layer.extraLength = kMaskSize + 4 + layer.blendingRanges.length +
                      nameFieldSize(layer, kLayerNameAlignment) + kUnicodeHeader +
                      layer.unicodeBlockLength + layer.trailingLength;
}

// A layer over the whole image, all but its channels' data, its trailing data and its lengths.
bool fillRecord(PsdLayer& layer, const PsdDocument& document, const char* name,
                std::uint8_t flags) {
  layer.bottom = static_cast<std::int32_t>(document.rows);
  layer.right = static_cast<std::int32_t>(document.columns);
  std::memcpy(layer.blendSignature, "8BIM", 4);
  std::memcpy(layer.blendKey, "norm", 4);
  layer.opacity = 255;
  layer.flags = flags;
  return setFullBlendingRanges(layer.blendingRanges) && setName(layer, name);
}

bool hasSides(const PsdDocument& document) {
  const auto isSide = [](std::uint32_t side) { return side != 0 && side <= PsdDocument::kMaxSide; };
  return isSide(document.rows) && isSide(document.columns);
}

// Whether the merged image can be as large as the header says, in any compression of the format: a
// new layer takes memory and disk for every pixel. Deflate, the strongest, gives at most 1032 times
// as much.
bool hasPlausibleSides(const PsdDocument& document) {
  constexpr std::uint64_t kMostExpansion = 1032;
  return std::uint64_t{document.rows} * document.columns / kMostExpansion <= document.mergedLength;
}

bool canCarryLayers(const PsdDocument& document) {
  return document.headerFault().empty() && document.depth == 8 && hasSides(document) &&
         hasPlausibleSides(document);
}

constexpr std::int16_t kMaxLayers = std::numeric_limits<std::int16_t>::max();

// A resource of two bytes, with room behind them for one group entry; null when out of memory.
std::unique_ptr<PsdResource> makeResource(std::uint16_t id, std::uint8_t low) {
  std::unique_ptr<PsdResource> resource(new (std::nothrow) PsdResource);
  if (!resource) return nullptr;
  std::memcpy(resource->signature, "8BIM", 4);
  resource->id = id;
  resource->size = 2;
  resource->data.reset(new (std::nothrow) std::uint8_t[2 + kGroupEntry]());
  if (!resource->data) return nullptr;
  resource->data[1] = low;
  return resource;
}

// The packed rows of one plane of a packed merged image. One table of row lengths, for all planes,
// comes first.
bool findMergedPlane(const PsdDocument& document, std::uint32_t plane, const std::uint8_t*& rows,
                     std::size_t& length) {
  const std::size_t tableSize = 2 * std::size_t{document.channels} * document.rows;
  if (document.mergedLength < tableSize) return false;
  const std::uint8_t* count = document.mergedData.get();
  std::size_t before = 0;
  length = 0;
  for (std::uint32_t p = 0; p <= plane; ++p) {
    before += length;
    length = 0;
    for (std::uint32_t row = 0; row < document.rows; ++row, count += 2) length += loadBe16(count);
  }
  if (before + length > document.mergedLength - tableSize) return false;
  rows = document.mergedData.get() + tableSize + before;
  return true;
}

// One plane of the merged image, packed the way this library packs; null when the image does not
// hold it.
std::unique_ptr<std::uint8_t[]> packMergedPlane(const PsdDocument& document, std::uint32_t plane,
                                                std::uint32_t& packedLength) {
  const std::size_t size = std::size_t{document.rows} * document.columns;
  if (document.mergedCompression == 0) {
    if (document.mergedLength / size < plane + 1) return nullptr;
    return packBitsEncodePlane(document.columns, document.rows,
                               document.mergedData.get() + plane * size, packedLength);
  }
  const std::uint8_t* rows = nullptr;
  std::size_t length = 0;
  if (!findMergedPlane(document, plane, rows, length) || size / kMaxPackBitsExpansion > length)
    return nullptr;
  return packBitsRepack(document.columns, document.rows, rows, length, packedLength);
}

// Bytes in the file.
std::int64_t sizeWithChannels(const PsdLayer& layer) {
  std::int64_t size = recordSize(layer);
  for (std::uint32_t c = 0; c < layer.channelCount; ++c) size += layer.channelInfos[c].length;
  return size;
}

}  // namespace

// A layer that is not part of the document yet.
struct PsdDocument::BuiltLayer {
  PsdLayer record;
  PsdChannel channels[4];                      // the first channelCount of them count
  std::unique_ptr<PsdResource> state, groups;  // of a base layer

  // False when there is no packed plane to set.
  bool setChannel(std::uint32_t index, std::unique_ptr<std::uint8_t[]> packed,
                  std::uint32_t length) {
    if (!packed) return false;
    record.channelInfos[index].length = length + 2;
    channels[index].compression = 1;
    channels[index].data = std::move(packed);
    return true;
  }

  // Bytes in the file.
  std::uint64_t size() const { return static_cast<std::uint64_t>(sizeWithChannels(record)); }

  // Into vectors that have room for them.
  void moveTo(std::vector<PsdLayer>& records, std::vector<PsdChannel>& table) {
    std::move(channels, channels + record.channelCount, std::back_inserter(table));
    records.push_back(std::move(record));
  }
};

std::int32_t PsdDocument::addLayer(const char* name, Status* status) {
  return appendLayer(name, kLayerFlags, nullptr, 0, status);
}

bool PsdDocument::buildBaseLayer(BuiltLayer& base) const {
  constexpr std::uint8_t kFirstLayerId[16] = {'8', 'B', 'I', 'M', 'l', 'y', 'i', 'd',
                                              0,   0,   0,   4,   0,   0,   0,   1};
  if (channels < 3) return false;
  base.state = makeResource(kLayerState, 1);
  base.groups = makeResource(kLayerGroups, 0);
  if (!base.state || !base.groups) return false;
  PsdLayer& record = base.record;
  if (!setChannels(record, {0, 1, 2}) || !fillRecord(record, *this, "", kBaseFlags)) return false;
  record.name.reset();
  record.trailingData.reset(new (std::nothrow) std::uint8_t[sizeof kFirstLayerId]);
  if (!record.trailingData) return false;
  std::memcpy(record.trailingData.get(), kFirstLayerId, sizeof kFirstLayerId);
  record.trailingLength = sizeof kFirstLayerId;
  setExtraLength(record);
  for (std::uint32_t plane = 0; plane < 3; ++plane) {
    std::uint32_t length = 0;
    std::unique_ptr<std::uint8_t[]> packed = packMergedPlane(*this, plane, length);
    if (!base.setChannel(plane, std::move(packed), length)) return false;
  }
  return true;
}

bool PsdDocument::buildLayer(BuiltLayer& built, const PsdLayer& below, const char* name,
                             std::uint8_t flags, const std::uint8_t* content,
                             std::uint64_t contentLength) const {
  PsdLayer& record = built.record;
  if (!setChannels(record, {kTransparencyChannel, 0, 1, 2}) ||
      !fillRecord(record, *this, name, flags) || !inheritTrailingData(below, record)) {
    return false;
  }
  setExtraLength(record);
  const std::uint64_t plane = std::uint64_t{rows} * columns;
  for (std::uint32_t c = 0; c < record.channelCount; ++c) {
    const auto part = static_cast<std::size_t>(std::min(contentLength, plane));
    const std::uint8_t fill = c == 0 ? 0xFF : 0x00;  // opaque black
    std::uint32_t length = 0;
    auto packed = packBitsEncodeFilledPlane(columns, rows, content, part, fill, length);
    if (!built.setChannel(c, std::move(packed), length)) return false;
    if (part != 0) content += part;
    contentLength -= part;
  }
  return true;
}

// Everything that can fail comes first, so that a document which cannot carry the layer stays as it
// was.
std::int32_t PsdDocument::tryAppendLayer(const char* name, std::uint8_t flags,
                                         const std::uint8_t* content, std::uint64_t contentLength) {
  if (!canCarryLayers(*this) || !name || std::strlen(name) > kMaxNameLength) return -1;
  const bool needsBase = layerCount == 0;
  if (layerCount == kMaxLayers) return -1;
  BuiltLayer base;
  if (needsBase && !buildBaseLayer(base)) return -1;
  BuiltLayer built;
  const PsdLayer& below = needsBase ? base.record : layers.back();
  if (!buildLayer(built, below, name, flags, content, contentLength)) return -1;

  constexpr std::uint64_t kSectionHeaders = 2 + 8;
  const std::uint64_t added = built.size() + (needsBase ? base.size() + kSectionHeaders : 0);
  if (added > std::numeric_limits<std::uint32_t>::max() - layerAndMaskLength) return -1;
  const std::size_t newChannels = std::size_t{base.record.channelCount} + built.record.channelCount;
  if (!reserveForLayers(needsBase ? 2 : 1, newChannels)) return -1;
  if (needsBase) commitBaseLayer(base);
  commitLayer(built);
  return layerCount - 1;
}

std::int32_t PsdDocument::appendLayer(const char* name, std::uint8_t flags,
                                      const std::uint8_t* content, std::uint64_t contentLength,
                                      Status* status) {
  const std::int32_t index = tryAppendLayer(name, flags, content, contentLength);
  reportTo(status, index >= 0 ? Status() : layerObstacle(name));
  return index;
}

Status PsdDocument::layerObstacle(const char* name) const {
  const std::string fault = headerFault();
  if (!fault.empty()) return {StatusCode::kUnsupported, fault};
  if (depth != 8)
    return {StatusCode::kUnsupported, std::to_string(depth) + " bits a channel, not 8"};
  const std::string size = std::to_string(columns) + " x " + std::to_string(rows) + " pixels";
  if (!hasSides(*this))
    return {StatusCode::kUnsupported, "an image of " + size + " takes no layer"};
  if (!hasPlausibleSides(*this)) {
    return {StatusCode::kDamaged,
            "the merged image is cut off: " + std::to_string(mergedLength) + " bytes for " + size};
  }
  if (!name || std::strlen(name) > kMaxNameLength)
    return {StatusCode::kBadArgument, "the layer's name is too long"};
  if (layerCount == kMaxLayers)
    return {StatusCode::kTooLarge, "it has as many layers as a file can have"};
  if (layerCount != 0)
    return {StatusCode::kTooLarge, "out of memory, or the file would be too large"};
  if (channels >= 3) {
    return {StatusCode::kDamaged,
            "the merged image is cut off or of no known compression, or out of memory"};
  }
  return {StatusCode::kUnsupported, "the merged image has " + std::to_string(channels) +
                                        " channels, not red, green and blue"};
}

bool PsdDocument::reserveForLayers(std::size_t newLayers, std::size_t newChannels) {
  constexpr std::size_t kNewResources = 2;
  return reserveMore(layers, newLayers) && reserveMore(channelTable, newChannels) &&
         reserveMore(resources, kNewResources) && reserveGroupEntry();
}

bool PsdDocument::reserveGroupEntry() {
  PsdResource* const groups = findResource(kLayerGroups);
  if (!groups) return true;
  const std::size_t padded = std::size_t{groups->size} + (groups->size & 1);
  std::unique_ptr<std::uint8_t[]> data(new (std::nothrow) std::uint8_t[padded + kGroupEntry]());
  if (!data) return false;
  if (groups->data) std::memcpy(data.get(), groups->data.get(), padded);
  groups->data = std::move(data);
  return true;
}

void PsdDocument::commitBaseLayer(BuiltLayer& built) {
  hasGlobalMask = true;
  layerInfoLength = static_cast<std::uint32_t>(2 + built.size()) + layerInfoPadding.length;
  layerAndMaskLength = layerInfoLength + 8 + globalMask.length + sectionTail.length;
  layerCount = 1;
  built.moveTo(layers, channelTable);
  insertResource(std::move(built.state), kBeforeLayerState);
  insertResource(std::move(built.groups), kLayerState);
  resourcesLength += 2 + kGroupEntry;
}

void PsdDocument::commitLayer(BuiltLayer& built) {
  changeSectionLengths(static_cast<std::int64_t>(built.size()));
  extendLayerGroups();
  takeLayerId(built.record);
  built.moveTo(layers, channelTable);
  ++layerCount;
}

void PsdDocument::extendLayerGroups() {
  PsdResource* const groups = findResource(kLayerGroups);
  if (!groups) return;
  groups->size += kGroupEntry;  // zeroes, which were reserved behind the padding
  resourcesLength += kGroupEntry;
}

void PsdDocument::takeLayerId(PsdLayer& layer) {
  constexpr std::uint32_t kSeedSize = 4;
  const PsdResource* const seed = findResource(kLayerIdSeed);
  if (!seed || seed->size < kSeedSize || !seed->data) return;
  std::uint8_t& low = seed->data[kSeedSize - 1];
  ++low;
  if (std::uint8_t* const id = layerIdByte(layer)) *id = low;
}

void PsdDocument::removeLayer(std::int32_t index) {
  if (index < 1 || index >= layerCount) return;
  const PsdLayer& layer = layers[index];
  changeSectionLengths(-sizeWithChannels(layer));
  const auto first = channelTable.begin() + static_cast<std::ptrdiff_t>(channelTableStart(index));
  channelTable.erase(first, first + layer.channelCount);
  layers.erase(layers.begin() + index);
  --layerCount;
}

void PsdDocument::removeLayerByName(const char* name) {
  removeLayer(findLayer(name));
}

void PsdDocument::removeLayersByName(const char* name) {
  std::int64_t removed = 0;
  std::size_t keptLayers = 0;
  auto channel = channelTable.begin();
  auto keptChannels = channel;
  for (std::size_t i = 0; i < layers.size(); ++i) {
    const auto channelsEnd = channel + layers[i].channelCount;
    const char* const own = layers[i].name.get();
    if (i > 0 && own != nullptr && std::strcmp(own, name) == 0) {
      removed += sizeWithChannels(layers[i]);
    } else {
      keptChannels = std::move(channel, channelsEnd, keptChannels);
      if (keptLayers != i) layers[keptLayers] = std::move(layers[i]);
      ++keptLayers;
    }
    channel = channelsEnd;
  }
  channelTable.erase(keptChannels, channelTable.end());
  layers.erase(layers.begin() + static_cast<std::ptrdiff_t>(keptLayers), layers.end());
  layerCount = static_cast<std::int16_t>(keptLayers);
  changeSectionLengths(-removed);
}

}  // namespace morvane
