#ifndef MORVANE_TOOLS_TERMINAL_INTERRUPTNOTICE_H_
#define MORVANE_TOOLS_TERMINAL_INTERRUPTNOTICE_H_

#include <cstddef>

namespace tools {

// While it lives, Ctrl-C reports on standard error how many of the scenes are done, then ends the
// process as usual. There can be one at a time.
class InterruptNotice {
 public:
  explicit InterruptNotice(std::size_t scenes);
  ~InterruptNotice();
  InterruptNotice(const InterruptNotice&) = delete;
  InterruptNotice& operator=(const InterruptNotice&) = delete;

  void finishScene();

 private:
  bool wasIgnored_ = false;
};

}  // namespace tools

#endif  // MORVANE_TOOLS_TERMINAL_INTERRUPTNOTICE_H_
