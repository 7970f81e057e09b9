#include "host/text/Printable.h"

#include <utf8.h>

#include <cstdint>
#include <cstdio>
#include <iterator>

namespace host {
namespace {

bool isControl(std::uint32_t code) {
  return code < 0x20 || (code >= 0x7F && code < 0xA0) || code == 0x200E || code == 0x200F ||
         (code >= 0x2028 && code <= 0x202E) || (code >= 0x2066 && code <= 0x2069);
}

// Valid UTF-8, each control character replaced by what `escape` writes for its number.
template <typename Escape>
std::string withEscapes(std::string_view text, Escape escape) {
  std::string shown;
  for (const char* at = text.data(); at != text.data() + text.size();) {
    const std::uint32_t code = utf8::unchecked::next(at);
    char escaped[16];
    if (isControl(code)) {
      escape(escaped, code);
      shown += escaped;
    } else {
      utf8::unchecked::append(code, std::back_inserter(shown));
    }
  }
  return shown;
}

}  // namespace

std::string toUtf8(std::string_view bytes) {
  if (utf8::is_valid(bytes.begin(), bytes.end())) return std::string(bytes);
  std::string text;
  for (const char c : bytes)
    utf8::unchecked::append(static_cast<unsigned char>(c), std::back_inserter(text));
  return text;
}

std::string printable(std::string_view bytes) {
  return withEscapes(toUtf8(bytes), [](char(&to)[16], std::uint32_t code) {
    std::snprintf(to, sizeof to, code < 0x100 ? "\\x%02X" : "\\u{%04X}", code);
  });
}

std::string printableJson(std::string_view json) {
  return withEscapes(json, [](char(&to)[16], std::uint32_t code) {
    std::snprintf(to, sizeof to, "\\u%04x", code);
  });
}

}  // namespace host
