#include "tools/view/ViewPage.h"

#include <gtest/gtest.h>

#include "tests/tools/Triangles.h"
#include "tools/image/PictureFile.h"
#include "tools/model/DocumentReport.h"

namespace tools {
namespace {

TEST(ViewPage, KeepsEveryTextFromAFileOutOfTheMarkup) {
  if (viewPageHead() == nullptr) GTEST_SKIP() << "built without the page (MORVANE_VIEW)";
  const std::string evil = "</script><img src=x onerror=alert(1)><!--<script>\xE2\x80\xA8&amp;\xFF";
  const std::string asText =
      "</script><img src=x onerror=alert(1)><!--<script>\u00E2\u0080\u00A8&amp;\u00FF";
  ViewPage page;
  const std::string empty = page.html();
  ViewItem item;
  item.name = item.file = item.fault = item.pictureFault = item.goblins.fault = evil;
  item.report = {{"layers", {{{"name", "<script>\u2028"}}}}};
  item.goblins = triangle(morvane::GoblinBlobKind::kNamed, {evil});
  ASSERT_TRUE(page.add(item));
  EXPECT_FALSE(page.showsSomething());

  const std::string html = page.html();
  const std::size_t start = html.find(R"(id="items">)") + 11;
  const std::string none = R"({"budget":{"triangles":null,"pixels":null},"items":[]})";
  const std::string items = html.substr(start, html.size() - empty.size() + none.size());
  EXPECT_EQ(html.substr(0, start) + none + html.substr(start + items.size()), empty);
  EXPECT_EQ(items.find('<'), std::string::npos);
  for (const char c : items) EXPECT_TRUE(c == '\n' || (c >= ' ' && c <= '~')) << int{c};
  const auto json = nlohmann::json::parse(items, nullptr, false)["items"];
  for (const char* key : {"name", "file", "fault", "pictureFault"}) EXPECT_EQ(json[0][key], asText);
  EXPECT_EQ(json[0]["goblins"]["meshes"][0], nlohmann::json({asText, 3, 1}));
  EXPECT_EQ(json[0]["report"]["layers"][0]["name"], "<script>\u2028");
}

// 360 000 bytes without a pattern are not fewer in any lossless format.
TEST(ViewPage, LayersGiveWayToTheLimitAndThenEntriesDo) {
  if (viewPageHead() == nullptr) GTEST_SKIP() << "built without the page (MORVANE_VIEW)";
  ViewItem item;
  item.layers.emplace_back();
  Picture& noise = item.layers[0].pixels.emplace().picture;
  noise.width = noise.height = 300;
  noise.transparent = true;
  std::uint32_t state = 1;
  for (int i = 0; i < 4 * 300 * 300; ++i)
    noise.rgba.push_back(static_cast<std::uint8_t>((state = state * 1664525 + 1013904223) >> 24));
  ViewSettings settings;
  settings.maxBytes = std::size_t{1} << 20;
  ViewPage page(settings);
  EXPECT_TRUE(page.add(item));
  EXPECT_EQ(page.withoutLayers(), 0u);
  EXPECT_TRUE(page.add(item));
  EXPECT_EQ(page.withoutLayers(), 1u);
  item.name.assign(settings.maxBytes, 'a');
  EXPECT_FALSE(page.add(item));
}

TEST(ViewPage, Base64IsThatOfRfc4648) {
  const char* const cases[][2] = {
      {"", ""}, {"f", "Zg=="}, {"fo", "Zm8="}, {"foo", "Zm9v"}, {"foobar", "Zm9vYmFy"}};
  for (const auto& [text, encoded] : cases) {
    const std::string bytes = text;
    EXPECT_EQ(base64({bytes.begin(), bytes.end()}), encoded);
  }
}

// "p\u00E9\u20AC\U0001F98A" with a pair of units for the last, half a pair, and a padding zero.
TEST(DocumentReport, NamesOfEveryLengthOfCharacterAreUtf8) {
  morvane::PsdLayer layer;
  layer.unicodeCount = 7;
  layer.unicodeChars.reset(new std::uint16_t[8]{'p', 0x00E9, 0x20AC, 0xD83E, 0xDD8A, 0xD83E, 0, 0});
  EXPECT_EQ(layerName(layer), "p\xC3\xA9\xE2\x82\xAC\xF0\x9F\xA6\x8A\xEF\xBF\xBD");
}

}  // namespace
}  // namespace tools
