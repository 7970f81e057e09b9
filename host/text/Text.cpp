#include "host/text/Text.h"

namespace host::mel {

void appendUnescaped(std::string& out, std::string_view body) {
  std::size_t at = 0;
  while (at < body.size()) {
    const std::size_t slash = body.find('\\', at);
    out.append(body.substr(at, slash - at));
    if (slash == std::string_view::npos) return;
    const char next = slash + 1 < body.size() ? body[slash + 1] : '\\';
    out += next == 'n' ? '\n' : next == 't' ? '\t' : next == 'r' ? '\r' : next;
    at = slash + 2;
  }
}

std::string quoted(std::string_view text) {
  std::string literal = "\"";
  for (const char c : text) {
    switch (c) {
      case '\\':
        literal += "\\\\";
        break;
      case '"':
        literal += "\\\"";
        break;
      case '\n':
        literal += "\\n";
        break;
      case '\r':
        literal += "\\r";
        break;
      case '\t':
        literal += "\\t";
        break;
      default:
        literal += c;
    }
  }
  return literal += '"';
}

std::size_t findClosingQuote(std::string_view text, std::size_t open) {
  std::size_t at = open + 1;
  while ((at = text.find_first_of("\\\"", at)) != std::string_view::npos) {
    if (text[at] == '"') return at;
    at += 2;
  }
  return std::string_view::npos;
}

Position positionAt(std::string_view text, std::size_t offset) {
  Position position;
  std::size_t lineStart = 0;
  for (std::size_t i = 0; i < offset && i < text.size(); ++i) {
    if (text[i] == '\n') {
      ++position.line;
      lineStart = i + 1;
    }
  }
  position.column = static_cast<int>(offset - lineStart) + 1;
  return position;
}

}  // namespace host::mel
