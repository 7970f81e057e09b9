#include "tests/psd/PsdTest.h"

namespace morvane {
namespace {

std::string le16(unsigned value) {
  return {static_cast<char>(value), static_cast<char>(value >> 8)};
}

std::string tga(unsigned width, unsigned height, int depth, const std::string& id,
                const std::string& pixels) {
  return std::string(1, static_cast<char>(id.size())) + zeros(1) + "\2" + zeros(9) + le16(width) +
         le16(height) + static_cast<char>(depth) + zeros(1) + id + pixels;
}

// The four planes of "$diffuse": transparency, red, green, blue.
std::string planes(PsdDocument& document, std::size_t size) {
  std::string all;
  for (std::uint32_t c = 0; c < 4; ++c) {
    EXPECT_EQ(document.layerChannels(1)[c].compression, 1);
    all += planeOf(document, 1, c, size);
    EXPECT_TRUE(document.compressChannel(1, c));
  }
  return all;
}

TEST_F(PsdTest, ImportsTga) {
  PsdDocument document = sound(tga(1, 2, 32, "an id", "BGRAbgra"), "f.TGA");
  EXPECT_EQ(document.path.get(), path("f.TGA"));
  EXPECT_EQ(document.rows, 2u);
  EXPECT_EQ(document.layerCount, 2);
  EXPECT_EQ(document.findLayer("$diffuse"), 1);
  EXPECT_EQ(document.layers[0].flags, 9);
  EXPECT_EQ(document.layers[1].flags, 8);
  EXPECT_EQ(planes(document, 2), "aArRgGbB");
  PsdDocument again = sound(saved(document));
  EXPECT_EQ(planes(again, 2), "aArRgGbB");
}

// Wide enough for vectors and no multiple of them, and of more rows than are read at once.
TEST_F(PsdTest, TakesThePlanesOfLargeTgaApart) {
  constexpr std::size_t kWidth = 997, kHeight = 300;
  for (const std::size_t pixelSize : {3u, 4u}) {
    std::string pixels, expected(4 * kWidth * kHeight, '\xFF');
    for (std::size_t i = 0; i < kWidth * kHeight * pixelSize; ++i)
      pixels += static_cast<char>(i * i / 7 + i / 4096);
    for (std::size_t i = 0; i < kWidth * kHeight; ++i) {
      const std::size_t row = kHeight - 1 - i / kWidth;  // the file starts with the bottom one
      for (std::size_t byte = 0; byte < pixelSize; ++byte)
        expected[(3 - byte) * kWidth * kHeight + i] =
            pixels[(row * kWidth + i % kWidth) * pixelSize + byte];
    }
    const int depth = static_cast<int>(8 * pixelSize);
    PsdDocument image = sound(tga(kWidth, kHeight, depth, "", pixels), "f.tga");
    EXPECT_TRUE(planes(image, kWidth * kHeight) == expected) << depth;
  }
}

// A run-length image can be as long as one that is not, and is noise when it is taken for that.
TEST_F(PsdTest, RefusesRunLengthTgaByItsName) {
  const char* const names[] = {"colour-mapped", "true-colour", "grey"};
  for (int type = 9; type <= 11; ++type) {
    std::string bytes = tga(2, 2, 24, "", zeros(12));
    bytes[2] = static_cast<char>(type);
    Status status;
    EXPECT_FALSE(loaded(bytes, &status, "f.tga"));
    EXPECT_NE(status.text().find("run-length " + std::string(names[type - 9])), std::string::npos)
        << status.text();
  }
}

TEST_F(PsdTest, WarnsOfTgaThatDoesNotBeginAtTheBottomLeft) {
  const struct {
    int descriptor;
    std::string told;
  } cases[] = {{0x00, ""},
               {0x0F, ""},
               {0x20, "upside down"},
               {0x18, "mirrored"},
               {0x30, "upside down and mirrored"}};
  for (const auto& c : cases) {
    std::string bytes = tga(1, 2, 32, "", "BGRAbgra");
    bytes[17] = static_cast<char>(c.descriptor);
    PsdDocument document = sound(bytes, "f.tga");
    EXPECT_EQ(planes(document, 2), "aArRgGbB");
    EXPECT_EQ(document.loadWarning.empty(), c.told.empty()) << c.descriptor;
    EXPECT_NE(document.loadWarning.find(c.told), std::string::npos) << document.loadWarning;
  }
}

TEST_F(PsdTest, RefusesOtherTga) {
  const std::string cases[] = {tga(1, 1, 16, "", "12"),
                               tga(1, 1, 8, "", "1"),
                               tga(2, 2, 24, "", zeros(11)),
                               tga(1, 1, 32, "id", "123"),
                               tga(0, 1, 24, "", ""),
                               tga(65535, 65535, 32, "", zeros(100)),
                               tga(1, 1, 24, "", "").substr(0, 17),
                               ""};
  for (const std::string& bytes : cases) {
    Status status;
    EXPECT_FALSE(loaded(bytes, &status, "f.tga"));
    EXPECT_NE(status.text(), "");
  }
}

}  // namespace
}  // namespace morvane
