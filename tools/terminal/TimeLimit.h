#ifndef MORVANE_TOOLS_TERMINAL_TIMELIMIT_H_
#define MORVANE_TOOLS_TERMINAL_TIMELIMIT_H_

#include <condition_variable>
#include <mutex>
#include <thread>

namespace tools {

// While it lives, the process has so many seconds left. Then it says so on standard error and ends
// with kFailed as if it were killed: files that are being written stay what they were.
class TimeLimit {
 public:
  explicit TimeLimit(double seconds);  // 0: no limit
  ~TimeLimit();
  TimeLimit(const TimeLimit&) = delete;
  TimeLimit& operator=(const TimeLimit&) = delete;

 private:
  void watch(double seconds);

  std::mutex mutex_;
  std::condition_variable ended_;
  bool isOver_ = false;
  std::thread thread_;
};

}  // namespace tools

#endif  // MORVANE_TOOLS_TERMINAL_TIMELIMIT_H_
