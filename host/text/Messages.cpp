#include "host/text/Messages.h"

#include <cstdio>

#include "host/text/Printable.h"

namespace host::mel {
namespace {

// What the text says may come from a file.
void showLine(const char* prefix, std::string_view text) {
  std::string line = prefix + printable(text);
  std::fflush(stdout);
  if (beforeMessage()) beforeMessage()(line);
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
