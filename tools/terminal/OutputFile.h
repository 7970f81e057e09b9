#ifndef MORVANE_TOOLS_TERMINAL_OUTPUTFILE_H_
#define MORVANE_TOOLS_TERMINAL_OUTPUTFILE_H_

#include <string>
#include <vector>

#include "util/Status.h"

namespace tools {

// Makes `text` the content of `path`, which keeps its old content unless all of it was written.
// False, with the reason on standard error, when that failed.
bool writeOutput(const std::string& path, const std::string& text);

// Advice for a file that could not be written; `otherwise` where the code suggests nothing.
std::string writingAdvice(morvane::StatusCode code, const std::string& otherwise);

// Reports on standard error that `path` was written, and what it holds (the empty text for
// nothing).
void reportWritten(const std::string& path, const std::string& what = "");

// Whether `output` names one of the files that are to be read; the reason is then on standard
// error.
bool wouldReplaceInput(const std::string& output, const std::vector<std::string>& inputs);

// Likewise for the files that file textures of the open scene name, whether it uses them or not.
// `output` is absolute.
bool wouldReplaceTexture(const std::string& output);

}  // namespace tools

#endif  // MORVANE_TOOLS_TERMINAL_OUTPUTFILE_H_
