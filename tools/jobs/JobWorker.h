#ifndef MORVANE_TOOLS_JOBS_JOBWORKER_H_
#define MORVANE_TOOLS_JOBS_JOBWORKER_H_

#include <condition_variable>
#include <deque>
#include <mutex>
#include <string>

#include "tools/jobs/Channel.h"

namespace tools {

// The child's end of a job pool: takes orders from standard input and answers them over the
// descriptor that the pool has passed.
class JobWorker {
 public:
  // `argument` is the one that startChild() added. It must live until the process ends, which it
  // does, in the middle of its work if need be, when the pool's process has ended or has no more
  // orders.
  explicit JobWorker(const std::string& argument);
  JobWorker(const JobWorker&) = delete;
  JobWorker& operator=(const JobWorker&) = delete;

  // False when there is no pool.
  bool ok() const { return answers_ >= 0; }

  Message nextOrder();
  void tell(const Message& message) const { Channel(-1, answers_).send(message); }
  // Ends a unit; what was printed is where the pool finds it.
  void finish(const Message& result) const;

 private:
  [[noreturn]] void readOrders();

  int answers_;
  std::mutex mutex_;
  std::condition_variable arrived_;
  std::deque<Message> orders_;
};

}  // namespace tools

#endif  // MORVANE_TOOLS_JOBS_JOBWORKER_H_
