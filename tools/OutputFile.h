#ifndef MORVANE_TOOLS_OUTPUTFILE_H_
#define MORVANE_TOOLS_OUTPUTFILE_H_

#include <string>
#include <vector>

namespace tools {

// Makes `text` the content of `path`, which keeps its old content unless all of it was written.
// False, with the reason on standard error, when that failed.
bool writeOutput(const std::string& path, const std::string& text);

// Tells on standard error that `path` was written, and what it holds (nothing: the empty text).
void tellWritten(const std::string& path, const std::string& what = "");

// Whether `output` names one of the files that are to be read; the reason is then on standard
// error.
bool wouldReplaceInput(const std::string& output, const std::vector<std::string>& inputs);

}  // namespace tools

#endif  // MORVANE_TOOLS_OUTPUTFILE_H_
