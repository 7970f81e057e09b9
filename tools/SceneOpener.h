#ifndef MORVANE_TOOLS_SCENEOPENER_H_
#define MORVANE_TOOLS_SCENEOPENER_H_

#include <string>

#include "tools/Session.h"

namespace tools {

// By its extension.
bool isScene(const std::string& path);

// Opens scenes to be looked at, one after another.
class SceneOpener {
 public:
  explicit SceneOpener(const FolderMaps& maps) : maps_(maps) {}

  // `path` is absolute. False, with the reason on standard error, when it cannot be opened.
  bool open(const std::string& path);

 private:
  const FolderMaps& maps_;
  bool started_ = false;
};

}  // namespace tools

#endif  // MORVANE_TOOLS_SCENEOPENER_H_
