#ifndef MORVANE_PSD_PSDDOCUMENT_H_
#define MORVANE_PSD_PSDDOCUMENT_H_

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "psd/Bytes.h"
#include "psd/PsdRecords.h"
#include "util/FileIdentity.h"
#include "util/Status.h"

namespace morvane {

// What saving a document may replace, and what it met.
struct PsdReplacement {
  // In: the only file that saving may replace, see FileReplacer::expect(). Null: any file may be
  // replaced; but the file that the document was loaded from must be unchanged.
  const FileIdentity* expected = nullptr;
  std::uint64_t otherNames = 0;  // out: hard links that keep the old content
};

// A layered image file (the published PSD format, version 1) in memory. It keeps every section as
// it was read, of any depth and colour mode, so that a document can be loaded, changed a whole
// layer at a time and written back with everything else carried through byte for byte. It does not
// touch the merged image, and keeps channel data packed except while an operation works on it.
//
// Invariants, kept by every operation:
// 1. `layers` has layerCount entries. `channelTable` has one entry for each channel of every layer,
//    layer by layer, in the order of each layer's channel infos.
// 2. A layer record takes 34 + 6 x channelCount + extraLength bytes. layerInfoLength is 2 + all
//    records + all channel info lengths + layerInfoPadding; layerAndMaskLength is layerInfoLength +
//    8 + the global mask's length + sectionTail. Operations change both by what they add or remove,
//    so that a loaded document keeps what its file declared.
// 3. resourcesLength is what the resources take in the file, resourcesTail included.
//
// Operations that return false, -1 or null have changed nothing. Files are not trusted. Loading one
// of n bytes takes those n, a copy of its resources and layer records, and at most about 10 n for
// their bookkeeping (reached by files of nothing but empty records). Unpacking a plane takes at
// most 64 times its packed data; a new layer's planes are packed at once and take at most 269 MB
// together, for an image of kMaxSide squared.
//
// A document is used by one thread at a time.
class PsdDocument {
 public:
  // Of an image's sides, in pixels: the most that a TGA image can have. The format's own limit is
  // 30000, which other programs hold to.
  static constexpr std::uint32_t kMaxSide = 65535;

  // A layer may claim a rectangle of any size and bring no data for it: no plane of zeros with more
  // bytes than this is made.
  static constexpr std::size_t kMaxMissingPlane = std::size_t{64} << 20;

  std::unique_ptr<char[]> path;  // of the file last loaded, NUL-terminated; null after reset()

  // The file's sections, in their order.
  char signature[4] = {};     // "8BPS"; addLayer() refuses any other
  std::uint16_t version = 0;  // 1; addLayer() refuses any other
  std::uint8_t reserved[6] = {};
  std::uint16_t channels = 0;    // of the merged image
  std::uint32_t rows = 0;        // pixels
  std::uint32_t columns = 0;     // pixels
  std::uint16_t depth = 0;       // bits in a channel
  std::uint16_t colourMode = 0;  // 3: RGB

  std::uint32_t colourModeLength = 0;
  std::unique_ptr<std::uint8_t[]> colourModeData;

  std::uint32_t resourcesLength = 0;
  std::vector<std::unique_ptr<PsdResource>> resources;
  PsdOpaque resourcesTail;  // what the section holds after the last resource

  std::uint32_t layerAndMaskLength = 0;  // 0: the file has no such section
  std::uint32_t layerInfoLength = 0;     // 0: the section has no layer info, not even the count
  std::int16_t layerCount = 0;           // never negative
  // The file's count is negative: the merged image's fourth channel is its transparency.
  bool mergedAlpha = false;
  std::vector<PsdLayer> layers;  // layer 0 is the bottom one
  std::vector<PsdChannel> channelTable;
  PsdOpaque layerInfoPadding;  // what the layer info holds after the last channel
  bool hasGlobalMask = true;   // false: the section ends before the global mask's length
  PsdGlobalMask globalMask;
  PsdOpaque sectionTail;  // what the section holds after the global mask

  std::uint16_t mergedCompression = 0;  // 0 raw, 1 packed
  std::uint32_t mergedLength = 0;
  // All that follows the compression word, be it more or less than the image needs.
  Bytes mergedData;

