#ifndef MORVANE_HOST_TEXT_TEXTSCANNER_H_
#define MORVANE_HOST_TEXT_TEXTSCANNER_H_

#include <charconv>
#include <cstddef>
#include <string_view>

#include "host/text/Blank.h"

namespace host {

// Takes blank-separated numbers and words off the front of a text, without copying anything.
class TextScanner {
 public:
  explicit TextScanner(std::string_view text) : at_(text.data()), end_(at_ + text.size()) {}

  bool atEnd() {
    skipBlank();
    return at_ == end_;
  }
  std::string_view rest() {
    skipBlank();
    return {at_, static_cast<std::size_t>(end_ - at_)};
  }

  // The next number. False, and nothing is taken, when what comes next is none of this type.
  template <class Number>
  bool number(Number& value) {
    skipBlank();
    const char* start = at_ != end_ && *at_ == '+' ? at_ + 1 : at_;
    const auto read = std::from_chars(start, end_, value);
    if (read.ec != std::errc() || (read.ptr != end_ && !isBlank(*read.ptr))) return false;
    at_ = read.ptr;
    return true;
  }

  // What stands before the next blank; empty at the end.
  std::string_view word() {
    skipBlank();
    const char* start = at_;
    while (at_ != end_ && !isBlank(*at_)) ++at_;
    return {start, static_cast<std::size_t>(at_ - start)};
  }

 private:
  void skipBlank() {
    while (at_ != end_ && isBlank(*at_)) ++at_;
  }

  const char* at_;
  const char* end_;
};

}  // namespace host

#endif  // MORVANE_HOST_TEXT_TEXTSCANNER_H_
