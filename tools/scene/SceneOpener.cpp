#include "tools/scene/SceneOpener.h"

#include "util/FileExtension.h"

namespace tools {

bool isScene(const std::string& path) {
  const std::string extension = morvane::lowerExtension(path);
  return extension == ".ma" || extension == ".mb";
}

bool SceneOpener::open(const std::string& path) {
  const bool opened =
      started_ ? host::openScene(path, &reason_) : startSession(path, folders_, &reason_) == kDone;
  started_ = true;
  problems_ = host::takeSceneProblems();
  return opened;
}

}  // namespace tools
