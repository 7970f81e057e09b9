#include "tools/OutputFile.h"

#include <filesystem>

#include "tools/Text.h"
#include "util/ReplaceFile.h"

namespace tools {

bool writeOutput(const std::string& path, const std::string& text) {
  morvane::FileReplacer out;
  if (out.open(path.c_str()) && out.append(text.data(), text.size()) && out.commit()) return true;
  complain(printable(out.error()) + "; name a file in a folder that can be written");
  return false;
}

void tellWritten(const std::string& path, const std::string& what) {
  complain("wrote " + printable(path) + (what.empty() ? "" : ": " + what));
}

bool wouldReplaceInput(const std::string& output, const std::vector<std::string>& inputs) {
  for (const std::string& input : inputs) {
    std::error_code missing;
    if (!std::filesystem::equivalent(output, input, missing)) continue;
    complain(printable(output) + " is a file to be read; give the output another name");
    return true;
  }
  return false;
}

}  // namespace tools
