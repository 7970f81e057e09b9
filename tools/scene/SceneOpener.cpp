#include "tools/scene/SceneOpener.h"

#include "util/FileExtension.h"

namespace tools {

bool isScene(const std::string& path) {
  const std::string extension = morvane::lowerExtension(path);
  return extension == ".ma" || extension == ".mb";
}

bool SceneOpener::open(const std::string& path) {
  const bool opened = started_ ? morvane::reportTo(&status_, host::openScene(path))
                               : startSession(path, opening_, &status_) == kDone;
  started_ = true;
  problems_ = host::takeSceneProblems();
  return opened;
}

}  // namespace tools
