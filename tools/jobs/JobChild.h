#ifndef MORVANE_TOOLS_JOBS_JOBCHILD_H_
#define MORVANE_TOOLS_JOBS_JOBCHILD_H_

#include <cstddef>
#include <string>
#include <vector>

#include "tools/jobs/Channel.h"
#include "tools/terminal/Platform.h"

namespace tools {

struct Printed {
  std::string out;
  std::string err;

  // To this process's standard output and standard error; false when it did not all arrive.
  bool passOn() const;
};

// The pool's end of one child. What the child prints is kept in files, whatever becomes of it.
class JobChild {
 public:
  explicit JobChild(const std::vector<std::string>& arguments) : arguments_(arguments) {}
  ~JobChild();
  JobChild(const JobChild&) = delete;
  JobChild& operator=(const JobChild&) = delete;

  // A child that has ended may be started again. False, with the reason, when it cannot.
  bool start(std::string& why);
  bool isRunning() const { return process_.id != 0; }
  Channel channel() const { return {answers_, orders_}; }
  // Closes its input, and waits for its end; how it ended. What it printed stays.
  std::string end();

  // While it waits for an order, or has ended: what it has printed since it was last asked.
  std::size_t printedBytes() const;
  Printed takePrinted();
  bool passOn();

 private:
  bool openFiles();

  const std::vector<std::string>& arguments_;
  ChildProcess process_;
  int orders_ = -1;
  int answers_ = -1;
  int out_ = -1;
  int err_ = -1;
};

}  // namespace tools

#endif  // MORVANE_TOOLS_JOBS_JOBCHILD_H_
