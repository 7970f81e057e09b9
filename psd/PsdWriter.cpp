#include <algorithm>
#include <cstring>
#include <functional>
#include <utility>

#include "psd/PsdDocument.h"
#include "psd/PsdNames.h"
#include "util/ByteOrder.h"
#include "util/ReplaceFile.h"
#include "util/ReserveMore.h"

namespace morvane {

namespace {

constexpr const char* kIncomplete = "the document lacks data that its lengths promise";

// Writes big-endian numbers and bytes to whatever takes them, which keeps its own failures; what a
// document lacks is kept here.
class PsdOutput {
 public:
  using Sink = std::function<void(const void* from, std::size_t size)>;

  explicit PsdOutput(Sink sink) : sink_(std::move(sink)) {}

  void u8(std::uint8_t value) { bytes(&value, 1); }
  void u16(std::uint16_t value) {
    std::uint8_t stored[2];
    storeBe16(stored, value);
    bytes(stored, sizeof stored);
  }
  void u32(std::uint32_t value) {
    std::uint8_t stored[4];
    storeBe32(stored, value);
    bytes(stored, sizeof stored);
  }
  void i32(std::int32_t value) { u32(static_cast<std::uint32_t>(value)); }

  // Bytes that must be there because a length of the document promises them.
  void bytes(const void* from, std::size_t size) {
    if (size == 0 || !complete_) return;
    written_ += size;
    if (from)
      sink_(from, size);
    else
      complete_ = false;
  }
  void opaque(const PsdOpaque& kept) { bytes(kept.bytes.get(), kept.length); }
  void zeros(std::size_t size) {
    for (; size != 0; --size) u8(0);
  }

  void require(bool complete) { complete_ = complete_ && complete; }
  bool complete() const { return complete_; }
  std::uint64_t written() const { return written_; }

