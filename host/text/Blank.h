#ifndef MORVANE_HOST_TEXT_BLANK_H_
#define MORVANE_HOST_TEXT_BLANK_H_

namespace host {

// What separates words in the command language, in scene files and between a mesh's numbers.
constexpr bool isBlank(char c) {
  return c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\f' || c == '\v';
}

}  // namespace host

#endif  // MORVANE_HOST_TEXT_BLANK_H_
