#include "tools/terminal/OutputAside.h"

#include <cstdio>

#include "tools/terminal/Platform.h"

namespace tools {

OutputAside::OutputAside() {
  std::fflush(stdout);
  original_ = duplicate(kStandardOutput);
  ok_ = original_ >= 0 && redirect(kStandardOutput, kStandardError);
}

OutputAside::~OutputAside() {
  if (original_ < 0) return;
  std::fflush(stdout);
  redirect(kStandardOutput, original_);
  closeFile(original_);
}

void OutputAside::writeLine(const std::string& line) {
  const std::string text = line + '\n';
  ok_ = ok_ && writeAll(original_, text.data(), text.size());
}

}  // namespace tools