  // What the file last loaded says, but was not followed; empty when there is nothing.
  std::string loadWarning;

  // The file as it was read; opaque bytes, channel data and merged data may lie in it.
  std::unique_ptr<std::uint8_t[]> fileBytes;

  // A blank document, as by reset().
  PsdDocument(std::uint32_t width, std::uint32_t height);

  // A document that was moved from may only be assigned to, reset(), load()ed or destroyed.
  PsdDocument(PsdDocument&&) = default;
  PsdDocument& operator=(PsdDocument&&) = default;

  // Discards everything and makes a blank (black) 8-bit RGB document without layers, in pixels.
  // When memory runs out, or the packed image would not fit 32 bits, rows and columns are 0 and
  // save() fails.
  void reset(std::uint32_t width, std::uint32_t height);

  // Reads a PSD file, or makes a document of an uncompressed TGA image of 24 or 32 bits; the
  // extension says which, in any case. A damaged file is refused; `status`, where given, says what
  // is wrong and at which byte, and its code is one of kNotFound, kNotAllowed, kNotAFile,
  // kBadArgument (the extension), kOtherKind (a PSD file called .tga), kDamaged, kUnsupported,
  // kTooLarge, kChanged, kOutOfMemory and kCannotRead. A file of another signature or version is
  // kept whole where it reads as a PSD file, and refused with that reason where it does not.
  bool load(const char* path, Status* status = nullptr);

  // Reads a PSD file that is in memory already; the document owns the bytes from then on, whether
  // they can be read or not. Fails as load() does, and leaves `path` null.
  bool loadBytes(std::unique_ptr<std::uint8_t[]> bytes, std::size_t size, Status* status = nullptr);

  // Why no layer can be added to a document that was kept in spite of its signature or version;
  // empty for any other document.
  std::string headerFault() const;

  // Where the merged image has fewer bytes than the header (of a packed one: the table of row
  // lengths, too) promises: that it is cut off, and how many bytes are wanted and there. Such a
  // document is kept, and saved as it is. Of a compression other than raw and packed, only an empty
  // image is found. Empty for any other document, and where headerFault() is not.
  std::string mergedFault() const;

  // Writes the document as a PSD file. True only when every byte is on the disk; whatever happens,
  // the path holds the old file or the new one whole (see util/ReplaceFile.h). Fails when it
  // would replace the file that was loaded, or saved last, and that is another file by now
  // (kChanged). `status`, where given, gets the reason, as FileReplacer says it, or kDamaged for a
  // document whose public members do not fit together.
  bool save(const char* path, Status* status = nullptr,
            PsdReplacement* replacement = nullptr) const;

  // The identity of the file last loaded, as it was then; unknown for other documents.
  const FileIdentity& identity() const { return onDisk_; }

  // Replaces what `bytes` holds with the bytes that save() would write; on failure `bytes` stays as
  // it is.
  bool saveBytes(std::vector<std::uint8_t>& bytes, Status* status = nullptr) const;

  // The first layer whose name equals `name` byte for byte; -1 when there is none.
  std::int32_t findLayer(const char* name) const;

  // The layer's first entry in the channel table; null when there is no such layer.
  PsdChannel* layerChannels(std::int32_t layer);
  const PsdChannel* layerChannels(std::int32_t layer) const;
  std::uint32_t totalChannelCount() const;

  // Turns one channel (by position in its layer, not by id) into raw or into packed bytes, in
  // place; does nothing when it is that already. Missing data becomes a plane of zeros. False when
  // there is no such channel, or its data does not fill the layer's rectangle.
  bool decompressChannel(std::int32_t layer, std::uint32_t channel);
  bool compressChannel(std::int32_t layer, std::uint32_t channel);

  // Gives a channel (by position in its layer, which has it) other data, of `length` bytes.
  void replaceChannel(std::int32_t layer, std::uint32_t channel, std::uint16_t compression,
                      Bytes data, std::uint32_t length);

  // The first resource with that id, owned by the document; null when there is none.
  PsdResource* findResource(std::uint16_t id) const;

  // Inserts after the first resource with id afterId, else at the end. resourcesLength grows by the
  // resource's header and name; the caller adds the data's length. False when there is no resource
  // or memory runs out.
  bool insertResource(std::unique_ptr<PsdResource> resource, std::uint16_t afterId);

