#ifndef MORVANE_TOOLS_TERMINAL_PROGRESSBAR_H_
#define MORVANE_TOOLS_TERMINAL_PROGRESSBAR_H_

#include <chrono>
#include <functional>
#include <mutex>
#include <string>

namespace tools {

// "[#####---------------]  25%", with what is being done and the time left.
std::string progressLine(double done, double secondsSoFar, const std::string& what);

// A line at the bottom of a terminal on standard error that is drawn again as work goes on. On
// anything but a terminal it shows nothing. Its calls may come from several threads.
class ProgressBar {
 public:
  explicit ProgressBar(bool shown) : shown_(shown) {}
  ~ProgressBar() { hide(); }
  ProgressBar(const ProgressBar&) = delete;
  ProgressBar& operator=(const ProgressBar&) = delete;

  // `done` from 0 to 1. The time left is taken from the time since the first call.
  void show(double done, const std::string& what);
  void hide();

  // Lets `output` write to the terminal without meeting the bar, which comes back with the next
  // show(). What it writes may end in the middle of a line.
  void makeRoom(const std::function<void()>& output);

 private:
  using Clock = std::chrono::steady_clock;

  void erase();

  const bool shown_;
  bool visible_ = false;
  std::mutex mutex_;
  Clock::time_point start_{};
};

}  // namespace tools

#endif  // MORVANE_TOOLS_TERMINAL_PROGRESSBAR_H_
