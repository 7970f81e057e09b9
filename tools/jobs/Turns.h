#ifndef MORVANE_TOOLS_JOBS_TURNS_H_
#define MORVANE_TOOLS_JOBS_TURNS_H_

#include <condition_variable>
#include <cstddef>
#include <map>
#include <mutex>
#include <optional>
#include <set>
#include <string>

namespace tools {

// Keeps units of work that write the same files apart, in the order of their numbers, so that the
// files end as if one had been done after another. Units must begin in that order. Calls may come
// from several threads.
class Turns {
 public:
  explicit Turns(std::size_t units);

  // Returns when every unit before this one has named its files, and those that name one of `files`
  // have ended.
  void await(std::size_t unit, const std::set<std::string>& files);
  // Also for a unit that has not waited, or never will.
  void end(std::size_t unit);

 private:
  bool isFree(std::size_t unit, const std::set<std::string>& files) const;

  std::mutex mutex_;
  std::condition_variable changed_;
  std::map<std::size_t, std::optional<std::set<std::string>>>
      files_;  // of units that have not ended
};

}  // namespace tools

#endif  // MORVANE_TOOLS_JOBS_TURNS_H_