  // Appends an opaque black layer over the whole image and returns its index; a document without
  // layers first gets a base layer made from its merged image. -1 when the document cannot carry
  // one: it is not 8-bit PSD version 1, has no pixels or a side over kMaxSide, or has no complete
  // merged image of at least 3 channels to make the base layer from; or when the name is over 255
  // bytes. `status`, where given, gets the reason.
  std::int32_t addLayer(const char* name, Status* status = nullptr);

  // Removes a layer with its channels; does nothing for layer 0 and for an index that is no
  // layer's.
  void removeLayer(std::int32_t index);
  void removeLayerByName(const char* name);
  // Removes all layers of that name but layer 0, in time that does not grow with their number.
  void removeLayersByName(const char* name);

  // Appends a hidden layer that carries `size` bytes in its channel planes, at most 4 x rows x
  // columns - 5. False where addLayer() gives -1, and for more bytes than that.
  bool addDataLayer(const char* name, std::uint32_t size, const std::uint8_t* bytes,
                    Status* status = nullptr);

  // What addDataLayer() stored in the first layer of that name; the channels it reads are packed
  // afterwards. Null, with `size` untouched, when there is no such layer or it does not hold what
  // it says.
  std::unique_ptr<std::uint8_t[]> readDataLayer(const char* name, std::uint32_t& size);

  // The same, and the document stays as it is. Only the rows that hold the bytes are unpacked.
  std::unique_ptr<std::uint8_t[]> peekDataLayer(const char* name, std::uint32_t& size) const;

  // Writes a rectangle (in the image's pixels) of red, green, blue, alpha bytes, row after row,
  // into an RGBA layer; pixels outside the layer are passed over. False unless the document is
  // 8-bit RGB and the layer has exactly 4 channels with sound data.
  bool setLayerPixels(std::int32_t layer, std::uint32_t left, std::uint32_t top,
                      std::uint32_t right, std::uint32_t bottom, const std::uint8_t* rgba);

 private:
  struct BuiltLayer;
  class PlaneStream;

  PsdDocument() = default;
  Status loadFile(const char* loadPath);
  // Whether saving there would replace the file at `path`.
  bool isOwnPath(const char* savePath) const;
  std::size_t channelTableStart(std::int32_t layer) const;
  PsdChannelInfo* findChannelInfo(std::int32_t layer, std::uint32_t channel);

  // Adds to both section lengths (or subtracts).
  void changeSectionLengths(std::int64_t difference);

  // A raw copy of a channel's plane, or of its first `most` bytes; null when its data does not fill
  // the layer's rectangle, or that part of it.
  std::unique_ptr<std::uint8_t[]> unpackedPlane(std::int32_t layer, std::uint32_t channel,
                                                std::size_t& size,
                                                std::uint64_t most = UINT64_MAX) const;

  // Both build what is to be committed and change nothing; false when it cannot be built.
  bool buildBaseLayer(BuiltLayer& base) const;
  bool buildLayer(BuiltLayer& built, const PsdLayer& below, const char* name, std::uint8_t flags,
                  const std::uint8_t* content, std::uint64_t contentLength) const;
  // A new layer whose planes start with `content`; its index, or -1.
  std::int32_t appendLayer(const char* name, std::uint8_t flags, const std::uint8_t* content,
                           std::uint64_t contentLength, Status* status);
  std::int32_t tryAppendLayer(const char* name, std::uint8_t flags, const std::uint8_t* content,
                              std::uint64_t contentLength);
  // Why tryAppendLayer() failed.
  Status layerObstacle(const char* name) const;

  // Reserves memory for all that the commits add, so that they cannot fail; false when there is too
  // little. A resource gets room behind its data, which does not change what is saved.
  bool reserveForLayers(std::size_t newLayers, std::size_t newChannels);
  bool reserveGroupEntry();
  void commitBaseLayer(BuiltLayer& built);
  void commitLayer(BuiltLayer& built);
  void extendLayerGroups();
  void takeLayerId(PsdLayer& layer);

  mutable FileIdentity onDisk_;  // of the file at `path` as it was loaded, or saved last
};

}  // namespace morvane

#endif  // MORVANE_PSD_PSDDOCUMENT_H_