 private:
  Sink sink_;
  std::uint64_t written_ = 0;
  bool complete_ = true;
};

template <typename Record>
void writeName(PsdOutput& out, const Record& record, std::uint32_t alignment) {
  if (record.nameField.bytes) return out.opaque(record.nameField);
  const std::size_t length = record.name ? std::strlen(record.name.get()) : 0;
  out.require(length <= kMaxNameLength);
  out.u8(static_cast<std::uint8_t>(length));
  out.bytes(record.name.get(), length);
  out.zeros(paddedNameSize(length, alignment) - 1 - length);
}

void writeHeader(PsdOutput& out, const PsdDocument& document) {
  out.bytes(document.signature, 4);
  out.u16(document.version);
  out.bytes(document.reserved, 6);
  out.u16(document.channels);
  out.u32(document.rows);
  out.u32(document.columns);
  out.u16(document.depth);
  out.u16(document.colourMode);
  out.u32(document.colourModeLength);
  out.bytes(document.colourModeData.get(), document.colourModeLength);
}

void writeResources(PsdOutput& out, const PsdDocument& document) {
  out.u32(document.resourcesLength);
  for (const auto& resource : document.resources) {
    out.bytes(resource->signature, 4);
    out.u16(resource->id);
    writeName(out, *resource, kResourceNameAlignment);
    out.u32(resource->size);
    out.bytes(resource->data.get(), std::size_t{resource->size} + (resource->size & 1));
  }
  out.opaque(document.resourcesTail);
}

void writeMask(PsdOutput& out, const PsdLayerMask& mask) {
  out.u32(mask.size);
  if (mask.size == 0) return;
  out.i32(mask.top);
  out.i32(mask.left);
  out.i32(mask.bottom);
  out.i32(mask.right);
  out.u8(mask.defaultColour);
  out.u8(mask.flags);
  out.u16(mask.padding);
  out.opaque(mask.rest);
}

void writeBlendingRanges(PsdOutput& out, const PsdBlendingRanges& blending) {
  out.u32(blending.length);
  if (blending.length == 0) return;
  out.u32(blending.graySource);
  out.u32(blending.grayDestination);
  out.require(blending.length < 16 || blending.ranges);
  for (std::uint32_t i = 1; out.complete() && i < blending.length / 8; ++i) {
    out.u32(blending.ranges[i - 1].source);
    out.u32(blending.ranges[i - 1].destination);
  }
  out.opaque(blending.rest);
}

bool hasUnicodeName(const PsdLayer& layer) {
  return std::memcmp(layer.unicodeKey, "\0\0\0\0", 4) != 0;
}

void writeUnicodeName(PsdOutput& out, const PsdLayer& layer) {
  out.bytes(layer.unicodeSignature, 4);
  out.bytes(layer.unicodeKey, 4);
  out.u32(layer.unicodeBlockLength);
  out.u32(layer.unicodeCount);
  out.require(layer.unicodeCount == 0 || layer.unicodeChars);
  for (std::uint32_t i = 0; out.complete() && i < layer.unicodeCount; ++i)
    out.u16(layer.unicodeChars[i]);
  if (layer.unicodeRest.bytes) return out.opaque(layer.unicodeRest);
  const std::uint64_t written = 4 + 2 * std::uint64_t{layer.unicodeCount};
  if (layer.unicodeBlockLength > written) out.zeros(layer.unicodeBlockLength - written);
}

void writeLayerRecord(PsdOutput& out, const PsdLayer& layer) {
  out.i32(layer.top);
  out.i32(layer.left);
  out.i32(layer.bottom);
  out.i32(layer.right);
  out.u16(layer.channelCount);
  for (std::uint32_t c = 0; c < layer.channelCount; ++c) {
    out.u16(layer.channelInfos[c].id);
    out.u32(layer.channelInfos[c].length);
  }
  out.bytes(layer.blendSignature, 4);
  out.bytes(layer.blendKey, 4);
  out.u8(layer.opacity);
  out.u8(layer.clipping);
  out.u8(layer.flags);
  out.u8(layer.filler);
  out.u32(layer.extraLength);
  const std::uint64_t start = out.written();
  writeMask(out, layer.mask);
  writeBlendingRanges(out, layer.blendingRanges);
  writeName(out, layer, kLayerNameAlignment);
  if (out.written() - start >= layer.extraLength) return;
  if (hasUnicodeName(layer)) writeUnicodeName(out, layer);
  out.bytes(layer.trailingData.get(), layer.trailingLength);
}

void writeChannels(PsdOutput& out, const PsdDocument& document) {
  const PsdChannel* channel = document.channelTable.data();
  for (const PsdLayer& layer : document.layers) {
    for (std::uint32_t c = 0; c < layer.channelCount; ++c, ++channel) {
      const std::uint32_t length = layer.channelInfos[c].length;
      if (length >= 2) out.u16(channel->compression);
      out.bytes(channel->data.get(), length >= 2 ? length - 2 : length);
    }
  }
}

// Lengths and counts that callers may have left out of step when they changed public members.
bool isConsistent(const PsdDocument& document) {
  const auto hasInfos = [](const PsdLayer& layer) {
    return layer.channelCount == 0 || layer.channelInfos;
  };
  return document.layers.size() == static_cast<std::size_t>(document.layerCount) &&
         document.channelTable.size() == document.totalChannelCount() &&
         std::all_of(document.layers.begin(), document.layers.end(), hasInfos);
}

void writeLayerInfo(PsdOutput& out, const PsdDocument& document) {
  out.u32(document.layerInfoLength);
  out.require(isConsistent(document));
  if (document.layerInfoLength == 0 || !out.complete()) return;
  const int count = document.mergedAlpha ? -document.layerCount : document.layerCount;
  out.u16(static_cast<std::uint16_t>(count));
  for (const PsdLayer& layer : document.layers) writeLayerRecord(out, layer);
  writeChannels(out, document);
  out.opaque(document.layerInfoPadding);
}

void writeGlobalMask(PsdOutput& out, const PsdGlobalMask& mask) {
  std::uint8_t fields[14];
  storeBe16(fields, mask.overlayColourSpace);
  for (int i = 0; i < 4; ++i) storeBe16(fields + 2 + 2 * i, mask.colourComponents[i]);
  storeBe16(fields + 10, mask.opacity);
  fields[12] = mask.kind;
  fields[13] = mask.filler;
  out.u32(mask.length);
  out.bytes(fields, mask.length < sizeof fields ? mask.length : sizeof fields);
  out.opaque(mask.rest);
}

void writeSections(PsdOutput& out, const PsdDocument& document) {
  writeHeader(out, document);
  writeResources(out, document);
  out.u32(document.layerAndMaskLength);
  if (document.layerAndMaskLength != 0) {
    writeLayerInfo(out, document);
    if (document.hasGlobalMask) writeGlobalMask(out, document.globalMask);
    out.opaque(document.sectionTail);
  }
  out.u16(document.mergedCompression);
  out.bytes(document.mergedData.get(), document.mergedLength);
}

}  // namespace

bool PsdDocument::isOwnPath(const char* savePath) const {
  return onDisk_.known && path != nullptr && savePath != nullptr &&
         isSamePlace(path.get(), savePath);
}

bool PsdDocument::save(const char* savePath, Status* status, PsdReplacement* replacement) const {
  FileReplacer file;
  const bool isOwn = isOwnPath(savePath);
  if (isOwn) file.expect(onDisk_);
  if (replacement != nullptr && replacement->expected != nullptr)
    file.expect(*replacement->expected);
  bool saved = file.open(savePath);
  Status reason;
  if (saved) {
    PsdOutput out([&file](const void* from, std::size_t size) { file.append(from, size); });
    writeSections(out, *this);
    if (!out.complete()) reason = {StatusCode::kDamaged, kIncomplete};
    saved = out.complete() && file.commit();
  }
  if (saved && isOwn) onDisk_ = file.written();
  if (replacement != nullptr) replacement->otherNames = file.otherNames();
  return reportTo(status, reason.ok() ? file.status() : reason);
}

bool PsdDocument::saveBytes(std::vector<std::uint8_t>& bytes, Status* status) const {
  PsdOutput counted([](const void*, std::size_t) {});
  writeSections(counted, *this);
  std::vector<std::uint8_t> fresh;
  if (!counted.complete()) return reportTo(status, {StatusCode::kDamaged, kIncomplete});
  if (!reserveMore(fresh, static_cast<std::size_t>(counted.written())))
    return reportTo(status, {StatusCode::kOutOfMemory, "out of memory"});
  PsdOutput out([&fresh](const void* from, std::size_t size) {
    const auto* const first = static_cast<const std::uint8_t*>(from);
    fresh.insert(fresh.end(), first, first + size);
  });
  writeSections(out, *this);
  bytes = std::move(fresh);
  return true;
}

}  // namespace morvane
