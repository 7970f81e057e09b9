#ifndef MORVANE_TOOLS_BATCH_DONERECORDS_H_
#define MORVANE_TOOLS_BATCH_DONERECORDS_H_

#include <cstddef>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace tools {

// What records of earlier exports say is done.
class DoneRecords {
 public:
  // Adds the records of a file, one a line; of a tile's records the last counts. The last line may
  // be cut off, as a run that was stopped leaves it. False, with the reason on standard error, when
  // the file cannot be read or holds anything else.
  bool read(const std::string& file);

  // Every tile of the scene, which was found whole.
  bool isDone(const std::string& scene) const;
  std::set<std::string> tilesOf(const std::string& scene) const;

 private:
  struct Scene {
    std::set<std::string> done;
    std::size_t tiles = 0;
    bool damaged = false;
  };
  bool add(const std::string& line);

  std::map<std::string, Scene> scenes_;  // by name, as records have it
};

}  // namespace tools

#endif  // MORVANE_TOOLS_BATCH_DONERECORDS_H_
