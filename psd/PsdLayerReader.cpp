#include <algorithm>
#include <cstring>
#include <new>

#include "psd/PsdNames.h"
#include "psd/PsdReader.h"
#include "util/ReserveMore.h"

namespace morvane {

namespace {

constexpr std::size_t kMinRecordSize = 34 + 12;  // no channels; empty mask, ranges and name
constexpr std::size_t kChannelInfoSize = 6;
constexpr std::size_t kBlockHeader = 4 + 4 + 4;  // signature, key, length
constexpr std::size_t kMaskFieldsSize = 20;
constexpr std::size_t kGlobalMaskFieldsSize = 14;

// How much a declared length leaves behind what was read; 0 when more was read than it declares.
std::size_t beyond(std::size_t length, std::size_t read) {
  return length > read ? length - read : 0;
}

template <typename T>
std::unique_ptr<T[]> allocated(PsdInput& in, std::size_t count) {
  std::unique_ptr<T[]> items(new (std::nothrow) T[count]());
  if (!items) in.failForMemory();
  return items;
}

// True when `count` items of `size` bytes are left; otherwise that is the input's error.
bool hasItems(PsdInput& in, std::size_t count, std::size_t size, const char* items) {
  if (in.ok() && count > in.left() / size) {
    in.fail(std::to_string(count) + " " + items + " declared, " + std::to_string(in.left()) +
            " bytes left");
  }
  return in.ok();
}

void readChannelInfos(PsdInput& in, PsdLayer& layer) {
  layer.channelCount = in.u16();
  if (!hasItems(in, layer.channelCount, kChannelInfoSize, "channels")) return;
  layer.channelInfos = allocated<PsdChannelInfo>(in, layer.channelCount);
  for (std::uint32_t i = 0; in.ok() && i < layer.channelCount; ++i) {
    layer.channelInfos[i].id = in.u16();
    layer.channelInfos[i].length = in.u32();
  }
}

// The 20 bytes are there whatever the size says.
void readMask(PsdInput& in, PsdLayerMask& mask) {
  mask.size = in.u32();
  if (mask.size == 0) return;
  mask.top = in.i32();
  mask.left = in.i32();
  mask.bottom = in.i32();
  mask.right = in.i32();
  mask.defaultColour = in.u8();
  mask.flags = in.u8();
  mask.padding = in.u16();
  mask.rest = in.takeOpaque(beyond(mask.size, kMaskFieldsSize));
}

void readBlendingRanges(PsdInput& in, PsdBlendingRanges& blending) {
  constexpr std::uint32_t kRangeSize = 8;
  blending.length = in.u32();
  if (blending.length == 0) return;
  blending.graySource = in.u32();
  blending.grayDestination = in.u32();
  const std::size_t count = beyond(blending.length / kRangeSize, 1);
  if (!hasItems(in, count, kRangeSize, "blending ranges")) return;
  if (count != 0) blending.ranges = allocated<PsdBlendingRange>(in, count);
  for (std::size_t i = 0; in.ok() && i < count; ++i) {
    blending.ranges[i].source = in.u32();
    blending.ranges[i].destination = in.u32();
  }
  blending.rest = in.takeOpaque(beyond(blending.length, kRangeSize * (count + 1)));
}

// Reads the first block of additional information when it is a Unicode name.
void readUnicodeName(PsdInput& in, PsdLayer& layer) {
  if (!in.ok() || in.left() < kBlockHeader + 4) return;
  PsdInput probe = in;
  char signature[4];
  char key[4];
  probe.copy(signature, 4);
  probe.copy(key, 4);
  if (std::memcmp(key, "luni", 4) != 0) return;
  in = probe;
  std::memcpy(layer.unicodeSignature, signature, 4);
  std::memcpy(layer.unicodeKey, key, 4);
  layer.unicodeBlockLength = in.u32();
  layer.unicodeCount = in.u32();
  if (!hasItems(in, layer.unicodeCount, 2, "characters")) return;
  const std::size_t units = layer.unicodeCount + (layer.unicodeCount & std::size_t{1});
  if (units != 0) layer.unicodeChars = allocated<std::uint16_t>(in, units);
  for (std::uint32_t i = 0; in.ok() && i < layer.unicodeCount; ++i)
    layer.unicodeChars[i] = in.u16();
  const std::size_t read = 4 + 2 * std::size_t{layer.unicodeCount};
  layer.unicodeRest = in.takeOpaque(beyond(layer.unicodeBlockLength, read));
}

void readExtraData(PsdInput& in, PsdLayer& layer) {
  layer.extraLength = in.u32();
  const PsdPart extra(in, layer.extraLength);
  readMask(in, layer.mask);
  readBlendingRanges(in, layer.blendingRanges);
  readName(in, kLayerNameAlignment, layer.name, layer.nameField);
  readUnicodeName(in, layer);
  layer.trailingLength = static_cast<std::uint32_t>(in.left());
  layer.trailingData = readOwned(in, layer.trailingLength);
}

void readLayerRecords(PsdInput& in, PsdDocument& document) {
  const auto count = static_cast<std::int16_t>(in.u16());
  if (count == INT16_MIN) in.fail("32768 layers declared");
  if (!in.ok()) return;
  document.mergedAlpha = count < 0;
  document.layerCount = static_cast<std::int16_t>(count < 0 ? -count : count);
  if (!hasItems(in, document.layerCount, kMinRecordSize, "layers")) return;
  if (!reserveMore(document.layers, document.layerCount)) in.failForMemory();
  for (int i = 0; in.ok() && i < document.layerCount; ++i) {
    in.setPart("layer", i);
    document.layers.emplace_back();
    readLayerRecord(in, document.layers.back());
  }
}

// A channel's length counts its compression word. Shorter ones have none.
void readChannelData(PsdInput& in, std::uint32_t length, PsdChannel& channel) {
  if (length >= 2) channel.compression = in.u16();
  const std::size_t size = length >= 2 ? length - 2 : length;
  if (size != 0) channel.data = Bytes::view(in.take(size));
}

void readChannels(PsdInput& in, PsdDocument& document) {
  if (!in.ok()) return;
  if (!reserveMore(document.channelTable, document.totalChannelCount())) in.failForMemory();
  for (int i = 0; in.ok() && i < document.layerCount; ++i) {
    in.setPart("channel data of layer", i);
    const PsdLayer& layer = document.layers[i];
    for (std::uint32_t c = 0; in.ok() && c < layer.channelCount; ++c) {
      document.channelTable.emplace_back();
      readChannelData(in, layer.channelInfos[c].length, document.channelTable.back());
    }
  }
}

void readGlobalMask(PsdInput& in, PsdDocument& document) {
  document.hasGlobalMask = in.left() >= 4;
  if (!document.hasGlobalMask) return;
  PsdGlobalMask& mask = document.globalMask;
  mask.length = in.u32();
  std::uint8_t fields[kGlobalMaskFieldsSize] = {};
  in.copy(fields, std::min<std::size_t>(mask.length, sizeof fields));
  PsdInput from(fields, sizeof fields);
  mask.overlayColourSpace = from.u16();
  for (std::uint16_t& component : mask.colourComponents) component = from.u16();
  mask.opacity = from.u16();
  mask.kind = from.u8();
  mask.filler = from.u8();
  mask.rest = in.takeOpaque(beyond(mask.length, sizeof fields));
}

bool startsBlock(const PsdOpaque& tail) {
  return tail.length >= kBlockHeader && (std::memcmp(tail.bytes.get(), "8BIM", 4) == 0 ||
                                         std::memcmp(tail.bytes.get(), "8B64", 4) == 0);
}

}  // namespace

void readLayerRecord(PsdInput& in, PsdLayer& layer) {
  layer.top = in.i32();
  layer.left = in.i32();
  layer.bottom = in.i32();
  layer.right = in.i32();
  readChannelInfos(in, layer);
  in.copy(layer.blendSignature, 4);
  in.copy(layer.blendKey, 4);
  layer.opacity = in.u8();
  layer.clipping = in.u8();
  layer.flags = in.u8();
  layer.filler = in.u8();
  readExtraData(in, layer);
}

// The layers are read by what they hold. When that goes beyond the declared length of the layer
// info, either that length or a length inside is wrong. It is the former only when a global mask
// follows where the layers end; the file can be kept then.
void readLayerSection(PsdInput& in, PsdDocument& document) {
  document.layerInfoLength = in.u32();
  if (in.ok() && document.layerInfoLength > in.left()) {
    in.fail(std::to_string(document.layerInfoLength) + " bytes of layer info declared, " +
            std::to_string(in.left()) + " left");
  }
  const std::size_t start = in.position();
  if (document.layerInfoLength != 0) {
    readLayerRecords(in, document);
    readChannels(in, document);
  }
  const std::size_t read = in.position() - start;
  in.setPart("layer and mask information");
  document.layerInfoPadding = in.takeOpaque(beyond(document.layerInfoLength, read));
  readGlobalMask(in, document);
  document.sectionTail = in.takeOpaque(in.left());
  if (read > document.layerInfoLength) {
    const bool sound = document.hasGlobalMask &&
                       (document.sectionTail.length == 0 || startsBlock(document.sectionTail));
    if (!sound) in.fail("channel data runs past the layer info, which ends before");
  }
}

}  // namespace morvane
