#include "tools/image/Picture.h"

#include <gtest/gtest.h>

#include <cstring>

#include "geometry/GoblinGeometry.h"
#include "util/ByteOrder.h"

// Expected colours follow from the pixels that each case is made of, by hand.
namespace tools {
namespace {

using morvane::PsdDocument;
using Bytes = std::vector<std::uint8_t>;

morvane::Bytes owned(const Bytes& bytes) {
  std::unique_ptr<std::uint8_t[]> copy(new std::uint8_t[bytes.size() + 1]);
  std::copy(bytes.begin(), bytes.end(), copy.get());
  return copy;
}

PsdDocument merged(std::uint32_t width, std::uint32_t height, std::uint16_t mode,
                   std::uint16_t depth, std::uint16_t channels, std::uint16_t compression,
                   const Bytes& data) {
  PsdDocument document(1, 1);
  document.columns = width;
  document.rows = height;
  document.colourMode = mode;
  document.depth = depth;
  document.channels = channels;
  document.mergedCompression = compression;
  document.mergedLength = static_cast<std::uint32_t>(data.size());
  document.mergedData = owned(data);
  return document;
}

Bytes pictureOf(const PsdDocument& document, std::uint32_t maxSide = 100) {
  Picture picture;
  std::string fault;
  EXPECT_TRUE(readPicture(document, maxSide, picture, fault)) << fault;
  return picture.rgba;
}

TEST(Picture, IsTheMergedImageInEveryColourModeThatIsShown) {
  const Bytes rgb = {1, 2, 10, 20, 100, 200, 0, 255};
  PsdDocument palette = merged(2, 1, 2, 8, 1, 0, {0, 255});
  palette.colourModeLength = 768;
  palette.colourModeData.reset(new std::uint8_t[768]());
  const int entries[6] = {0, 256, 512, 255, 511, 767};
  for (int i = 0; i < 6; ++i) palette.colourModeData[entries[i]] = static_cast<std::uint8_t>(i + 1);
  PsdDocument clear = merged(2, 1, 3, 8, 4, 0, rgb);
  clear.mergedAlpha = true;
  const struct {
    PsdDocument document;
    Bytes expected;
  } cases[] = {
      {merged(2, 1, 3, 8, 3, 0, rgb), {1, 10, 100, 255, 2, 20, 200, 255}},
      {std::move(clear), {1, 10, 100, 0, 2, 20, 200, 255}},
      // Three row lengths; the second packet runs over the end of a row.
      {merged(2, 1, 3, 8, 3, 1, {0, 2, 0, 2, 0, 2, 0, 7, 0xFD, 9, 0, 8}),
       {7, 9, 9, 255, 9, 9, 8, 255}},
      {merged(2, 1, 3, 16, 3, 0, {1, 99, 2, 99, 3, 99, 4, 99, 5, 99, 6, 99}),
       {1, 3, 5, 255, 2, 4, 6, 255}},
      {merged(2, 1, 1, 8, 1, 0, {5, 6}), {5, 5, 5, 255, 6, 6, 6, 255}},
      {std::move(palette), {1, 2, 3, 255, 4, 5, 6, 255}},
      {merged(2, 1, 4, 8, 4, 0, {255, 102, 0, 255, 255, 255, 255, 50}),
       {255, 0, 255, 255, 20, 50, 50, 255}},
  };
  for (const auto& test : cases) EXPECT_EQ(pictureOf(test.document), test.expected);
}

TEST(Picture, IsScaledDownToTheMeanOfItsPixels) {
  const PsdDocument gray = merged(4, 2, 1, 8, 1, 0, {0, 10, 100, 100, 20, 30, 100, 101});
  EXPECT_EQ(pictureOf(gray, 2), (Bytes{15, 15, 15, 255, 100, 100, 100, 255}));
  const PsdDocument odd = merged(3, 1, 1, 8, 1, 0, {10, 20, 40});
  EXPECT_EQ(pictureOf(odd, 2), (Bytes{15, 15, 15, 255, 40, 40, 40, 255}));
}

TEST(Picture, WhatCannotBeShownIsRefusedWithTheReason) {
  const struct {
    PsdDocument document;
    const char* reason;
  } cases[] = {
      {merged(2, 2, 3, 8, 3, 0, Bytes(11)), "cut off"},
      {merged(2, 2, 3, 8, 3, 1, {0, 1, 0, 1, 0, 1, 0, 1, 0, 1, 0, 1, 0xFF, 3}), "cut off"},
      {merged(2, 2, 3, 8, 3, 1, {0, 1, 0}), "cut off"},
      {merged(2, 2, 3, 8, 3, 2, Bytes(12)), "compressed"},
      {merged(2, 2, 9, 8, 3, 0, Bytes(12)), "colour mode 9"},
      {merged(2, 2, 3, 32, 3, 0, Bytes(48)), "32 bits"},
      {merged(2, 2, 3, 8, 2, 0, Bytes(12)), "no colours"},
      {merged(2, 2, 2, 8, 1, 0, Bytes(4)), "no colours"},
      {merged(4000000000u, 4000000000u, 3, 8, 3, 1, {0xFF, 3}), "not shown"},
      {merged(300000, 300000, 3, 8, 3, 1, {0xFF, 3}), "cut off"},
  };
  for (const auto& test : cases) {
    Picture picture;
    std::string fault;
    EXPECT_FALSE(readPicture(test.document, 100, picture, fault));
    EXPECT_NE(fault.find(test.reason), std::string::npos) << fault;
  }
}

// Layers over the one pixel of a document whose merged image is black.
class Layers : public testing::Test {
 protected:
  using Channels = std::vector<std::pair<std::uint16_t, std::uint8_t>>;

