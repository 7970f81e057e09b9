#include "host/mel/Messages.h"

#include <cstdio>

namespace host::mel {
namespace {

// What the text says may come from a file: control characters do not reach the terminal.
void showLine(const char* prefix, std::string_view text) {
  std::string line = prefix;
  for (const char c : text) {
    const bool control = static_cast<unsigned char>(c) < 0x20 || c == 0x7F;
    line += control && c != '\t' ? ' ' : c;
  }
  line += '\n';
  std::fflush(stdout);
  if (beforeMessage()) {
    beforeMessage()();
  }
  std::fwrite(line.data(), 1, line.size(), stderr);
}

}  // namespace

std::function<void()>& beforeMessage() {
  static std::function<void()> called;
  return called;
}

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
