#include "tile/MessageLog.h"

#include <cstdarg>
#include <cstdio>

namespace morvane {
namespace {

constexpr int kHighestLevel = 3;

}  // namespace

void logText(int level, const char* text) {
  if (level < 0 || level > kHighestLevel) return;
  std::fputs(text, stdout);
  std::fflush(stdout);
}

void logf(int level, const char* format, ...) {
  char message[256];
  va_list arguments;
  va_start(arguments, format);
  std::vsnprintf(message, sizeof message, format, arguments);
  va_end(arguments);
  logText(level, message);
}

}  // namespace morvane
