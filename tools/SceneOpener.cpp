#include "tools/SceneOpener.h"

#include <filesystem>

namespace tools {

bool isScene(const std::string& path) {
  std::string extension = std::filesystem::path(path).extension().string();
  for (char& c : extension) c = static_cast<char>(c >= 'A' && c <= 'Z' ? c - 'A' + 'a' : c);
  return extension == ".ma";
}

bool SceneOpener::open(const std::string& path) {
  const bool opened =
      started_ ? host::openScene(path, &reason_) : startSession(path, maps_, &reason_) == kDone;
  started_ = true;
  problems_ = host::takeSceneProblems();
  return opened;
}

}  // namespace tools
