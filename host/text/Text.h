#ifndef MORVANE_HOST_TEXT_TEXT_H_
#define MORVANE_HOST_TEXT_TEXT_H_

#include <cstddef>
#include <string>
#include <string_view>

namespace host::mel {

// The text that stands between the quotes of a literal: \n, \t, \r, \" and \\ are one character
// each, and a backslash before any other character stands for that character.
void appendUnescaped(std::string& out, std::string_view body);

// The literal that reads back as `text`, quotes included.
std::string quoted(std::string_view text);

// Offset of the quote that closes the literal opened at `open`; npos when none does.
std::size_t findClosingQuote(std::string_view text, std::size_t open);

// Line and column, from 1, of a byte offset.
struct Position {
  int line = 1;
  int column = 1;
};
Position positionAt(std::string_view text, std::size_t offset);

}  // namespace host::mel

#endif  // MORVANE_HOST_TEXT_TEXT_H_
