#include <gtest/gtest.h>

#include "library/DocumentFile.h"
#include "library/Goblins.h"
#include "library/Pixels.h"
#include "psd/PsdFormat.h"
#include "tests/psd/PsdTest.h"
#include "tests/util/Corpus.h"

namespace morvane {
namespace {

namespace fs = std::filesystem;

class LibraryDocument : public PsdTest {
 protected:
  static Status parsed(const std::string& bytes, PsdDocument& document) {
    return parseDocument(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size(),
                         document);
  }

  static std::string bytesOf(const Pixels& pixels) {
    return {pixels.bytes.get(), pixels.bytes.get() + pixels.size()};
  }
};

TEST_F(LibraryDocument, FailuresHaveCodes) {
  PsdDocument document(3, 5);
  const auto code = [&](const std::string& name) {
    return loadDocument(path(name), document).code();
  };
  write("cut.psd", layeredFile().file().substr(0, 60));
  write("picture.png", "not looked at");
  fs::create_directory(path("folder.psd"));
  EXPECT_EQ(code("none.psd"), StatusCode::kNotFound);
  EXPECT_EQ(code("picture.png"), StatusCode::kBadArgument);
  EXPECT_EQ(code("cut.psd"), StatusCode::kDamaged);
  EXPECT_EQ(code("folder.psd"), StatusCode::kNotAFile);
  EXPECT_EQ(code(std::string("cut\0.psd", 8)), StatusCode::kBadArgument);
  EXPECT_EQ(saveDocument(document, path("none/out.psd")).code(), StatusCode::kNotFound);
  EXPECT_EQ(saveDocument(document, path("folder.psd")).code(), StatusCode::kNotAFile);
  EXPECT_EQ(document.rows, 5u) << "a failure changes nothing";
}

// What is loaded from memory is written to memory byte for byte, and as a file.
TEST_F(LibraryDocument, GoesThroughMemoryWithoutLoss) {
  std::vector<std::string> files = {layeredFile().file()};
  if (fs::exists(corpusFolder() / "psd")) {
    for (const auto& entry : fs::recursive_directory_iterator(corpusFolder() / "psd"))
      if (entry.path().extension() == ".psd" && entry.file_size() < 300000)
        files.push_back(read(entry.path().string()));
  }
  std::size_t sound = 0;
  for (const std::string& bytes : files) {
    PsdDocument document(1, 1);
    const auto byPath = loaded(bytes);
    ASSERT_EQ(parsed(bytes, document).ok(), byPath != nullptr);
    if (byPath == nullptr) continue;
    ++sound;
    std::vector<std::uint8_t> again;
    ASSERT_TRUE(writeDocument(document, again).ok());
    EXPECT_EQ(std::string(again.begin(), again.end()), saved(*byPath));
  }
  EXPECT_GT(sound, 0u);
}

TEST_F(LibraryDocument, PixelsStandSideBySide) {
  HandMade hand;
  hand.merged = be16(0) + "RSTUghijBCDE";
  PsdDocument document = sound(hand.file());
  Pixels pixels;
  ASSERT_TRUE(readMergedPixels(document, pixels).ok());
  EXPECT_EQ(bytesOf(pixels), "RgBShCTiDUjE");
  ASSERT_TRUE(readLayerPixels(document, 0, pixels).ok());
  EXPECT_EQ(bytesOf(pixels), "wxyz");
  EXPECT_EQ(pixels.channels, std::vector<std::uint16_t>{0});

  // Packed: one row of each of three planes is a run, the other literal.
  hand.merged = be16(1);
  for (int row = 0; row < 3; ++row) hand.merged += be16(2) + be16(3);
  for (const std::string colour : {"r", "g", "b"})
    hand.merged += "\xFF" + colour + "\1" + colour + "!";
  document = sound(hand.file());
  ASSERT_TRUE(readMergedPixels(document, pixels).ok());
  EXPECT_EQ(bytesOf(pixels), "rgbrgbrgb!!!");

  // Transparency comes last, wherever the layer keeps it.
  const std::uint8_t rgba[] = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16};
  const std::int32_t layer = document.addLayer("top");
  ASSERT_TRUE(document.setLayerPixels(layer, 0, 0, 2, 2, rgba));
  ASSERT_TRUE(readLayerPixels(document, layer, pixels).ok());
  EXPECT_EQ(bytesOf(pixels), std::string(rgba, rgba + sizeof rgba));
  EXPECT_EQ(pixels.channels, (std::vector<std::uint16_t>{0, 1, 2, kTransparencyChannel}));
}

TEST_F(LibraryDocument, PixelsThatAreNotThereAreRefused) {
  Pixels pixels;
  HandMade hand;
  EXPECT_EQ(readLayerPixels(sound(hand.file()), 1, pixels).code(), StatusCode::kNotFound);
  EXPECT_EQ(readLayerPixels(sound(hand.file()), -1, pixels).code(), StatusCode::kNotFound);
  hand.merged = be16(0) + "rrrrggggbbb";
  EXPECT_EQ(readMergedPixels(sound(hand.file()), pixels).code(), StatusCode::kDamaged);
  hand.merged = be16(3) + "zip";
  EXPECT_EQ(readMergedPixels(sound(hand.file()), pixels).code(), StatusCode::kUnsupported);
  hand.channel = be16(1) + "wxyz";
  EXPECT_EQ(readLayerPixels(sound(hand.file()), 0, pixels).code(), StatusCode::kDamaged);

  hand.channel = be16(2) + "wxyz";
  EXPECT_EQ(readLayerPixels(sound(hand.file()), 0, pixels).code(), StatusCode::kUnsupported);

  // A rectangle of four thousand million pixels, for which the file brings four bytes or none.
  for (const std::uint32_t length : {6u, 2u}) {
    PsdDocument document = sound(HandMade().file());
    document.layers[0].right = document.layers[0].bottom = 65535;
    document.layers[0].channelInfos[0].length = length;
    EXPECT_EQ(readLayerPixels(document, 0, pixels).code(), StatusCode::kDamaged);
  }
  PsdDocument deep = sound(HandMade().file());
  deep.depth = 16;
  EXPECT_EQ(readLayerPixels(deep, 0, pixels).code(), StatusCode::kUnsupported);
}

}  // namespace
}  // namespace morvane
