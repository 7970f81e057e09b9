#ifndef MORVANE_TESTS_PSD_PSDTEST_H_
#define MORVANE_TESTS_PSD_PSDTEST_H_

#include <memory>
#include <string>
#include <vector>

#include "psd/PsdDocument.h"
#include "tests/util/ScratchFolder.h"

namespace morvane {

using Payload = std::vector<std::uint8_t>;

inline std::string be16(unsigned value) {
  return {static_cast<char>(value >> 8), static_cast<char>(value)};
}
inline std::string be32(std::uint32_t value) {
  return be16(value >> 16) + be16(value & 0xFFFF);
}
inline std::string zeros(std::size_t count) {
  return std::string(count, '\0');
}
inline std::string sized(const std::string& bytes) {
  return be32(static_cast<std::uint32_t>(bytes.size())) + bytes;
}

// A tagged block, not padded.
inline std::string block(const std::string& key, const std::string& data) {
  return "8BIM" + key + sized(data);
}

// A name of at most 3 bytes in a layer record.
inline std::string shortName(const std::string& name) {
  return static_cast<char>(name.size()) + name + zeros(3 - name.size());
}

// The parts of a PSD file of 2 x 2 pixels, written out by hand, that tests vary. Every layer has
// one channel of 4 raw bytes.
struct HandMade {
  std::string header =
      "8BPS" + be16(1) + zeros(6) + be16(3) + be32(2) + be32(2) + be16(8) + be16(3);
  std::string colourMode = sized("");
  std::string resources;
  std::vector<std::string> extras = {zeros(8) + shortName("a")};  // extra data of each layer
  std::string countWord;                                          // when not the number of layers
  std::string channelLength = be32(6);
  std::string channel = be16(0) + "wxyz";
  std::string infoPadding;
  int infoLengthError = 0;            // added to the declared length
  std::string afterInfo = sized("");  // the global mask and what follows
  int sectionLengthError = 0;
  bool hasLayers = true;
  std::string merged = be16(0) + "rrrrggggbbbb";

  std::string layerInfo() const {
    std::string info = countWord.empty() ? be16(static_cast<unsigned>(extras.size())) : countWord;
    for (const std::string& extra : extras) {
      info += zeros(8) + be32(2) + be32(2) + be16(1) + be16(0) + channelLength + "8BIMnorm" +
              "\xFF" + zeros(3) + sized(extra);
    }
    for (std::size_t i = 0; i < extras.size(); ++i) info += channel;
    return info + infoPadding;
  }

  std::string section() const {
    const std::string info = hasLayers ? layerInfo() : std::string();
    const std::string content =
        be32(static_cast<std::uint32_t>(info.size()) + infoLengthError) + info + afterInfo;
    return be32(static_cast<std::uint32_t>(content.size()) + sectionLengthError) + content;
  }

  std::string file() const { return header + colourMode + sized(resources) + section() + merged; }
};

// The first `size` bytes of a channel's plane, which stays unpacked.
inline std::string planeOf(PsdDocument& document, std::int32_t layer, std::uint32_t channel,
                           std::size_t size) {
  EXPECT_TRUE(document.decompressChannel(layer, channel));
  const std::uint8_t* const data = document.layerChannels(layer)[channel].data.get();
  return {data, data + size};
}

// Two layers, one of them a data layer, resources, a mask, padding and blocks.
inline HandMade layeredFile() {
  HandMade hand;
  hand.resources = "8BIM" + be16(1044) + zeros(2) + sized(be32(9)) + "8BIM" + be16(1026) + "\2ab" +
                   zeros(1) + sized("odd") + "p";
  hand.extras = {sized(std::string(28, 'm')) + sized(std::string(16, 'r')) + "\4name" + zeros(3) +
                     block("luni", be32(1) + "AB") + block("lyid", be32(3)),
                 zeros(8) + shortName("d")};
  hand.infoPadding = "p";
  hand.afterInfo = sized(std::string(14, 'g')) + block("Patt", "1234");
  return hand;
}

class PsdTest : public ScratchFolder {
 protected:
  std::string saved(const PsdDocument& document) const {
    Status status;
    EXPECT_TRUE(document.save(path("saved.psd").c_str(), &status)) << status.text();
    return read(path("saved.psd"));
  }

  // A document loaded from these bytes; null when they are refused.
  std::unique_ptr<PsdDocument> loaded(const std::string& bytes, Status* status = nullptr,
                                      const char* name = "loaded.psd") const {
    auto document = std::make_unique<PsdDocument>(1, 1);
    if (!document->load(write(name, bytes).c_str(), status)) document.reset();
    return document;
  }

  // The same, of bytes that must not be refused.
  PsdDocument sound(const std::string& bytes, const char* name = "loaded.psd") const {
    PsdDocument document(1, 1);
    Status status;
    EXPECT_TRUE(document.load(write(name, bytes).c_str(), &status)) << status.text();
    return document;
  }

  static Payload payload(std::size_t size) {
    Payload bytes(size);
    for (std::size_t i = 0; i < size; ++i) bytes[i] = static_cast<std::uint8_t>(i * 7 + i / 251);
    return bytes;
  }

  static bool addData(PsdDocument& document, const char* name, const Payload& bytes) {
    return document.addDataLayer(name, static_cast<std::uint32_t>(bytes.size()), bytes.data());
  }

  static bool holdsData(PsdDocument& document, const char* name, const Payload& bytes) {
    std::uint32_t size = 0;
    const auto data = document.readDataLayer(name, size);
    return data && Payload(data.get(), data.get() + size) == bytes;
  }

  // The bytes of every channel of a layer, as they would be saved.
  static std::string channelBytes(const PsdDocument& document, std::int32_t layer) {
    std::string all;
    const PsdLayer& record = document.layers[layer];
    for (std::uint32_t c = 0; c < record.channelCount; ++c) {
      const PsdChannel& channel = document.layerChannels(layer)[c];
      const std::uint32_t length = record.channelInfos[c].length;
      all += be16(channel.compression) + be32(length);
      if (channel.data)
        all.append(channel.data.get(), channel.data.get() + (length < 2 ? length : length - 2));
    }
    return all;
  }

  // The document's lengths, recomputed from what they are the lengths of.
  static void expectLengthsInStep(const PsdDocument& document) {
    std::uint32_t info = 2 + document.layerInfoPadding.length;
    for (const PsdLayer& layer : document.layers) {
      info += 34 + 6 * layer.channelCount + layer.extraLength;
      for (std::uint32_t c = 0; c < layer.channelCount; ++c) info += layer.channelInfos[c].length;
    }
    EXPECT_EQ(document.layerInfoLength, info);
    EXPECT_EQ(document.layerAndMaskLength,
              info + 8 + document.globalMask.length + document.sectionTail.length);
  }
};

}  // namespace morvane

#endif  // MORVANE_TESTS_PSD_PSDTEST_H_
