#include "tools/terminal/ProgressBar.h"

#include <algorithm>
#include <cstdio>

namespace tools {
namespace {

constexpr int kCells = 20;
constexpr std::size_t kLongestWhat = 40;

std::string clock(double seconds) {
  const long long whole = static_cast<long long>(std::min(seconds, 359999.0) + 0.5);
  char text[32];
  if (whole >= 3600) {
    std::snprintf(text, sizeof text, "%lld:%02lld:%02lld", whole / 3600, whole / 60 % 60,
                  whole % 60);
  } else {
    std::snprintf(text, sizeof text, "%lld:%02lld", whole / 60, whole % 60);
  }
  return text;
}

}  // namespace

std::string progressLine(double done, double secondsSoFar, const std::string& what) {
  done = std::clamp(done, 0.0, 1.0);
  const auto cells = static_cast<std::size_t>(done * kCells);
  std::string line = "[" + std::string(cells, '#') + std::string(kCells - cells, '-') + "] ";
  char percent[8];
  std::snprintf(percent, sizeof percent, "%3d%%", static_cast<int>(done * 100));
  line += percent + ("  " + what.substr(0, kLongestWhat));
  if (done > 0) line += "  " + clock(secondsSoFar * (1 - done) / done) + " left";
  return line;
}

void ProgressBar::show(double done, const std::string& what) {
  if (!shown_) return;
  const std::lock_guard<std::mutex> lock(mutex_);
  if (start_ == Clock::time_point{}) start_ = Clock::now();
  const std::chrono::duration<double> soFar = Clock::now() - start_;
  std::fprintf(stderr, "\r\x1b[K%s", progressLine(done, soFar.count(), what).c_str());
  visible_ = true;
}

void ProgressBar::hide() {
  const std::lock_guard<std::mutex> lock(mutex_);
  erase();
}

void ProgressBar::makeRoom(const std::function<void()>& output) {
  const std::lock_guard<std::mutex> lock(mutex_);
  erase();
  output();
}

void ProgressBar::erase() {
  if (visible_) std::fputs("\r\x1b[K", stderr);
  visible_ = false;
}

}  // namespace tools
