#include "tools/terminal/Text.h"

#include <cstdio>

namespace tools {

std::string counted(std::size_t count, const std::string& thing) {
  return std::to_string(count) + " " + thing + (count == 1 ? "" : "s");
}

void complain(const std::string& message) {
  std::fprintf(stderr, "morvane: %s\n", message.c_str());
}

}  // namespace tools
