#include <algorithm>
#include <cstring>

#include "tests/psd/PsdTest.h"

namespace morvane {
namespace {

const char* const kName = "GoblinGeometry";
const std::string kLayerId = block("lyid", be32(1));

TEST_F(PsdTest, BlankDocumentIsABlackImage) {
  const PsdDocument document(256, 256);
  EXPECT_EQ(document.findLayer("x"), -1);
  EXPECT_EQ(document.layerAndMaskLength, 0u);
  std::string expected = "8BPS" + be16(1) + zeros(6) + be16(3) + be32(256) + be32(256) + be16(8) +
                         be16(3) + zeros(12) + be16(1);
  for (int row = 0; row < 768; ++row) expected += be16(4);
  for (int row = 0; row < 768; ++row) expected += std::string("\x81\0\x81\0", 4);
  EXPECT_EQ(expected.size(), 4648u);
  EXPECT_TRUE(saved(document) == expected);
}

TEST_F(PsdTest, FirstLayerBringsItsBase) {
  PsdDocument document(256, 256);
  ASSERT_EQ(document.addLayer(kName), 1);
  EXPECT_EQ(document.layerInfoLength, 11086u);
  EXPECT_EQ(document.layerAndMaskLength, 11094u);
  EXPECT_EQ(document.layers[0].flags, 9);
  EXPECT_EQ(document.layers[0].extraLength, 84u);
  EXPECT_EQ(document.layers[1].flags, 8);
  EXPECT_EQ(document.layers[1].extraLength, 124u);
  EXPECT_EQ(document.layerChannels(1)[0].data[513], 0xFF);  // opaque
  EXPECT_EQ(document.layerChannels(1)[1].data[513], 0x00);  // black
  const PsdResource* const groups = document.findResource(1026);
  ASSERT_TRUE(document.findResource(1024) && groups);
  EXPECT_EQ(document.findResource(1024)->data[1], 1);
  EXPECT_EQ(std::string(groups->data.get(), groups->data.get() + groups->size), zeros(4));

  const std::string bytes = saved(document);
  EXPECT_EQ(bytes.size(), 15772u);
  std::string unicode = block("luni", be32(14));
  unicode[11] = 32;
  for (const char* c = kName; *c; ++c) unicode += be16(static_cast<unsigned char>(*c));
  EXPECT_NE(bytes.find(std::string("\x0E") + kName + zeros(1) + unicode + kLayerId),
            std::string::npos);
  const PsdDocument again = sound(bytes);
  EXPECT_TRUE(saved(again) == bytes);
  expectLengthsInStep(again);
}

TEST_F(PsdTest, RemovesAllLayersOfANameAboveTheBottomOne) {
  PsdDocument document(4, 4);
  ASSERT_EQ(document.addLayer("one"), 1);
  const std::string one = saved(document);
  ASSERT_EQ(document.addLayer("x"), 2);
  ASSERT_EQ(document.addLayer("two"), 3);
  ASSERT_EQ(document.addLayer("x"), 4);
  document.removeLayersByName("x");
  expectLengthsInStep(document);
  ASSERT_EQ(document.layerCount, 3);
  EXPECT_EQ(document.findLayer("two"), 2);
  EXPECT_EQ(document.layerChannels(2), document.channelTable.data() + 7);
  document.layers[0].name = std::make_unique<char[]>(2);
  document.layers[0].name[0] = 'x';
  document.removeLayersByName("x");
  EXPECT_EQ(document.layerCount, 3);
  document.layers[0].name.reset();
  document.removeLayersByName("two");
  const PsdDocument again = sound(one);
  EXPECT_EQ(document.layerAndMaskLength, again.layerAndMaskLength);
  EXPECT_EQ(channelBytes(document, 1), channelBytes(again, 1));
  const std::uint8_t goblins[] = {7, 8, 9};
  ASSERT_TRUE(document.addDataLayer("x", 3, goblins));
  std::uint32_t size = 0;
  const auto back = document.readDataLayer("x", size);
  ASSERT_TRUE(back != nullptr && size == 3);
  EXPECT_EQ(back[2], 9);
}

TEST_F(PsdTest, ReplacesOnlyTheFileThatWasLoaded) {
  PsdDocument document = sound(layeredFile().file(), "mine.psd");
  std::error_code none;
  std::filesystem::create_symlink(path("mine.psd"), path("link.psd"), none);
  // Windows, where links take a permission, has the same file under this name.
  const std::string other = none ? "MINE.PSD" : "link.psd";
  ASSERT_TRUE(document.save(path("mine.psd").c_str()));
  ASSERT_TRUE(document.save(path(other).c_str()));
  write("mine.psd", "an artist's");
  for (const std::string& name : {std::string("mine.psd"), other, std::string("./mine.psd")}) {
    Status status;
    EXPECT_FALSE(document.save(path(name).c_str(), &status)) << name;
    EXPECT_EQ(status.code(), StatusCode::kChanged) << name << ": " << status.text();
  }
  EXPECT_EQ(read("mine.psd"), "an artist's");
  EXPECT_TRUE(document.save(path("other.psd").c_str()));
  EXPECT_TRUE(document.save(path("other.psd").c_str()));
}

TEST_F(PsdTest, RemovingALayerUndoesAddingIt) {
  PsdDocument document(4, 4);
  document.addLayer("one");
  const std::string one = saved(document);
  ASSERT_EQ(document.addLayer("two"), 2);
  ASSERT_EQ(document.addLayer("one"), 3);
  EXPECT_EQ(document.findLayer("one"), 1);
  document.removeLayerByName("two");
  EXPECT_EQ(document.findLayer("one"), 1);
  document.removeLayer(2);
  expectLengthsInStep(document);
  for (std::int32_t index : {-1, 0, 2, 99}) document.removeLayer(index);
  document.removeLayerByName("missing");
  document.layers[0].name = std::make_unique<char[]>(2);
  document.layers[0].name[0] = 'b';
  document.removeLayerByName("b");
  document.layers[0].name.reset();
  EXPECT_EQ(document.layerCount, 2);
  PsdResource* const groups = document.findResource(1026);
  ASSERT_EQ(groups->size, 8u);  // removing leaves the entries of the removed layers
  groups->size = 4;
  document.resourcesLength -= 4;
  EXPECT_TRUE(saved(document) == one);
}

TEST_F(PsdTest, RefusesLayersThatTheDocumentCannotCarry) {
  struct {
    const char* reason;
    void (*change)(PsdDocument&);
  } const cases[] = {
      {"begins with 38 42 50 42", [](PsdDocument& d) { d.signature[3] = 'B'; }},
      {"version 2 is not supported", [](PsdDocument& d) { d.version = 2; }},
      {"4 x 0 pixels", [](PsdDocument& d) { d.rows = 0; }},
      {"0 x 4 pixels", [](PsdDocument& d) { d.columns = 0; }},
      {"65536 x 4 pixels", [](PsdDocument& d) { d.columns = PsdDocument::kMaxSide + 1; }},
      {"16 bits", [](PsdDocument& d) { d.depth = 16; }},
      {"2 channels", [](PsdDocument& d) { d.channels = 2; }},
      {"cut off", [](PsdDocument& d) { d.rows = 5; }},
      {"cut off", [](PsdDocument& d) { d.mergedLength -= 1; }},
      {"cut off",
       [](PsdDocument& d) {
         d.mergedCompression = 0;
         d.mergedLength = 47;
       }},
  };
  for (const auto& test : cases) {
    SCOPED_TRACE(test.reason);
    PsdDocument document(4, 4);
    test.change(document);
    const std::string before = saved(document);
    Status status;
    EXPECT_EQ(document.addLayer("x", &status), -1);
    EXPECT_NE(status.text().find(test.reason), std::string::npos) << status.text();
    EXPECT_FALSE(addData(document, "x", payload(3)));
    EXPECT_TRUE(saved(document) == before);
  }
  PsdDocument document(4, 4);
  EXPECT_EQ(document.addLayer(std::string(256, 'n').c_str()), -1);
  EXPECT_EQ(document.addLayer(nullptr), -1);
  ASSERT_EQ(document.addLayer(std::string(255, '\x80').c_str()), 1);
  EXPECT_EQ(document.layers[1].unicodeChars[254], 0x80);
  EXPECT_EQ(document.layers[1].unicodeChars[255], 0);
  EXPECT_EQ(std::strlen(sound(saved(document)).layers[1].name.get()), 255u);
}

// 2 x 2 pixels and 4 merged channels; the packed planes have rows of different lengths.
TEST_F(PsdTest, BaseLayerTakesTheMergedPlanes) {
  const std::string raw = "abcdefghijklmnop";
  HandMade hand;
  hand.hasLayers = false;
  hand.header[13] = 4;
  hand.merged = be16(0) + raw;
  std::string table, rows;
  for (std::size_t row = 0; row < 8; ++row) {
    const std::string packed =
        (row % 2 ? "\x80" : "") + ("\1" + raw.substr(2 * row, 2)) + std::string(row % 3, '\x80');
    table += be16(static_cast<unsigned>(packed.size()));
    rows += packed;
  }
  PsdDocument fromRaw = sound(hand.file());
  hand.merged = be16(1) + table + rows;
  PsdDocument fromPacked = sound(hand.file());
  for (PsdDocument* document : {&fromRaw, &fromPacked}) {
    ASSERT_EQ(document->addLayer("x"), 1);
    expectLengthsInStep(*document);
    for (std::uint32_t c = 0; c < 3; ++c) {
      EXPECT_EQ(planeOf(*document, 0, c, 4), raw.substr(4 * c, 4));
      ASSERT_TRUE(document->compressChannel(0, c));
      expectLengthsInStep(*document);
    }
  }
}

TEST_F(PsdTest, NewLayerTakesOverOnlyWhatDescribesNoContent) {
  const std::string group = block("lsct", be32(1)), odd = block("clbl", "x") + zeros(1);
  std::string b64 = block("knko", be32(7)), notBlocks = kLayerId + "rest of no block";
  b64[3] = '4';
  b64[2] = '6';
  const auto id = [](unsigned low) { return block("lyid", be32(low)); };
  struct {
    std::string below, above;
  } const cases[] = {
      {group + id(5), id(0x00)},  // the seed's low byte wraps, without a carry
      {odd + id(0x0506) + block("luni", zeros(8)) + b64, odd + id(0x0500) + b64},
      {b64 + group, b64},
      {"", ""},
      {id(5) + id(6), id(0) + id(6)},
      {notBlocks, id(0) + "rest of no block"},
      {group + "x", block("lsct", be32(0)) + "x"},  // byte 15, wherever that falls
      {block("clbl", "x"), block("clbl", "x")},  // not padded: no sequence, and too short for an id
  };
  for (const auto& test : cases) {
    HandMade hand;
    hand.extras = {zeros(8) + shortName("a") + block("luni", zeros(4)) + test.below};
    hand.resources = "8BIM" + be16(1044) + zeros(2) + sized(be32(0x010203FF));
    PsdDocument document = sound(hand.file());
    ASSERT_EQ(document.addLayer("x"), 1);
    const PsdLayer& layer = document.layers[1];
    EXPECT_EQ(
        std::string(layer.trailingData.get(), layer.trailingData.get() + layer.trailingLength),
        test.above);
    EXPECT_EQ(document.findResource(1044)->data[3], 0);
    EXPECT_EQ(document.findResource(1044)->data[2], 3);
    expectLengthsInStep(document);
  }
}

TEST_F(PsdTest, InsertsResourcesAfterTheOneAskedFor) {
  PsdDocument document(1, 1);
  const auto insert = [&](std::uint16_t id, const char* name, std::uint16_t after) {
    auto resource = std::make_unique<PsdResource>();
    std::memcpy(resource->signature, "8BIM", 4);
    resource->id = id;
    resource->name = std::make_unique<char[]>(std::strlen(name) + 1);
    std::strcpy(resource->name.get(), name);
    document.insertResource(std::move(resource), after);
  };
  insert(1, "", 7);
  insert(2, "ab", 7);
  insert(3, "abc", 1);
  EXPECT_EQ(document.resourcesLength, 12u + 14 + 14);
  ASSERT_EQ(document.resources.size(), 3u);
  EXPECT_EQ(document.resources[1]->id, 3);
  const PsdDocument again = sound(saved(document));
  ASSERT_EQ(again.resources.size(), 3u);
  EXPECT_STREQ(again.resources[2]->name.get(), "ab");
}

TEST_F(PsdTest, DataLayerGivesItsBytesBack) {
  struct {
    std::uint32_t width, height;
  } const images[] = {{256, 256}, {7, 5}, {2, 2}, {3, 1}, {1, 2}};
  for (const auto& [width, height] : images) {
    const std::size_t plane = std::size_t{width} * height;
    for (std::size_t size :
         {std::size_t{0}, plane - 5, plane - 4, plane - 3, 3 * plane, 4 * plane - 5}) {
      if (size > 4 * plane - 5) continue;  // wrapped around
      PsdDocument document(width, height);
      ASSERT_TRUE(addData(document, kName, payload(size))) << plane << ' ' << size;
      EXPECT_EQ(document.findLayer(kName), 1);
      EXPECT_EQ(document.layers[1].flags, 10);
      const std::string before = saved(document);
      EXPECT_TRUE(holdsData(document, kName, payload(size))) << plane << ' ' << size;
      EXPECT_TRUE(saved(document) == before);
      PsdDocument again = sound(before);
      EXPECT_TRUE(holdsData(again, kName, payload(size)));
      expectLengthsInStep(again);
      if (size + 4 != plane) continue;
      ASSERT_TRUE(again.decompressChannel(1, 1));  // holds nothing, but is read all the same
      EXPECT_TRUE(holdsData(again, kName, payload(size)));
      EXPECT_EQ(again.layerChannels(1)[1].compression, 1);
    }
    PsdDocument document(width, height);
    EXPECT_FALSE(addData(document, kName, payload(4 * plane - 4)));
    EXPECT_EQ(document.layerCount, 0);
  }
  PsdDocument pixel(1, 1);
  EXPECT_FALSE(addData(pixel, kName, {}));  // four bytes hold the length and nothing ends the layer
}

TEST_F(PsdTest, DataLayerKeepsTheFillBehindItsBytes) {
  PsdDocument document(4, 3);
  ASSERT_TRUE(addData(document, kName, Payload(10, 'p')));  // 14 bytes: 12 and 2
  const std::string planes[] = {std::string("\x0A\0\0\0", 4) + "pppppppp", "pp" + zeros(10),
                                zeros(12)};
  for (std::uint32_t c = 0; c < 3; ++c) EXPECT_EQ(planeOf(document, 1, c, 12), planes[c]);
  expectLengthsInStep(document);
  EXPECT_TRUE(holdsData(document, kName, Payload(10, 'p')));
  EXPECT_EQ(document.layerChannels(1)[1].compression, 1);  // touched by reading
  EXPECT_EQ(document.layerChannels(1)[2].compression, 0);
}

TEST_F(PsdTest, RefusesDataLayersThatLie) {
  struct {
    const char* what;
    void (*change)(PsdDocument&);
  } const cases[] = {
      {"stored length", [](PsdDocument& d) { d.layerChannels(1)[0].data[2] = 1; }},
      {"one byte over", [](PsdDocument& d) { d.layerChannels(1)[0].data[0] = 60; }},
      {"channels", [](PsdDocument& d) { d.layers[1].channelCount = 1; }},
      {"rectangle", [](PsdDocument& d) { d.layers[1].right = 3; }},
      {"negative rectangle", [](PsdDocument& d) { d.layers[1].right = -4; }},
      {"no pixels", [](PsdDocument& d) { d.rows = 0; }},
  };
  for (const auto& test : cases) {
    PsdDocument document(4, 4);
    ASSERT_TRUE(addData(document, kName, payload(30)));
    ASSERT_TRUE(document.decompressChannel(1, 0));
    test.change(document);
    std::uint32_t size = 77;
    EXPECT_EQ(document.readDataLayer(kName, size), nullptr) << test.what;
    EXPECT_EQ(document.readDataLayer("no such layer", size), nullptr);
    EXPECT_EQ(size, 77u);
  }
}

// Cut to 12 of the image's 16 pixels, each plane of the layer starts with its part of the bytes.
TEST_F(PsdTest, DataLayerNeedBeNoLargerThanWhatItHolds) {
  struct {
    std::size_t size;
    bool held;
  } const cases[] = {{3, true}, {8, true}, {9, false}, {12, false}, {13, false}};
  for (const auto& [size, held] : cases) {
    PsdDocument document(4, 4);
    ASSERT_TRUE(addData(document, kName, payload(size)));
    document.layers[1].right = 3;
    const std::string before = saved(document);
    EXPECT_EQ(holdsData(document, kName, payload(size)), held) << size;
    if (!held) EXPECT_TRUE(saved(document) == before) << size;
    expectLengthsInStep(document);
  }
}

TEST_F(PsdTest, BlankDocumentThatCannotBeMadeCannotBeUsed) {
  const std::uint32_t most = 0xFFFFFFFF;
  const std::uint32_t sides[][2] = {{1, most}, {most, 1000}, {most, most}, {1, most / 3}};
  for (const auto& [width, height] : sides) {
    PsdDocument document(width, height);
    EXPECT_EQ(document.rows, 0u);
    EXPECT_EQ(document.columns, 0u);
    EXPECT_EQ(document.addLayer("x"), -1);
    EXPECT_FALSE(document.save(path("none.psd").c_str()));
    document.reset(2, 2);
    EXPECT_EQ(document.addLayer("x"), 1);
  }
  EXPECT_EQ(entries(), 0);
}

TEST_F(PsdTest, SetsThePixelsInsideTheLayer) {
  PsdDocument document(4, 4);
  ASSERT_EQ(document.addLayer("x"), 1);
  document.layers[1].left = 1;  // a layer of 4 x 4 pixels at (1, 2)
  document.layers[1].right = 5;
  document.layers[1].top = 2;
  document.layers[1].bottom = 6;
  std::string rgba;  // of the rectangle (0, 1) to (3, 4): pixel (x, y) is "xyRA"
  for (int y = 1; y < 4; ++y)
    for (int x = 0; x < 3; ++x)
      rgba += {static_cast<char>('0' + x), static_cast<char>('0' + y), 'B', 'A'};
  const auto* const bytes = reinterpret_cast<const std::uint8_t*>(rgba.data());
  ASSERT_TRUE(document.setLayerPixels(1, 0, 1, 3, 4, bytes));
  ASSERT_TRUE(document.setLayerPixels(1, 3, 5, 4, 6, bytes));  // "01BA" at the layer's (2, 3)
  EXPECT_TRUE(document.setLayerPixels(1, 3, 3, 2, 2, bytes));  // an empty rectangle
  expectLengthsInStep(document);
  // Rows of 4; "." stands for what the layer held before.
  std::string planes[] = {"AA..AA........A.", "12..12........0.", "22..33........1.",
                          "BB..BB........B."};
  for (std::uint32_t c = 0; c < 4; ++c) {
    EXPECT_EQ(document.layerChannels(1)[c].compression, 1);
    std::replace(planes[c].begin(), planes[c].end(), '.', c == 0 ? '\xFF' : '\0');
    EXPECT_EQ(planeOf(document, 1, c, 16), planes[c]) << c;
  }
  EXPECT_FALSE(document.setLayerPixels(0, 0, 1, 3, 4, bytes));  // three channels
  EXPECT_FALSE(document.setLayerPixels(2, 0, 1, 3, 4, bytes));
  document.colourMode = 4;
  EXPECT_FALSE(document.setLayerPixels(1, 0, 1, 3, 4, bytes));
}

TEST_F(PsdTest, MissingChannelDataIsAPlaneOfZeros) {
  for (std::uint32_t length : {0u, 2u}) {
    HandMade hand;
    hand.channelLength = be32(length);
    hand.channel = length == 2 ? be16(1) : std::string();
    PsdDocument document = sound(hand.file());
    EXPECT_EQ(planeOf(document, 0, 0, 4), zeros(4));
    expectLengthsInStep(document);
    HandMade expected;
    expected.channel = zeros(6);
    EXPECT_TRUE(saved(document) == expected.file());
    EXPECT_FALSE(document.decompressChannel(0, 1));
    EXPECT_FALSE(document.compressChannel(1, 0));
  }
}

TEST_F(PsdTest, DoesNotUnpackWhatALayerOnlyClaims) {
  HandMade hand;
  hand.channelLength = be32(5);
  hand.channel = zeros(5);
  PsdDocument shorter = sound(hand.file());
  std::uint32_t size = 0;
  EXPECT_EQ(shorter.readDataLayer("a", size), nullptr);
  EXPECT_FALSE(shorter.compressChannel(0, 0));
  EXPECT_FALSE(shorter.decompressChannel(0, 0));  // raw already, and one byte short
  EXPECT_TRUE(saved(shorter) == hand.file());
  hand.channelLength = be32(2);
  hand.channel = zeros(2);
  PsdDocument missing = sound(hand.file());
  missing.layers[0].right = missing.layers[0].bottom = PsdDocument::kMaxSide;
  EXPECT_FALSE(missing.decompressChannel(0, 0));
}

TEST_F(PsdTest, LayerInfoDeclaredTooShortNeverWrapsAround) {
  HandMade hand;
  hand.extras = {zeros(12), zeros(8) + shortName("b") + std::string(300, 't')};
  hand.infoLengthError = 10 - static_cast<int>(hand.layerInfo().size());
  PsdDocument document = sound(hand.file());
  document.removeLayerByName("b");
  EXPECT_EQ(sound(saved(document)).layerCount, 1);
}

TEST_F(PsdTest, WritesNoMoreThanTheExtraDataHasRoomFor) {
  PsdDocument document(2, 2);
  ASSERT_EQ(document.addLayer("abc"), 1);
  PsdLayer& layer = document.layers[1];
  const std::uint32_t cut = layer.extraLength - (4 + 44 + 4);
  layer.extraLength -= cut;  // up to the name
  document.layerInfoLength -= cut;
  document.layerAndMaskLength -= cut;
  const PsdDocument again = sound(saved(document));
  EXPECT_EQ(again.layers[1].unicodeCount, 0u);
  EXPECT_EQ(again.layers[1].trailingLength, 0u);
}

TEST_F(PsdTest, LayerGroupsOfOddSizeStayPadded) {
  HandMade hand;
  hand.resources = "8BIM" + be16(1026) + zeros(2) + sized("odd") + zeros(1);
  PsdDocument document = sound(hand.file());
  ASSERT_EQ(document.addLayer("x"), 1);
  const PsdDocument again = sound(saved(document));
  const PsdResource* const groups = again.findResource(1026);
  EXPECT_EQ(std::string(groups->data.get(), groups->data.get() + groups->size), "odd" + zeros(2));
}

}  // namespace
}  // namespace morvane
