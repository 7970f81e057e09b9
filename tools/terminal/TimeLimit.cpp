#include "tools/terminal/TimeLimit.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>

#include "tools/terminal/ExitStatus.h"
#include "tools/terminal/Platform.h"

namespace tools {

TimeLimit::TimeLimit(double seconds) {
  if (seconds > 0) thread_ = std::thread([this, seconds] { watch(seconds); });
}

TimeLimit::~TimeLimit() {
  {
    const std::lock_guard<std::mutex> lock(mutex_);
    isOver_ = true;
  }
  ended_.notify_one();
  if (thread_.joinable()) thread_.join();
}

// The thread that works may be anywhere, and hold any lock.
void TimeLimit::watch(double seconds) {
  std::unique_lock<std::mutex> lock(mutex_);
  if (ended_.wait_for(lock, std::chrono::duration<double>(seconds), [this] { return isOver_; }))
    return;
  flushUnlessBusy();
  char text[160];
  const int length = std::snprintf(
      text, sizeof text, "morvane: stopped after %g seconds, as --timeout asks\n", seconds);
  writeAll(kStandardError, text, static_cast<std::size_t>(length));
  std::_Exit(kFailed);
}

}  // namespace tools
