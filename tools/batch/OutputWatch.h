#ifndef MORVANE_TOOLS_BATCH_OUTPUTWATCH_H_
#define MORVANE_TOOLS_BATCH_OUTPUTWATCH_H_

#include <functional>
#include <string>
#include <string_view>
#include <thread>

namespace tools {

// Listens to the process's own standard output. While a watch lives, what is written there (by a
// loaded library too) still goes unchanged to where it would have gone, and a listener is given
// every line of it. There can be one watch at a time.
class OutputWatch {
 public:
  // Calls what it is given, which writes to where the output goes.
  using Around = std::function<void(const std::function<void()>& write)>;

  // `listener` is called on another thread, after the line (its end cut off) has gone on; `around`,
  // when there is one, on the same thread for each piece of output.
  // Without `passesOn` the output ends here.
  explicit OutputWatch(std::function<void(std::string_view)> listener, Around around = {},
                       bool passesOn = true);
  ~OutputWatch();
  OutputWatch(const OutputWatch&) = delete;
  OutputWatch& operator=(const OutputWatch&) = delete;

  // Ends the watch. Afterwards the listener has heard everything. False when the output could not
  // be watched or did not all arrive.
  bool finish();

 private:
  void run();
  void passOn();
  void readLine(std::string_view bytes);

  std::function<void(std::string_view)> listener_;
  Around around_;
  bool passesOn_ = true;
  std::string line_;
  std::thread thread_;
  int original_ = -1;
  int readEnd_ = -1;
  bool ok_ = true;
};

}  // namespace tools

#endif  // MORVANE_TOOLS_BATCH_OUTPUTWATCH_H_
