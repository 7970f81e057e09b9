#ifndef MORVANE_TOOLS_JOBS_JOBPOOL_H_
#define MORVANE_TOOLS_JOBS_JOBPOOL_H_

#include <cstddef>
#include <functional>
#include <string>

#include "tools/jobs/Channel.h"

namespace tools {

constexpr unsigned kMostJobs = 256;

// How many processes so many units of work get: `asked`, or where that is 0 the processor's cores.
unsigned jobsFor(unsigned asked, std::size_t units);

// What a pool asks the one who has the work done. A child answers the order of a unit with messages
// that have one key: "news" and "question" as often as it likes, and "result" last.
struct JobCalls {
  std::function<Message(std::size_t unit)> order;
  // May wait, and several at once.
  std::function<Message(std::size_t unit, const Message& question)> answer;
  // One at a time, as finish().
  std::function<void(std::size_t unit, const Message& news)> hear;
  // The child does no more for the unit. Called whatever has happened.
  std::function<void(std::size_t unit)> leave;
  // The result of a unit whose child has ended, how says `why`, or could not be started.
  std::function<Message(std::size_t unit, const std::string& why)> lose;
  // Called one at a time. What the child has printed has gone to standard output and standard
  // error.
  std::function<void(std::size_t unit, const Message& result)> finish;
  // Before that: lets `print` write there.
  std::function<void(const std::function<void()>& print)> makeRoom;
};

struct PoolSize {
  std::size_t units = 0;
  unsigned jobs = 1;
  bool ordered = false;  // finish() is called in the order of the units
};

// Has children of this program (each a JobWorker, which `arguments` and one more start) do all
// units, one unit at a time each; units begin in their order. False when what a child printed could
// not be passed on.
bool runJobs(const std::vector<std::string>& arguments, const PoolSize& size,
             const JobCalls& calls);

}  // namespace tools

#endif  // MORVANE_TOOLS_JOBS_JOBPOOL_H_
