// A PSD file of any bytes: it is refused and the document stays what it was, or it saves as the
// same bytes; then everything that can be done to a document is done, and what is saved must load
// again as the same document.
#include <cstring>
#include <string>
#include <vector>

#include "fuzz/FuzzTools.h"
#include "psd/PsdDocument.h"

using morvane::PsdChannel;
using morvane::PsdDocument;
using morvane::PsdLayer;
using morvane::PsdResource;
using namespace morvane::fuzz;

namespace {

constexpr std::size_t kLoadMultiple = 12;   // psd/PsdDocument.h
constexpr std::int64_t kMaxArea = 1 << 18;  // pixels; what takes longer is not tried
constexpr std::size_t kMaxChannelsTried = 64;

std::string saved(const PsdDocument& document) {
  require(document.save(scratchPath("out.psd").c_str()), "a document cannot be saved");
  return readScratch("out.psd");
}

// Of the layer's rectangle, as far as it matters here how large it is.
std::int64_t area(const PsdLayer& layer) {
  const std::int64_t width = std::int64_t{layer.right} - layer.left;
  const std::int64_t height = std::int64_t{layer.bottom} - layer.top;
  if (width <= 0 || height <= 0) return 0;
  return width > INT64_MAX / height ? INT64_MAX : width * height;
}

std::string plane(const PsdDocument& document, std::int32_t layer, std::uint32_t channel) {
  const PsdChannel& held = document.layerChannels(layer)[channel];
  return {held.data.get(), held.data.get() + area(document.layers[layer])};
}

// Unpacks, packs and unpacks one channel. Every second one is left packed.
void exerciseChannel(PsdDocument& document, std::int32_t layer, std::uint32_t channel) {
  const PsdChannel& held = document.layerChannels(layer)[channel];
  const morvane::PsdChannelInfo& info = document.layers[layer].channelInfos[channel];
  if (area(document.layers[layer]) > kMaxArea && held.data == nullptr) return;
  const std::uint16_t oldCompression = held.compression;
  const std::uint32_t oldLength = info.length;
  const MemoryWatch watch;
  if (!document.decompressChannel(layer, channel)) {
    watch.requireAtMost(64, oldLength, kSmallConstant);
    require(held.compression == oldCompression && info.length == oldLength,
            "a channel that cannot be unpacked was changed");
    return;
  }
  const std::string unpacked = plane(document, layer, channel);
  require(document.compressChannel(layer, channel), "a channel cannot be packed");
  if ((layer + channel) % 2 == 0) return;
  require(document.decompressChannel(layer, channel), "a packed channel cannot be unpacked");
  require(plane(document, layer, channel) == unpacked, "packing changed a plane");
}

void exerciseChannels(PsdDocument& document) {
  std::size_t tried = 0;
  for (std::int32_t layer = 0; layer < document.layerCount; ++layer) {
    for (std::uint32_t c = 0; c < document.layers[layer].channelCount; ++c) {
      if (++tried > kMaxChannelsTried) return;
      exerciseChannel(document, layer, c);
    }
  }
}

std::string nameOf(const PsdDocument& document, std::int32_t layer) {
  const char* const name = document.layers[layer].name.get();
  return name ? name : "";
}

void exerciseLayers(PsdDocument& document) {
  const std::vector<std::uint8_t> pixels(4 * 5 * 5, 0x5A);
  std::uint32_t size = 0;
  for (std::int32_t layer = 0; layer < document.layerCount && layer < 8; ++layer) {
    if (area(document.layers[layer]) > kMaxArea) continue;
    document.readDataLayer(nameOf(document, layer).c_str(), size);
    document.setLayerPixels(layer, 1, 0, 6, 5, pixels.data());
  }
  document.readDataLayer("no such layer", size);
  document.removeLayer(document.layerCount / 2);
  document.removeLayer(document.layerCount);
  if (document.layerCount > 2) document.removeLayerByName(nameOf(document, 2).c_str());
}

void exerciseResources(PsdDocument& document) {
  auto resource = std::make_unique<PsdResource>();
  std::memcpy(resource->signature, "8BIM", 4);
  resource->id = 4000;
  require(document.insertResource(std::move(resource), 1026), "a resource cannot be inserted");
  require(document.findResource(4000) != nullptr, "an inserted resource is not there");
}

// Whether the bytes lie in a data layer now.
bool addData(PsdDocument& document, const char* name, const std::string& bytes) {
  const std::uint64_t pixels = std::uint64_t{document.rows} * document.columns;
  if (pixels > std::uint64_t{kMaxArea} || document.findLayer(name) >= 0) return false;
  const auto* const data = reinterpret_cast<const std::uint8_t*>(bytes.data());
  const std::int16_t layers = document.layerCount;
  const bool added = document.addDataLayer(name, static_cast<std::uint32_t>(bytes.size()), data);
  require(added || document.layerCount == layers, "a layer that was refused was added");
  return added;
}

bool holdsData(PsdDocument& document, const char* name, const std::string& bytes) {
  std::uint32_t size = 0;
  const auto data = document.readDataLayer(name, size);
  return data && std::string(data.get(), data.get() + size) == bytes;
}

void requireReload(PsdDocument& document, bool hasPayload, const std::string& payload) {
  const std::string bytes = saved(document);
  PsdDocument again(1, 1);
  require(again.load(writeScratch("again.psd", bytes).c_str()), "what was saved does not load");
  require(saved(again) == bytes, "what was saved and loaded saves as other bytes");
  require(again.layerCount == document.layerCount, "layers were lost or found by saving");
  require(!hasPayload || holdsData(again, "fuzz", payload), "a data layer was lost by saving");
}

void exercise(PsdDocument& document, const std::string& input) {
  exerciseChannels(document);
  exerciseLayers(document);
  exerciseResources(document);
  const std::string payload = input.substr(input.size() / 2, 300);
  const bool hasPayload = addData(document, "fuzz", payload);
  if (hasPayload) {
    require(holdsData(document, "fuzz", payload), "a data layer does not hold what it was given");
    const std::int32_t layer = document.addLayer("over it");
    require(layer == document.layerCount - 1, "a layer was added in another place");
    const auto* const pixel = reinterpret_cast<const std::uint8_t*>("rgba");
    require(document.setLayerPixels(layer, 0, 0, 1, 1, pixel) == (document.colourMode == 3),
            "a layer that was added takes no pixels, or one of another colour mode does");
  }
  requireReload(document, hasPayload, payload);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string input(data, data + size);
  const std::string path = writeScratch("in.psd", input);
  PsdDocument document(3, 2);
  require(document.addDataLayer("kept", 4, reinterpret_cast<const std::uint8_t*>("1234")), "setup");
  static const std::string before = saved(document);
  const MemoryWatch watch;
  const bool loaded = document.load(path.c_str());
  watch.requireAtMost(kLoadMultiple, size, kSmallConstant);
  if (!loaded) {
    require(saved(document) == before, "a load that failed changed the document");
    return 0;
  }
  require(saved(document) == input, "a file that was loaded saves as other bytes");
  exercise(document, input);
  return 0;
}