  morvane::PsdLayer& add(const Channels& channels, const char* blend = "norm",
                         std::uint8_t opacity = 255) {
    morvane::PsdLayer layer;
    layer.right = layer.bottom = 1;
    std::memcpy(layer.blendKey, blend, 4);
    layer.opacity = opacity;
    layer.channelCount = static_cast<std::uint16_t>(channels.size());
    layer.channelInfos.reset(new morvane::PsdChannelInfo[channels.size()]);
    for (std::size_t i = 0; i < channels.size(); ++i) {
      layer.channelInfos[i] = {channels[i].first, 3};
      document_.channelTable.push_back({0, owned({channels[i].second})});
    }
    document_.layers.push_back(std::move(layer));
    ++document_.layerCount;
    return document_.layers.back();
  }

  void addSection(std::uint32_t kind, std::uint8_t flags = 0, std::uint8_t opacity = 255) {
    morvane::PsdLayer& layer = add({}, "norm", opacity);
    layer.flags = flags;
    layer.trailingLength = 16;
    layer.trailingData.reset(
        new std::uint8_t[16]{'8', 'B', 'I', 'M', 'l', 's', 'c', 't', 0, 0, 0, 4});
    morvane::storeBe32(layer.trailingData.get() + 12, kind);
  }

  void gray(std::uint8_t value) { add({{0, value}, {1, value}, {2, value}}); }

  PsdDocument document_{1, 1};
};

TEST_F(Layers, BlendWithOpacityMaskAndMode) {
  const Channels light = {{0, 200}, {1, 100}, {2, 50}};
  const Channels halfClear = {{0xFFFF, 51}, {0, 200}, {1, 100}, {2, 50}};
  const Channels masked = {{0, 200}, {1, 100}, {2, 50}, {0xFFFE, 102}};
  const struct {
    Channels channels;
    const char* blend;
    std::uint8_t opacity;
    Bytes expected;  // over 100, 100, 100
  } cases[] = {
      {light, "norm", 255, {200, 100, 50, 255}},     {light, "norm", 51, {120, 100, 90, 255}},
      {halfClear, "norm", 255, {120, 100, 90, 255}}, {masked, "norm", 255, {140, 100, 80, 255}},
      {light, "mul ", 255, {78, 39, 20, 255}},       {light, "scrn", 255, {222, 161, 130, 255}},
      {light, "over", 255, {157, 78, 39, 255}},      {light, "dark", 255, {100, 100, 50, 255}},
      {light, "lite", 255, {200, 100, 100, 255}},    {light, "lddg", 255, {255, 200, 150, 255}},
  };
  for (const auto& test : cases) {
    document_ = PsdDocument(1, 1);
    gray(100);
    add(test.channels, test.blend, test.opacity).mask = {20, 0, 0, 1, 1, 0, 0, 0, {}};
    EXPECT_EQ(pictureOf(document_), test.expected) << test.blend << int{test.opacity};
  }
  document_.layers[1].flags = 2;  // hidden
  EXPECT_EQ(pictureOf(document_), (Bytes{100, 100, 100, 255}));
  add(masked).mask = {20, 0, 0, 1, 1, 0, 2, 0, {}};  // its mask is switched off
  add(halfClear).name = morvane::copyText("GoblinGeometry");
  EXPECT_EQ(pictureOf(document_), (Bytes{200, 100, 50, 255}));
}

TEST_F(Layers, GroupsHideAndFadeWhatIsInThem) {
  gray(100);
  addSection(3);
  gray(200);
  addSection(3);
  gray(50);
  addSection(1, 2);      // the inner group is hidden
  addSection(2, 0, 51);  // the outer one shows a fifth
  EXPECT_EQ(pictureOf(document_), (Bytes{120, 120, 120, 255}));
}

TEST_F(Layers, AClippedLayerShowsOnlyOverItsBaseAndDamageEndsNothing) {
  gray(100);
  add({{0xFFFF, 51}, {0, 0}, {1, 0}, {2, 0}});  // leaves 80
  add({{0, 200}, {1, 200}, {2, 200}}).clipping = 1;
  EXPECT_EQ(pictureOf(document_), (Bytes{104, 104, 104, 255}));
  document_.layers[1].right = 1000000;  // more than there is data for
  document_.layers[1].bottom = 2147483647;
  document_.layers[2].left = -2147483647 - 1;
  EXPECT_EQ(pictureOf(document_), (Bytes{100, 100, 100, 255}));
  document_.layers[1].flags = 2;  // a hidden base hides what is clipped to it
  EXPECT_EQ(pictureOf(document_), (Bytes{100, 100, 100, 255}));
}

}  // namespace
}  // namespace tools
