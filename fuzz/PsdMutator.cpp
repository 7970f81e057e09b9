// Changes layered files a record at a time: what comes out has lengths, counts and rectangles that
// agree, so that it gets past the reader. Every third change is one of bytes all the same, and so
// is that of what cannot be read.
#include <algorithm>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "fuzz/Mutator.h"
#include "psd/PsdDocument.h"

namespace {

using morvane::PsdDocument;
using morvane::PsdLayer;
using morvane::PsdResource;
using morvane::fuzz::Dice;

using Buffer = std::unique_ptr<std::uint8_t[]>;

constexpr std::size_t kMostPlane = 4096;  // bytes; inputs stay small

Buffer bytesOf(std::size_t size, Dice& dice) {
  Buffer bytes(new std::uint8_t[size]);
  const bool isPlain = dice.oneIn(2);
  for (std::size_t i = 0; i < size; ++i)
    bytes[i] = static_cast<std::uint8_t>(isPlain ? 0 : dice.below(256));
  return bytes;
}

// Lengths of sections, as psd/PsdDocument.h states them.
void fitLengths(PsdDocument& document) {
  std::uint32_t length = 2 + document.layerInfoPadding.length;
  for (const PsdLayer& layer : document.layers) {
    length += 34 + 6u * layer.channelCount + layer.extraLength;
    for (int c = 0; c < layer.channelCount; ++c) length += layer.channelInfos[c].length;
  }
  const bool hasSection = document.layerAndMaskLength != 0 || document.layerCount != 0;
  if (!hasSection) return;
  document.hasGlobalMask = true;
  document.layerInfoLength = length;
  document.layerAndMaskLength =
      length + 8 + document.globalMask.length + document.sectionTail.length;
}

PsdLayer* anyLayer(PsdDocument& document, Dice& dice) {
  return document.layers.empty() ? nullptr : &document.layers[dice.below(document.layers.size())];
}

// --- One change each

// Another rectangle, and planes that fill it: raw ones, packed ones, or none.
void moveLayer(PsdDocument& document, Dice& dice) {
  PsdLayer* const layer = anyLayer(document, dice);
  if (layer == nullptr) return;
  const std::int32_t edges[] = {0, 1, -1, 7, -30000, 30000, INT32_MAX - 100, INT32_MIN};
  const std::int32_t sides[] = {0, 1, 2, 5, 64, 65535};
  const std::int32_t width = dice.oneOf(sides);
  const std::int32_t height = dice.oneOf(sides);
  layer->top = dice.oneOf(edges);
  layer->left = dice.oneOf(edges);
  layer->bottom = layer->top > 0 ? layer->top - 0 + std::min(height, 99) : layer->top + height;
  layer->right = layer->left > 0 ? layer->left + std::min(width, 99) : layer->left + width;
  const std::size_t area = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
  const auto index = static_cast<std::int32_t>(layer - document.layers.data());
  for (std::uint32_t c = 0; c < layer->channelCount; ++c) {
    if (area > kMostPlane || dice.oneIn(4))
      document.replaceChannel(index, c, 0, nullptr, 0);
    else
      document.replaceChannel(index, c, 0, bytesOf(area, dice), static_cast<std::uint32_t>(area));
    if (area <= kMostPlane && dice.oneIn(2)) document.compressChannel(index, c);
  }
}

void changeHeader(PsdDocument& document, Dice& dice) {
  const std::uint32_t sides[] = {1, 2, 5, 30, 64, 30000, 65535};
  const std::uint16_t depths[] = {1, 8, 16, 32};
  if (dice.oneIn(2)) document.depth = dice.oneOf(depths);
  if (dice.oneIn(2)) document.colourMode = static_cast<std::uint16_t>(dice.below(10));
  if (dice.oneIn(2)) document.mergedAlpha = !document.mergedAlpha;
  if (!dice.oneIn(2)) return;
  document.rows = dice.oneOf(sides);
  document.columns = dice.oneOf(sides);
  document.channels = static_cast<std::uint16_t>(1 + dice.below(5));
  const std::size_t size = std::size_t{document.rows} * document.columns * document.channels;
  if (size > 4 * kMostPlane) return;  // the file then says more than it has
  document.mergedCompression = 0;
  document.mergedData = bytesOf(size, dice);
  document.mergedLength = static_cast<std::uint32_t>(size);
}

void changeResource(PsdDocument& document, Dice& dice) {
  auto& all = document.resources;
  if (!all.empty() && dice.oneIn(2)) {
    constexpr std::uint16_t kIds[] = {1026, 1036, 1039, 1057, 1060, 4000};
    all[dice.below(all.size())]->id = dice.oneOf(kIds);
    return;
  }
  auto resource = std::make_unique<PsdResource>();
  std::memcpy(resource->signature, "8BIM", 4);
  resource->id = static_cast<std::uint16_t>(1000 + dice.below(100));
  resource->size = static_cast<std::uint32_t>(2 * dice.below(40));
  const std::uint32_t size = resource->size;
  if (size != 0) resource->data = bytesOf(size, dice);
  if (document.insertResource(std::move(resource), 1026)) document.resourcesLength += size;
}

// A block of additional information, after those that are there.
void addBlock(PsdDocument& document, Dice& dice) {
  PsdLayer* const layer = anyLayer(document, dice);
  if (layer == nullptr) return;
  constexpr const char* kKeys[] = {"luni", "lyid", "lsct", "lnsr", "lclr", "TySh", "Mtrn", "xxxx"};
  const std::size_t content = 2 * dice.below(20);
  const std::size_t old = layer->trailingLength;
  Buffer grown(new std::uint8_t[old + 12 + content]);
  if (old != 0) std::memcpy(grown.get(), layer->trailingData.get(), old);
  std::memcpy(grown.get() + old, "8BIM", 4);
  std::memcpy(grown.get() + old + 4, dice.oneOf(kKeys), 4);
  const std::uint8_t length[] = {0, 0, 0, static_cast<std::uint8_t>(content)};
  std::memcpy(grown.get() + old + 8, length, 4);
  std::memcpy(grown.get() + old + 12, bytesOf(content, dice).get(), content);
  layer->trailingData = std::move(grown);
  layer->trailingLength += static_cast<std::uint32_t>(12 + content);
  layer->extraLength += static_cast<std::uint32_t>(12 + content);
}

// Blocks that are there, of the length that they have.
void changeBlocks(PsdDocument& document, Dice& dice) {
  PsdLayer* const layer = anyLayer(document, dice);
  if (layer == nullptr || layer->trailingLength < 13) return;
  layer->trailingData[12 + dice.below(layer->trailingLength - 12)] =
      static_cast<std::uint8_t>(dice.below(256));
}

void changeRecord(PsdDocument& document, Dice& dice) {
  PsdLayer* const layer = anyLayer(document, dice);
  if (layer == nullptr) return;
  constexpr const char* kBlends[] = {"norm", "mul ", "scrn", "pass", "diss", "\0\0\0\0"};
  switch (dice.below(4)) {
    case 0:
      layer->opacity = static_cast<std::uint8_t>(dice.below(256));
      break;
    case 1:
      layer->flags = static_cast<std::uint8_t>(dice.below(256));
      break;
    case 2:
      std::memcpy(layer->blendKey, dice.oneOf(kBlends), 4);
      break;
    default:
      if (layer->channelCount != 0)
        layer->channelInfos[dice.below(layer->channelCount)].id =
            static_cast<std::uint16_t>(dice.below(8) - 3);
  }
}

void changeLayers(PsdDocument& document, Dice& dice) {
  constexpr const char* kNames[] = {"", "$diffuse", "GoblinGeometry", "sky", "fuzz", "\xFF\xFE"};
  const char* const name = dice.oneOf(kNames);
  const bool isLarge = std::uint64_t{document.rows} * document.columns > (1u << 18);
  const std::size_t choice = dice.below(isLarge ? 1 : 3);
  if (choice == 0) document.removeLayer(static_cast<std::int32_t>(dice.below(8)));
  if (choice == 1) document.addLayer(name);
  if (choice == 2) {
    const std::size_t size = dice.below(200);
    document.addDataLayer(name, static_cast<std::uint32_t>(size), bytesOf(size, dice).get());
  }
}

// Swaps two layers with their channels, which lie in one table: only of as many channels.
void swapLayers(PsdDocument& document, Dice& dice) {
  PsdLayer* const one = anyLayer(document, dice);
  PsdLayer* const other = anyLayer(document, dice);
  if (one == nullptr || one == other || one->channelCount != other->channelCount) return;
  const auto at = [&](const PsdLayer* layer) {
    return document.layerChannels(static_cast<std::int32_t>(layer - document.layers.data()));
  };
  for (std::uint32_t c = 0; c < one->channelCount; ++c) std::swap(at(one)[c], at(other)[c]);
  std::swap(*one, *other);
}

constexpr void (*kChanges[])(PsdDocument&, Dice&) = {moveLayer,    changeHeader, changeResource,
                                                     addBlock,     changeBlocks, changeRecord,
                                                     changeLayers, swapLayers};

// The changed file; empty where there is none to change.
std::vector<std::uint8_t> changed(const std::uint8_t* data, std::size_t size, Dice& dice) {
  Buffer copy(new std::uint8_t[size]);
  std::copy_n(data, size, copy.get());
  PsdDocument document(1, 1);
  std::vector<std::uint8_t> bytes;
  if (!document.loadBytes(std::move(copy), size)) return bytes;
  for (std::size_t changes = 1 + dice.below(3); changes > 0; --changes)
    dice.oneOf(kChanges)(document, dice);
  fitLengths(document);
  document.saveBytes(bytes);
  return bytes;
}

}  // namespace

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size,
                                               std::size_t room, unsigned seed) {
  Dice dice(seed);
  if (size == 0 || dice.oneIn(3)) return LLVMFuzzerMutate(data, size, room);
  const std::vector<std::uint8_t> bytes = changed(data, size, dice);
  if (bytes.empty() || bytes.size() > room) return LLVMFuzzerMutate(data, size, room);
  std::copy(bytes.begin(), bytes.end(), data);
  return bytes.size();
}
