#ifndef MORVANE_TOOLS_TERMINAL_OUTPUTASIDE_H_
#define MORVANE_TOOLS_TERMINAL_OUTPUTASIDE_H_

#include <string>

namespace tools {

// Keeps standard output for the lines that it is given: while it lives, everything else that the
// process writes there goes to standard error.
class OutputAside {
 public:
  OutputAside();
  ~OutputAside();
  OutputAside(const OutputAside&) = delete;
  OutputAside& operator=(const OutputAside&) = delete;

  // Writes the text and a line feed.
  void writeLine(const std::string& line);

  // False when a line could not be written.
  bool ok() const { return ok_; }

 private:
  int original_ = -1;
  bool ok_ = true;
};

}  // namespace tools

#endif  // MORVANE_TOOLS_TERMINAL_OUTPUTASIDE_H_
