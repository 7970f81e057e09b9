#ifndef MORVANE_TOOLS_BATCH_UNUSEDMAPS_H_
#define MORVANE_TOOLS_BATCH_UNUSEDMAPS_H_

#include <optional>
#include <string>
#include <vector>

namespace tools {

// What --map gave in vain in all of a job's processes.
class UnusedMaps {
 public:
  // Folders that one process has not used.
  void add(const std::vector<std::string>& folders);
  // On standard error; of this process where no other was heard of.
  void report() const;

 private:
  std::optional<std::vector<std::string>> folders_;
};

}  // namespace tools

#endif  // MORVANE_TOOLS_BATCH_UNUSEDMAPS_H_
