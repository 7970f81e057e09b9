#include "tools/terminal/Text.h"

#include <cstdint>
#include <cstdio>
#include <filesystem>

namespace tools {
namespace {

constexpr std::uint32_t kInvalid = 0xFFFFFFFF;

// Takes one character off the front of `rest`; kInvalid, taking nothing, when it does not start
// with one.
std::uint32_t takeCharacter(std::string_view& rest) {
  auto byte = [&](std::size_t i) { return static_cast<unsigned char>(rest[i]); };
  const std::uint32_t first = byte(0);
  const std::size_t length = first < 0x80   ? 1
                             : first < 0xC2 ? 0
                             : first < 0xE0 ? 2
                             : first < 0xF0 ? 3
                             : first < 0xF5 ? 4
                                            : 0;
  if (length == 0 || length > rest.size()) return kInvalid;
  std::uint32_t code = length == 1 ? first : first & (0x7Fu >> length);
  for (std::size_t i = 1; i < length; ++i) {
    if ((byte(i) & 0xC0) != 0x80) return kInvalid;
    code = code << 6 | (byte(i) & 0x3Fu);
  }
  const bool overlong = (length == 3 && code < 0x800) || (length == 4 && code < 0x10000);
  if (overlong || code > 0x10FFFF || (code >= 0xD800 && code < 0xE000)) return kInvalid;
  rest.remove_prefix(length);
  return code;
}

bool isUtf8(std::string_view bytes) {
  while (!bytes.empty()) {
    if (takeCharacter(bytes) == kInvalid) return false;
  }
  return true;
}

bool isControl(std::uint32_t code) {
  return code < 0x20 || (code >= 0x7F && code < 0xA0) || code == 0x200E || code == 0x200F ||
         (code >= 0x2028 && code <= 0x202E) || (code >= 0x2066 && code <= 0x2069);
}

// Valid UTF-8, each control character replaced by what `escape` writes for its number.
template <typename Escape>
std::string withEscapes(std::string_view text, Escape escape) {
  std::string shown;
  for (std::string_view rest = text; !rest.empty();) {
    const std::string_view before = rest;
    const std::uint32_t code = takeCharacter(rest);
    char escaped[16];
    if (isControl(code)) {
      escape(escaped, code);
      shown += escaped;
    } else {
      shown += before.substr(0, before.size() - rest.size());
    }
  }
  return shown;
}

}  // namespace

std::string toUtf8(std::string_view bytes) {
  if (isUtf8(bytes)) return std::string(bytes);
  std::string text;
  for (const char c : bytes) {
    const auto code = static_cast<unsigned char>(c);
    if (code >= 0x80) text += static_cast<char>(0xC0 | code >> 6);
    text += static_cast<char>(code < 0x80 ? code : 0x80 | (code & 0x3F));
  }
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

std::string melString(std::string_view text) {
  std::string result = "\"";
  for (const char c : text) {
    switch (c) {
      case '"':
        result += "\\\"";
        break;
      case '\\':
        result += "\\\\";
        break;
      case '\n':
        result += "\\n";
        break;
      case '\r':
        result += "\\r";
        break;
      case '\t':
        result += "\\t";
        break;
      default:
        result += c;
    }
  }
  return result + '"';
}

std::string extensionOf(const std::string& file) {
  std::string extension = std::filesystem::path(file).extension().string();
  for (char& c : extension) c = static_cast<char>(c >= 'A' && c <= 'Z' ? c - 'A' + 'a' : c);
  return extension;
}

std::string counted(std::size_t count, const std::string& thing) {
  return std::to_string(count) + " " + thing + (count == 1 ? "" : "s");
}

void complain(const std::string& message) {
  std::fprintf(stderr, "morvane: %s\n", message.c_str());
}

}  // namespace tools
