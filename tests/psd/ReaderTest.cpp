#include <cstring>

#include "tests/psd/PsdTest.h"

namespace morvane {
namespace {

const std::string kNoName = zeros(8) + zeros(4);  // empty mask, ranges and name

struct Variant {
  const char* what;
  void (*change)(HandMade&);
  std::string extra = "";  // in place of a change: the only layer's extra data

  HandMade made() const {
    HandMade hand;
    if (change)
      change(hand);
    else
      hand.extras = {extra};
    return hand;
  }
};

// Files that other programs write, or might, and that no operation here ever makes.
const Variant kKept[] = {
    {"no layer section",
     [](HandMade& h) {
       h.hasLayers = false;
       h.afterInfo.clear();
       h.sectionLengthError = -4;
     }},
    {"other signature", [](HandMade& h) { h.header[0] = '9'; }},
    {"other version", [](HandMade& h) { h.header[5] = 3; }},
    {"large document without layers",
     [](HandMade& h) {
       h.header[5] = 2;
       h.hasLayers = false;
       h.afterInfo.clear();
       h.sectionLengthError = -4;  // the upper half of a length of 8 bytes
     }},
    {"colour mode data", [](HandMade& h) { h.colourMode = sized("palette"); }},
    {"reserved bytes, other depth and mode",
     [](HandMade& h) { h.header.replace(6, 6, "secret").replace(22, 4, be16(16) + be16(9)); }},
    {"resources: names, odd size, other signature",
     [](HandMade& h) {
       h.resources = "8BIM" + be16(1) + "\3abc" + sized("odd") + "p" + "MeSa" + be16(2) +
                     std::string("\2\0\1\7", 4) + sized("even");
     }},
    {"resources: last one without its padding",
     [](HandMade& h) { h.resources = "8BIM" + be16(1) + zeros(2) + sized("odd"); }},
    {"resources: padding behind them",
     [](HandMade& h) { h.resources = "8BIM" + be16(1) + zeros(2) + sized("") + zeros(3); }},
    {"resources: something else",
     [](HandMade& h) {
       h.resources = "8BIM" + be16(1) + zeros(2) + sized("") + std::string(30, '\xEE');
     }},
    {"layer info of length 0",
     [](HandMade& h) {
       h.hasLayers = false;
       h.afterInfo = sized("") + block("Patt", "12");
     }},
    {"layer info of length 0, no global mask",
     [](HandMade& h) {
       h.hasLayers = false;
       h.afterInfo.clear();
     }},
    {"no layers, counted",
     [](HandMade& h) {
       h.extras.clear();
       h.infoPadding = "pp";
     }},
    {"mask that declares less than its 20 bytes", nullptr,
     be32(4) + std::string(20, 'm') + zeros(8)},
    {"blending ranges of no whole pairs", nullptr,
     zeros(4) + sized(std::string(21, 'r')) + zeros(4)},
    {"blending ranges that declare less than one pair", nullptr,
     zeros(4) + be32(3) + std::string(8, 'r') + zeros(4)},
    {"name with a zero byte", nullptr, zeros(8) + std::string("\3a\0b", 4)},
    {"name with odd padding", nullptr, zeros(8) + "\1axy"},
    {"no name, with odd padding", nullptr, zeros(8) + std::string("\0xyz", 4)},
    {"other first block", nullptr, kNoName + block("lsct", zeros(4)) + block("luni", zeros(4))},
    {"bytes too few for a block", nullptr, kNoName + "8BIMluni"},
    {"odd Unicode name, not padded", nullptr, kNoName + block("luni", be32(1) + "AB") + "rest"},
    {"Unicode block longer than its name", nullptr,
     kNoName + block("luni", be32(2) + "ABCD" + "more and more")},
    {"Unicode block that declares less than its name", nullptr,
     kNoName + "8BIMluni" + be32(4) + be32(2) + "ABCD" + "rest"},
    {"channel of length 1",
     [](HandMade& h) {
       h.channelLength = be32(1);
       h.channel = "c";
     }},
    {"layer info padding", [](HandMade& h) { h.infoPadding = "pad"; }},
    {"layer info declared too short", [](HandMade& h) { h.infoLengthError = -3; }},
    {"layer info declared too short, blocks behind it",
     [](HandMade& h) {
       h.infoLengthError = -50;
       h.afterInfo = sized("") + block("Patt", "12");
     }},
    {"no global mask", [](HandMade& h) { h.afterInfo.clear(); }},
    {"half a global mask length", [](HandMade& h) { h.afterInfo = "ab"; }},
    {"global mask of 13", [](HandMade& h) { h.afterInfo = sized(std::string(13, 'g')); }},
    {"global mask of 16 and blocks",
     [](HandMade& h) { h.afterInfo = sized(std::string(16, 'g')) + block("Patt", "12"); }},
    {"short merged image", [](HandMade& h) { h.merged = be16(1); }},
    {"bytes behind the merged image", [](HandMade& h) { h.merged += "behind"; }},
};

TEST_F(PsdTest, KeepsEveryByteOfSoundFiles) {
  for (const Variant& variant : kKept) {
    SCOPED_TRACE(variant.what);
    const HandMade hand = variant.made();
    Status status;
    const auto document = loaded(hand.file(), &status);
    ASSERT_TRUE(document) << status.text();
    EXPECT_TRUE(saved(*document) == hand.file());

    // A layer goes before what nothing here interprets; taken out again, the file is as it was.
    if (std::memcmp(document->signature, "8BPS", 4) != 0 || document->version != 1) {
      EXPECT_EQ(document->addLayer("x"), -1);
      EXPECT_TRUE(saved(*document) == hand.file());
      continue;
    }
    if (document->depth != 8 || document->mergedLength < 12) continue;
    const bool hadLayers = !document->layers.empty();
    const std::string base = hadLayers ? channelBytes(*document, 0) : std::string();
    ASSERT_TRUE(addData(*document, "d", payload(11)));
    auto added = loaded(saved(*document));
    ASSERT_TRUE(added);
    EXPECT_EQ(added->layerInfoPadding.length, document->layerInfoPadding.length);
    EXPECT_EQ(added->sectionTail.length, document->sectionTail.length);
    if (!hadLayers) {
      expectLengthsInStep(*added);
      continue;
    }
    EXPECT_EQ(channelBytes(*added, 0), base);
    EXPECT_TRUE(holdsData(*added, "d", payload(11)));
    added->removeLayerByName("d");
    EXPECT_TRUE(saved(*added) == hand.file());
  }
}

// What most files have, in one that must be kept as well.
TEST_F(PsdTest, ReadsTheFields) {
  HandMade hand;
  hand.resources = "8BIM" + be16(1036) + "\2ab" + zeros(1) + sized("odd") + "p";
  hand.countWord = be16(0xFFFE);
  hand.extras = {be32(20) + be32(1) + be32(-2) + be32(3) + be32(4) + "\5\6" + be16(7) +
                     sized(be32(1) + be32(2) + be32(3) + be32(4)) + "\4name" + zeros(3) +
                     block("luni", be32(3) + be16(0x44F) + be16(2) + be16(3) + zeros(2)) + "rest",
                 zeros(8) + shortName("abc")};
  hand.afterInfo = sized(be16(1) + be16(2) + be16(3) + be16(4) + be16(5) + be16(6) + "\7\x08");
  const auto document = loaded(hand.file());
  ASSERT_TRUE(document);
  EXPECT_TRUE(saved(*document) == hand.file());
  EXPECT_EQ(document->path.get(), path("loaded.psd"));
  ASSERT_EQ(document->resources.size(), 1u);
  EXPECT_STREQ(document->resources[0]->name.get(), "ab");
  EXPECT_EQ(document->resources[0]->data[3], 'p');
  EXPECT_EQ(document->layerCount, 2);
  EXPECT_TRUE(document->mergedAlpha);
  const PsdLayer& layer = document->layers[0];
  EXPECT_EQ(layer.bottom, 2);
  EXPECT_EQ(layer.mask.left, -2);
  EXPECT_EQ(layer.mask.defaultColour, 5);
  EXPECT_EQ(layer.mask.padding, 7);
  EXPECT_EQ(layer.blendingRanges.grayDestination, 2u);
  EXPECT_EQ(layer.blendingRanges.ranges[0].destination, 4u);
  EXPECT_STREQ(layer.name.get(), "name");
  EXPECT_EQ(layer.unicodeChars[0], 0x44F);
  EXPECT_EQ(layer.unicodeChars[3], 0);  // beyond the count, which is odd
  EXPECT_EQ(layer.trailingLength, 4u);
  EXPECT_EQ(std::memcmp(layer.trailingData.get(), "rest", 4), 0);
  EXPECT_EQ(document->findLayer("abc"), 1);
  EXPECT_EQ(document->layerChannels(1)[0].data[3], 'z');
  EXPECT_EQ(document->globalMask.colourComponents[3], 5);
  EXPECT_EQ(document->globalMask.filler, 8);
  EXPECT_EQ(document->mergedData[4], 'g');
}

const Variant kRefused[] = {
    {"colour mode length", [](HandMade& h) { h.colourMode = be32(0xFFFFFFFF); }},
    {"resource longer than the section",
     [](HandMade& h) { h.resources = "8BIM" + be16(1) + zeros(2) + be32(8) + "1234567"; }},
    {"resource name longer than the section",
     [](HandMade& h) { h.resources = "8BIM" + be16(1) + "\x40" + zeros(20); }},
    {"section longer than the file", [](HandMade& h) { h.sectionLengthError = 1000; }},
    {"section shorter than the layer info", [](HandMade& h) { h.sectionLengthError = -8; }},
    {"layer info longer than the section", [](HandMade& h) { h.infoLengthError = 5; }},
    {"more layers than there is room", [](HandMade& h) { h.countWord = be16(30000); }},
    {"32768 layers", [](HandMade& h) { h.countWord = be16(0x8000); }},
    {"no extra data", nullptr, ""},
    {"mask longer than the extra data", nullptr, be32(80) + zeros(30)},
    {"mask cut by the extra data", nullptr, be32(20) + zeros(12)},
    {"ranges longer than the extra data", nullptr, zeros(4) + be32(80) + zeros(30)},
    {"name longer than the extra data", nullptr, zeros(8) + std::string(1, '\x09') + "abc"},
    {"Unicode block longer than the extra data", nullptr,
     kNoName + "8BIMluni" + be32(900) + be32(1) + "AB"},
    {"more characters than the extra data", nullptr,
     kNoName + block("luni", be32(0x80000001) + "AB")},
    {"channel longer than the section", [](HandMade& h) { h.channelLength = be32(0x7FFFFFFF); }},
    {"channel one byte over the layer info", [](HandMade& h) { h.channelLength = be32(7); }},
    {"channel over the layer info, into the blocks",
     [](HandMade& h) {
       h.channelLength = be32(7);
       h.afterInfo = sized("") + block("Patt", zeros(100));
     }},
    {"global mask longer than the section",
     [](HandMade& h) { h.afterInfo = be32(15) + zeros(14); }},
    {"no merged image", [](HandMade& h) { h.merged = "1"; }},
};

TEST_F(PsdTest, RefusesDamagedFilesAndStaysAsItWas) {
  PsdDocument document(3, 3);
  ASSERT_TRUE(addData(document, "d", payload(9)));
  const std::string before = saved(document);
  for (const Variant& variant : kRefused) {
    SCOPED_TRACE(variant.what);
    Status status;
    EXPECT_FALSE(document.load(write("f.psd", variant.made().file()).c_str(), &status));
    EXPECT_NE(status.text().find(" at byte "), std::string::npos) << status.text();
    EXPECT_EQ(document.path, nullptr);
    EXPECT_TRUE(saved(document) == before);
  }
}

TEST_F(PsdTest, SaysFirstWhatKindOfFileIsRefused) {
  struct {
    std::string bytes, reason;
  } const cases[] = {
      {"GIF89a" + std::string(40, 'x'), "not a PSD file: begins with 47 49 46 38, a GIF image"},
      {"\xFF\xD8\xFF\xE0" + std::string(40, 'x'),
       "not a PSD file: begins with FF D8 FF E0, a JPEG image"},
      {"text" + std::string(40, 'x'), "not a PSD file: begins with 74 65 78 74"},
      {"", "the file is empty"},
      {"8BPS" + be16(2) + std::string(40, 'x'), "version 2 is not supported: a large document"},
      {"8BPS" + be16(1), "header: "},
      {"8BPS" + be16(1).substr(1), "header: "},  // too short to have a version
  };
  for (const auto& [bytes, reason] : cases) {
    Status status;
    EXPECT_FALSE(loaded(bytes, &status));
    EXPECT_EQ(status.text().substr(0, reason.size()), reason);
  }
}

TEST_F(PsdTest, LoadsByExtension) {
  const std::string bytes = HandMade().file();
  for (const char* name : {"f.psd", "f.PSD", "f.Psd", "a.b.psd"})
    EXPECT_TRUE(loaded(bytes, nullptr, name)) << name;
  std::filesystem::create_directory(path("folder.psd"));
  Status status;
  for (const char* name : {"f.bmp", "f", "psd", "f.psd.", "folder.psd/f"}) {
    EXPECT_FALSE(loaded(bytes, &status, name)) << name;
    EXPECT_EQ(status.text(), "the file name ends neither in .psd nor in .tga");
  }
  PsdDocument document(1, 1);
  EXPECT_FALSE(document.load(path("missing.psd").c_str(), &status));
  EXPECT_EQ(status.text(), "No such file or directory");
  EXPECT_FALSE(document.load(path("folder.psd").c_str(), &status));
  EXPECT_FALSE(document.load(nullptr));
}

TEST_F(PsdTest, SavesTheSignOfTheLayerCount) {
  HandMade hand;
  hand.countWord = be16(0xFFFF);
  PsdDocument document = sound(hand.file());
  ASSERT_EQ(document.addLayer("x"), 1);
  EXPECT_EQ(saved(document).substr(hand.header.size() + 4 + 4 + 4 + 4, 2), be16(0xFFFE));
}

TEST_F(PsdTest, ReportsFailedSavesAndLeavesTheOldFile) {
  PsdDocument document(2, 2);
  const std::string before = saved(document);
  Status status;
  EXPECT_FALSE(document.save(nullptr, &status));
  ASSERT_EQ(document.addLayer(std::string(200, 'n').c_str()), 1);
  document.layerChannels(1)[2].data = nullptr;  // what a caller might do to the public members
  EXPECT_FALSE(document.save(path("saved.psd").c_str(), &status));
  EXPECT_EQ(read(path("saved.psd")), before);
  document.layers.pop_back();
  EXPECT_FALSE(document.save(path("saved.psd").c_str(), &status));
  EXPECT_EQ(read(path("saved.psd")), before);
  EXPECT_EQ(entries(), 1);
}

}  // namespace
}  // namespace morvane
