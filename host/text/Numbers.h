#ifndef MORVANE_HOST_TEXT_NUMBERS_H_
#define MORVANE_HOST_TEXT_NUMBERS_H_

#include <optional>
#include <string>
#include <string_view>

// Numbers as the command language and scene files write them. No locale has a say here, and a
// number that was written by `formatNumber` reads back with the same bits.
namespace host::mel {

// The whole text as a number: decimal with an optional sign and exponent, "inf", "nan" and the
// forms that Microsoft's runtime printed for these ("1.#INF", "-1.#IND"). Null when anything else
// is left over.
std::optional<double> parseNumber(std::string_view text);

// The whole text as a decimal integer that fits an int.
std::optional<int> parseInteger(std::string_view text);

// yes/no, on/off, true/false or a number (not zero is true).
std::optional<bool> parseTruth(std::string_view text);

// The shortest text that reads back as the same double, "-0" included.
std::string formatNumber(double number);
void appendNumber(std::string& out, double number);
void appendNumber(std::string& out, float number);
void appendNumber(std::string& out, int number);

// Rounds towards zero; what does not fit an int becomes the nearest that does, and NaN becomes 0.
int toInteger(double number);

}  // namespace host::mel

#endif  // MORVANE_HOST_TEXT_NUMBERS_H_
