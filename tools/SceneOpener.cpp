#include "tools/SceneOpener.h"

#include <filesystem>

#include "host/Host.h"

namespace tools {

bool isScene(const std::string& path) {
  std::string extension = std::filesystem::path(path).extension().string();
  for (char& c : extension) c = static_cast<char>(c >= 'A' && c <= 'Z' ? c - 'A' + 'a' : c);
  return extension == ".ma";
}

bool SceneOpener::open(const std::string& path) {
  if (started_) return host::openScene(path);
  started_ = true;
  return startSession(path, maps_) == kDone;
}

}  // namespace tools
