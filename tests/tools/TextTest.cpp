#include "tools/terminal/Text.h"

#include <gtest/gtest.h>

namespace tools {
namespace {

TEST(Text, PrintableLeavesNothingThatControlsATerminal) {
  const struct {
    std::string_view bytes;
    const char* shown;
  } kCases[] = {
      {"plain name", "plain name"},
      {"h\xC3\xA9risson \xE7\x9F\xB3 \xF0\x9F\xAA\xA8",
       "h\xC3\xA9risson \xE7\x9F\xB3 \xF0\x9F\xAA\xA8"},
      {"\x1B[2Jgone", "\\x1B[2Jgone"},
      {"two\nlines\r\t", "two\\x0Alines\\x0D\\x09"},
      {std::string_view("a\0b", 3), "a\\x00b"},
      {"\x7F", "\\x7F"},
      {"\xC2\x9B"
       "31m",
       "\\x9B31m"},  // the one-character form of escape and bracket
      {"exe.\xE2\x80\xAE"
       "dsp",
       "exe.\\u{202E}dsp"},        // turns the direction of what follows
      {"caf\xE9", "caf\xC3\xA9"},  // not UTF-8: each byte is a character
      {"\x9B"
       "31m",
       "\\x9B31m"},
      {"\xC0\x8A", "\xC3\x80\\x8A"},                    // an overlong line feed
      {"\xED\xA0\x80", "\xC3\xAD\xC2\xA0\\x80"},        // half of a surrogate pair
      {"\xF4\x90\x80\x80", "\xC3\xB4\\x90\\x80\\x80"},  // beyond the last character
      {"\xE2\x82", "\xC3\xA2\\x82"},                    // cut short
  };
  for (const auto& c : kCases) EXPECT_EQ(printable(c.bytes), c.shown);
}

TEST(Text, PrintableJsonSaysTheSame) {
  EXPECT_EQ(printableJson("{\"n\":\"h\xC3\xA9 \\u001b \xC2\x9B\x7F\xE2\x80\xAE\"}"),
            "{\"n\":\"h\xC3\xA9 \\u001b \\u009b\\u007f\\u202e\"}");
}

}  // namespace
}  // namespace tools
