#include "host/text/Numbers.h"

#include <charconv>
#include <cmath>
#include <limits>

namespace host::mel {
namespace {

std::optional<double> parseMicrosoftSpecial(std::string_view text) {
  const bool negative = !text.empty() && text.front() == '-';
  if (negative) text.remove_prefix(1);
  if (text.substr(0, 3) != "1.#") return std::nullopt;
  const std::string_view kind = text.substr(3, 3);
  const double sign = negative ? -1.0 : 1.0;
  if (kind == "INF") return std::copysign(std::numeric_limits<double>::infinity(), sign);
  if (kind == "QNA" || kind == "SNA" || kind == "IND")
    return std::copysign(std::numeric_limits<double>::quiet_NaN(), sign);
  return std::nullopt;
}

std::string_view withoutPlus(std::string_view text) {
  if (text.size() > 1 && text.front() == '+' && text[1] != '-') text.remove_prefix(1);
  return text;
}

template <class Number>
void append(std::string& out, Number number) {
  char buffer[64];
  const auto end = std::to_chars(buffer, buffer + sizeof buffer, number);
  out.append(buffer, end.ptr);
}

}  // namespace

std::optional<double> parseNumber(std::string_view text) {
  const std::string_view digits = withoutPlus(text);
  double number = 0;
  const char* end = digits.data() + digits.size();
  const auto read = std::from_chars(digits.data(), end, number);
  if (digits.empty() || read.ptr != end || read.ec == std::errc::invalid_argument)
    return parseMicrosoftSpecial(text);
  if (read.ec == std::errc::result_out_of_range) {
    // Too large or too small for a double: the C library's rounding says which.
    const bool tiny = text.find("e-") != text.npos || text.find("E-") != text.npos;
    const double limit = tiny ? 0.0 : std::numeric_limits<double>::infinity();
    return text.front() == '-' ? -limit : limit;
  }
  return number;
}

std::optional<int> parseInteger(std::string_view text) {
  const std::string_view digits = withoutPlus(text);
  int number = 0;
  const char* end = digits.data() + digits.size();
  const auto read = std::from_chars(digits.data(), end, number);
  if (digits.empty() || read.ptr != end || read.ec != std::errc()) return std::nullopt;
  return number;
}

std::optional<bool> parseTruth(std::string_view text) {
  if (text == "yes" || text == "on" || text == "true") return true;
  if (text == "no" || text == "off" || text == "false") return false;
  if (const auto number = parseNumber(text)) return *number != 0;
  return std::nullopt;
}

std::string formatNumber(double number) {
  std::string text;
  append(text, number);
  return text;
}

void appendNumber(std::string& out, double number) {
  append(out, number);
}
void appendNumber(std::string& out, float number) {
  append(out, number);
}
void appendNumber(std::string& out, int number) {
  append(out, number);
}

int toInteger(double number) {
  if (std::isnan(number)) return 0;
  if (number >= static_cast<double>(std::numeric_limits<int>::max()))
    return std::numeric_limits<int>::max();
  if (number <= static_cast<double>(std::numeric_limits<int>::min()))
    return std::numeric_limits<int>::min();
  return static_cast<int>(number);
}

}  // namespace host::mel
