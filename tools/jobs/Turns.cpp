#include "tools/jobs/Turns.h"

#include <algorithm>

namespace tools {

Turns::Turns(std::size_t units) {
  for (std::size_t unit = 0; unit < units; ++unit)
    files_.emplace_hint(files_.end(), unit, std::nullopt);
}

void Turns::await(std::size_t unit, const std::set<std::string>& files) {
  std::unique_lock<std::mutex> lock(mutex_);
  files_[unit] = files;
  changed_.notify_all();
  changed_.wait(lock, [&] { return isFree(unit, files); });
}

void Turns::end(std::size_t unit) {
  const std::lock_guard<std::mutex> lock(mutex_);
  files_.erase(unit);
  changed_.notify_all();
}

// The units that come before and have not ended are those at work, a few.
bool Turns::isFree(std::size_t unit, const std::set<std::string>& files) const {
  return std::all_of(files_.begin(), files_.find(unit), [&](const auto& earlier) {
    const std::optional<std::set<std::string>>& others = earlier.second;
    return others && std::none_of(others->begin(), others->end(),
                                  [&](const std::string& file) { return files.count(file) != 0; });
  });
}

}  // namespace tools
