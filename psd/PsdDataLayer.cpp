#include <algorithm>
#include <cstring>
#include <limits>
#include <new>

#include "psd/PackBits.h"
#include "psd/PsdDocument.h"
#include "psd/PsdFormat.h"
#include "util/ByteOrder.h"
#include "util/ReserveMore.h"

// A data layer's planes, in channel order and one after another, hold a 4-byte little-endian length
// and that many bytes.

namespace morvane {

namespace {

constexpr std::uint8_t kHiddenFlags = kLayerHidden | kLayerFlagsAreNew;
constexpr std::uint32_t kPlanes = 4;
constexpr std::uint32_t kLengthSize = 4;

}  // namespace

bool PsdDocument::addDataLayer(const char* name, std::uint32_t size, const std::uint8_t* bytes,
                               Status* status) {
  const std::uint64_t plane = std::uint64_t{rows} * columns;
  const std::uint64_t length = std::uint64_t{size} + kLengthSize;
  if (length >= kPlanes * plane || (size != 0 && !bytes)) {
    const bool isNoImage = plane == 0 || !headerFault().empty();
    const std::string tooMany = std::to_string(size) + " bytes do not fit a layer of this image";
    return reportTo(status, isNoImage ? layerObstacle(name) : Status(StatusCode::kNoRoom, tooMany));
  }
  std::unique_ptr<std::uint8_t[]> content(new (std::nothrow) std::uint8_t[length]);
  if (!content) return reportTo(status, {StatusCode::kOutOfMemory, "out of memory"});
  storeLe32(content.get(), size);
  if (size != 0) std::memcpy(content.get() + kLengthSize, bytes, size);
  return appendLayer(name, kHiddenFlags, content.get(), length, status) >= 0;
}

// Reads a layer's planes as one run of bytes, one plane at a time, and unpacks no more of each than
// is wanted. Only repackChannels() changes the document: for it every plane is unpacked whole and
// packed as it is read.
class PsdDocument::PlaneStream {
 public:
  PlaneStream(const PsdDocument& document, std::int32_t layer, bool repacks)
      : document_(document),
        layer_(layer),
        repacks_(repacks),
        plane_(std::uint64_t{document.rows} * document.columns),
        at_(plane_) {}

  // False when the layer has no further channel, or when its channel ends before its part of the
  // bytes. A layer may be smaller than the image as long as it holds its content.
  bool read(std::uint8_t* to, std::uint64_t size) {
    while (size != 0) {
      wanted_ = std::min(size, plane_);
      if (at_ == plane_ && !nextChannel()) return false;
      const auto part = static_cast<std::size_t>(std::min(size, plane_ - at_));
      if (at_ + part > rawSize_) return false;
      std::memcpy(to, raw_.get() + at_, part);
      at_ += part;
      to += part;
      size -= part;
    }
    return true;
  }

  // Whether the layer has the channels that `end` bytes need, and they can hold that many. Memory
  // is taken only for what the file can give. Missing channels hold zeros.
  bool canHold(std::uint64_t end) const {
    const PsdLayer& record = document_.layers[layer_];
    const std::uint64_t last = end / plane_;
    std::uint64_t capacity = kMaxMissingPlane;
    if (last >= record.channelCount) return false;
    for (std::uint64_t c = 0; c <= last; ++c)
      capacity += record.channelInfos[c].length * kMaxPackBitsExpansion;
    return end <= capacity;
  }

  // When the content ends exactly with its plane, one more plane follows, with nothing in it.
  bool finish() { return at_ != plane_ || nextChannel(); }

  // The layer's content of `size` bytes; null when the layer does not hold what it says.
  std::unique_ptr<std::uint8_t[]> readContent(std::uint32_t& size) {
    std::uint8_t lengthBytes[kLengthSize];
    if (!read(lengthBytes, kLengthSize)) return nullptr;
    const std::uint32_t length = loadLe32(lengthBytes);
    if (!canHold(std::uint64_t{length} + kLengthSize)) return nullptr;
    std::unique_ptr<std::uint8_t[]> content(new (std::nothrow)
                                                std::uint8_t[std::size_t{length} + kLengthSize]);
    if (content == nullptr) return nullptr;
    if (!readAll(content.get(), length) || !finish()) return nullptr;
    size = length;
    return content;
  }

  void repackChannels(PsdDocument& document) {
    for (std::uint32_t c = 0; c < packed_.size(); ++c)
      document.replaceChannel(layer_, c, 1, std::move(packed_[c].data), packed_[c].length);
  }

 private:
  // Reads what follows the length word, which has been read. `to` has room for that word, too.
  bool readAll(std::uint8_t* to, std::uint32_t length) {
    if (repacks_) return read(to, length);
    // Only the length word of the first plane was unpacked, so reading starts again.
    channels_ = 0;
    at_ = plane_;
    if (!read(to, std::uint64_t{length} + kLengthSize)) return false;
    std::memmove(to, to + kLengthSize, length);
    return true;
  }

  struct Packed {
    std::unique_ptr<std::uint8_t[]> data;
    std::uint32_t length = 0;
  };

  bool nextChannel() {
    const std::uint32_t channel = channels_;
    if (channel >= document_.layers[layer_].channelCount) return false;
    const std::uint64_t most = repacks_ ? std::numeric_limits<std::uint64_t>::max() : wanted_;
    raw_ = document_.unpackedPlane(layer_, channel, rawSize_, most);
    if (raw_ == nullptr || (repacks_ && !packPlane())) return false;
    ++channels_;
    at_ = 0;
    return true;
  }

  bool packPlane() {
    const PsdLayer& record = document_.layers[layer_];
    Packed packed;
    packed.data = packBitsEncodePlane(static_cast<std::uint32_t>(record.right - record.left),
                                      static_cast<std::uint32_t>(record.bottom - record.top),
                                      raw_.get(), packed.length);
    if (packed.data == nullptr || !reserveMore(packed_, 1)) return false;
    packed_.push_back(std::move(packed));
    return true;
  }

  const PsdDocument& document_;
  std::int32_t layer_;
  bool repacks_;
  std::uint64_t plane_;       // bytes of each channel that count: the image's pixels
  std::uint64_t at_;          // in the current plane
  std::uint64_t wanted_ = 0;  // bytes to unpack of the next plane, unless it is packed again
  std::unique_ptr<std::uint8_t[]> raw_;
  std::size_t rawSize_ = 0;
  std::uint32_t channels_ = 0;  // that were read
  std::vector<Packed> packed_;
};

std::unique_ptr<std::uint8_t[]> PsdDocument::readDataLayer(const char* name, std::uint32_t& size) {
  const std::int32_t layer = findLayer(name);
  if (layer < 0 || rows == 0 || columns == 0) return nullptr;
  PlaneStream planes(*this, layer, true);
  std::unique_ptr<std::uint8_t[]> content = planes.readContent(size);
  if (content != nullptr) planes.repackChannels(*this);
  return content;
}

std::unique_ptr<std::uint8_t[]> PsdDocument::peekDataLayer(const char* name,
                                                           std::uint32_t& size) const {
  const std::int32_t layer = findLayer(name);
  if (layer < 0 || rows == 0 || columns == 0) return nullptr;
  return PlaneStream(*this, layer, false).readContent(size);
}

}  // namespace morvane
