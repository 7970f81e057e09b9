#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <random>

#include "host/text/Numbers.h"
#include "host/text/Text.h"

namespace host::mel {
namespace {

std::uint64_t bits(double number) {
  std::uint64_t all = 0;
  std::memcpy(&all, &number, sizeof all);
  return all;
}

TEST(Numbers, ReadBackWithTheSameBits) {
  std::mt19937_64 random(7);
  for (int i = 0; i < 100000; ++i) {
    const std::uint64_t all = random();
    double number = 0;
    std::memcpy(&number, &all, sizeof number);
    if (std::isnan(number)) continue;
    const auto back = parseNumber(formatNumber(number));
    ASSERT_TRUE(back.has_value()) << formatNumber(number);
    ASSERT_EQ(bits(*back), all) << formatNumber(number);
  }
}

TEST(Numbers, AreWholeTexts) {
  for (const char* text :
       {"", "-", "+", "1x", "x1", "1 ", " 1", "1.2.3", "--1", "+-1", "0x10", "1e", "1,5"}) {
    EXPECT_FALSE(parseNumber(text).has_value()) << text;
    EXPECT_FALSE(parseInteger(text).has_value()) << text;
  }
  EXPECT_EQ(parseNumber("+1e+20"), 1e20);
  EXPECT_EQ(parseNumber(".5"), 0.5);
  EXPECT_EQ(parseNumber("5."), 5.0);
  EXPECT_TRUE(std::signbit(*parseNumber("-0")));
  EXPECT_EQ(parseNumber("1e999"), std::numeric_limits<double>::infinity());
  EXPECT_EQ(parseNumber("-1e999"), -std::numeric_limits<double>::infinity());
  EXPECT_EQ(parseNumber("1e-999"), 0.0);
  EXPECT_TRUE(std::isnan(*parseNumber("-1.#IND")));
  EXPECT_EQ(parseNumber("1.#INF00"), std::numeric_limits<double>::infinity());
  EXPECT_FALSE(parseInteger("2147483648").has_value());
  EXPECT_EQ(toInteger(1e30), std::numeric_limits<int>::max());
  EXPECT_EQ(toInteger(-1e30), std::numeric_limits<int>::min());
  EXPECT_EQ(toInteger(std::nan("")), 0);
}

TEST(Texts, SurviveQuotingByteForByte) {
  std::mt19937 random(11);
  for (int i = 0; i < 20000; ++i) {
    std::string text;
    for (std::size_t length = random() % 20; length > 0; --length) {
      // Half of the bytes are those that have a meaning.
      text += random() % 2 == 0 ? "\\\"\n\r\t;`$(){}"[random() % 12]
                                : static_cast<char>(random() % 256);
    }
    const std::string literal = mel::quoted(text);
    ASSERT_EQ(findClosingQuote(literal, 0), literal.size() - 1);
    std::string back;
    appendUnescaped(back, std::string_view(literal).substr(1, literal.size() - 2));
    ASSERT_EQ(back, text);
  }
}

}  // namespace
}  // namespace host::mel
