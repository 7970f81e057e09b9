#ifndef MORVANE_TOOLS_MODEL_FILEPAIRS_H_
#define MORVANE_TOOLS_MODEL_FILEPAIRS_H_

#include <string>
#include <vector>

namespace tools {

// A file before and after. One of the two may be missing in its folder; its path is then empty.
struct FilePair {
  std::string before;
  std::string after;
};

enum class Pairing {
  kPaired,
  kMixed,       // a file and a folder
  kUnreadable,  // a folder that cannot be listed, or without a PSD file in both
};

// Pairs two files, or the PSD files of two folders and of those in them, which belong together by
// their paths below the two; those are then in the order of these paths. Names that begin with a
// dot are passed over. `fault` is set to the reason unless the result is kPaired.
Pairing pairFiles(const std::string& before, const std::string& after, std::vector<FilePair>& pairs,
                  std::string& fault);

}  // namespace tools

#endif  // MORVANE_TOOLS_MODEL_FILEPAIRS_H_
