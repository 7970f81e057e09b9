#include "host/text/Messages.h"

#include <cstdio>

namespace host::mel {
namespace {

// What the text says may come from a file: control characters do not reach the terminal.
void showLine(const char* prefix, std::string_view text) {
  std::string line = prefix;
  for (std::size_t i = 0; i < text.size(); ++i) {
    // The second block of control characters stands in UTF-8 as C2 and a byte below A0.
    const bool second =
        text[i] == '\xC2' && i + 1 < text.size() && static_cast<unsigned char>(text[i + 1]) < 0xA0;
    const bool control = static_cast<unsigned char>(text[i]) < 0x20 || text[i] == 0x7F || second;
    line += control && text[i] != '\t' ? ' ' : text[i];
    i += second ? 1 : 0;
  }
  std::fflush(stdout);
  if (beforeMessage()) {
    beforeMessage()(line);
  }
  line += '\n';
  std::fwrite(line.data(), 1, line.size(), stderr);
}

}  // namespace

void showError(std::string_view text) {
  showLine("Error: ", text);
}
void showWarning(std::string_view text) {
  showLine("Warning: ", text);
}
void showInfo(std::string_view text) {
  showLine("", text);
}

void printText(std::string_view text) {
  std::fwrite(text.data(), 1, text.size(), stdout);
}

}  // namespace host::mel
