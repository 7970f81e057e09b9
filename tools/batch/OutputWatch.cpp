#include "tools/batch/OutputWatch.h"

#include <cstdio>
#include <iostream>
#include <new>
#include <utility>

#include "tools/terminal/Platform.h"

namespace tools {
namespace {

constexpr std::size_t kLongestLine = 1
                                     << 16;  // what a line has beyond that is passed on, not heard

void flushStandardOutput() {
  std::cout.flush();
  std::fflush(stdout);
}

}  // namespace

OutputWatch::OutputWatch(std::function<void(std::string_view)> listener, Around around,
                         bool passesOn)
    : listener_(std::move(listener)), around_(std::move(around)), passesOn_(passesOn) {
  flushStandardOutput();
  int ends[2];
  original_ = duplicate(kStandardOutput);
  if (original_ < 0 || !openPipe(ends)) {
    ok_ = false;
    return;
  }
  readEnd_ = ends[0];
  ok_ = redirect(kStandardOutput, ends[1]);
  closeFile(ends[1]);
  if (ok_) thread_ = std::thread([this] { run(); });
}

OutputWatch::~OutputWatch() {
  finish();
}

bool OutputWatch::finish() {
  if (original_ < 0) return ok_;
  flushStandardOutput();
  redirect(kStandardOutput, original_);
  if (thread_.joinable()) thread_.join();
  if (readEnd_ >= 0) closeFile(readEnd_);
  closeFile(original_);
  original_ = readEnd_ = -1;
  return ok_;
}

// Nobody above catches what a thread throws. What could not be heard counts as lost.
void OutputWatch::run() {
  try {
    passOn();
  } catch (const std::bad_alloc&) {
    ok_ = false;
    char bytes[4096];
    for (std::ptrdiff_t count; (count = readSome(readEnd_, bytes, sizeof bytes)) > 0;)
      if (passesOn_) writeAll(original_, bytes, static_cast<std::size_t>(count));
  }
}

void OutputWatch::passOn() {
  char bytes[4096];
  std::ptrdiff_t count;
  while ((count = readSome(readEnd_, bytes, sizeof bytes)) > 0) {
    const auto size = static_cast<std::size_t>(count);
    const auto write = [&] {
      if (!writeAll(original_, bytes, size)) ok_ = false;
    };
    if (passesOn_) around_ ? around_(write) : write();
    readLine({bytes, size});
  }
  if (!line_.empty()) listener_(line_);
}

void OutputWatch::readLine(std::string_view bytes) {
  while (!bytes.empty()) {
    const std::size_t end = bytes.find('\n');
    const std::string_view piece = bytes.substr(0, end);
    line_ += piece.substr(0, kLongestLine - line_.size());
    if (end == std::string_view::npos) return;
    listener_(line_);
    line_.clear();
    bytes.remove_prefix(end + 1);
  }
}

}  // namespace tools
