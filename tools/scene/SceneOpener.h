#ifndef MORVANE_TOOLS_SCENE_SCENEOPENER_H_
#define MORVANE_TOOLS_SCENE_SCENEOPENER_H_

#include <string>

#include "host/Host.h"
#include "tools/scene/Session.h"

namespace tools {

// By its extension, .ma or .mb.
bool isScene(const std::string& path);

// Opens scenes to be looked at, one after another.
class SceneOpener {
 public:
  explicit SceneOpener(const OpeningOptions& opening) : opening_(opening) {}

  // `path` is absolute. False, with the reason on standard error, when it cannot be opened.
  bool open(const std::string& path);
  // Of the last one: what was found in it, and why it was not opened.
  const host::SceneProblems& problems() const { return problems_; }
  const morvane::Status& status() const { return status_; }

 private:
  const OpeningOptions& opening_;
  bool started_ = false;
  host::SceneProblems problems_;
  morvane::Status status_;
};

}  // namespace tools

#endif  // MORVANE_TOOLS_SCENE_SCENEOPENER_H_
