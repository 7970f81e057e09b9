#ifndef MORVANE_HOST_STATE_DIRECTORYMAP_H_
#define MORVANE_HOST_STATE_DIRECTORYMAP_H_

#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace host {

// Where folders of another machine are on this one. Opening a scene does not change the map.
// Folders are separated by '/' ('\' is taken for it) and compared letter by letter, but for the
// letter of a drive, which may be in either case.
class DirectoryMap {
 public:
  bool enabled = false;

  // Names at or below `from` are names at or below `to` from now on. False when one is empty.
  bool add(std::string_view from, std::string_view to);
  void remove(std::string_view from);
  std::optional<std::string> mapped(std::string_view from) const;  // what `from` was mapped to
  const std::map<std::string, std::string>& all() const { return folders_; }

  // The name on this machine: the longest folder that the name is or lies in is replaced. Null when
  // no folder fits, or the map is not enabled.
  std::optional<std::string> convert(std::string_view name) const;

  // The mapped folders that no name was found in.
  std::vector<std::string> unused() const;
  // Whether `convert` gave this name.
  bool hasGiven(std::string_view name) const;

 private:
  std::map<std::string, std::string> folders_;
  mutable std::set<std::string> used_;  // of `folders_`
};

}  // namespace host

#endif  // MORVANE_HOST_STATE_DIRECTORYMAP_H_
