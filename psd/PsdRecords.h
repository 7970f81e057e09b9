#ifndef MORVANE_PSD_PSDRECORDS_H_
#define MORVANE_PSD_PSDRECORDS_H_

#include <cstdint>
#include <memory>

#include "psd/Bytes.h"

// The records of a layered image in the published PSD file format, version 1, in native byte order.
// Every field is written to the file as it stands here; lengths are not computed when a document is
// saved.

namespace morvane {

// Bytes of a file that nothing here interprets: kept, stepped over and written back at the same
// place.
struct PsdOpaque {
  std::uint32_t length = 0;
  Bytes bytes;
};

// One image resource block.
struct PsdResource {
  char signature[4] = {};  // "8BIM", rarely another
  std::uint16_t id = 0;
  std::unique_ptr<char[]> name;  // NUL-terminated, at most 255 bytes; null for the empty name
  // Written in place of `name` when set: the field as it was read, with zero bytes or odd padding.
  PsdOpaque nameField;
  std::uint32_t size = 0;
  // `size` bytes, and one of padding when the size is odd; null for size 0.
  std::unique_ptr<std::uint8_t[]> data;
};

struct PsdChannelInfo {
  std::uint16_t id = 0;      // 0, 1, 2: red, green, blue; 0xFFFF: transparency
  std::uint32_t length = 0;  // of the channel's data with its 2-byte compression word, in bytes
};

struct PsdLayerMask {
  std::uint32_t size = 0;  // 0: no mask, and none of the other fields is in the file
  std::int32_t top = 0, left = 0, bottom = 0, right = 0;
  std::uint8_t defaultColour = 0;
  std::uint8_t flags = 0;
  std::uint16_t padding = 0;
  PsdOpaque rest;  // what a size over 20 holds beyond these fields
};

// Two black values, then two white ones, a byte each; 0x0000FFFF is the full range.
struct PsdBlendingRange {
  std::uint32_t source = 0;
  std::uint32_t destination = 0;
};

struct PsdBlendingRanges {
  std::uint32_t length = 0;  // 0: none
  std::uint32_t graySource = 0;
  std::uint32_t grayDestination = 0;
  std::unique_ptr<PsdBlendingRange[]> ranges;  // length / 8 - 1 of them, one for each channel
  PsdOpaque rest;  // what is left of a length that is not a multiple of 8
};

// One layer record. A rectangle's width is right - left and its height bottom - top, in pixels.
struct PsdLayer {
  std::int32_t top = 0, left = 0, bottom = 0, right = 0;
  std::uint16_t channelCount = 0;
  std::unique_ptr<PsdChannelInfo[]> channelInfos;
  char blendSignature[4] = {};
  char blendKey[4] = {};
  std::uint8_t opacity = 0;
  std::uint8_t clipping = 0;
  // Bit 0: transparency protected; bit 1: hidden; bits 3 and 4: pixel data irrelevant.
  std::uint8_t flags = 0;
  std::uint8_t filler = 0;
  std::uint32_t extraLength = 0;  // of everything below, in bytes
  PsdLayerMask mask;
  PsdBlendingRanges blendingRanges;
  std::unique_ptr<char[]> name;  // NUL-terminated, at most 255 bytes; null for the empty name
  PsdOpaque nameField;           // as in PsdResource

  // The Unicode name. It stands in the file only when the first block of additional information is
  // one; all of its fields are zero otherwise.
  char unicodeSignature[4] = {};
  char unicodeKey[4] = {};
  std::uint32_t unicodeBlockLength = 0;
  std::uint32_t unicodeCount = 0;
  // unicodeCount units; when that is odd, a zero one follows that the count leaves out.
  std::unique_ptr<std::uint16_t[]> unicodeChars;
  PsdOpaque unicodeRest;  // what the block holds beyond its characters; null stands for zeros

  std::uint32_t trailingLength = 0;
  // The other blocks of additional information, unparsed.
  std::unique_ptr<std::uint8_t[]> trailingData;
};

struct PsdGlobalMask {
  // 0: none; below 14, only that many bytes of the fields are in the file.
  std::uint32_t length = 0;
  std::uint16_t overlayColourSpace = 0;
  std::uint16_t colourComponents[4] = {};
  std::uint16_t opacity = 0;
  std::uint8_t kind = 0;
  std::uint8_t filler = 0;
  PsdOpaque rest;  // what a length over 14 holds beyond these fields
};

// The data of one channel of one layer. Raw: width x height bytes of the layer's rectangle, row
// after row. Packed: see psd/PackBits.h. Its length is the channel info's length minus 2.
struct PsdChannel {
  // 0 raw, 1 packed; anything else is kept, and taken as packed when unpacked.
  std::uint16_t compression = 0;
  Bytes data;  // null when the file has none
};

}  // namespace morvane

#endif  // MORVANE_PSD_PSDRECORDS_H_
