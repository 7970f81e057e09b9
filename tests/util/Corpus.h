#ifndef MORVANE_TESTS_UTIL_CORPUS_H_
#define MORVANE_TESTS_UTIL_CORPUS_H_

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <vector>

namespace morvane {

// The folder of real files from other programs: MORVANE_CORPUS, or shared/corpus beside a folder
// above the sources. Empty when there is none; tests that need it are then skipped.
inline std::filesystem::path corpusFolder() {
  namespace fs = std::filesystem;
  if (const char* given = std::getenv("MORVANE_CORPUS")) return given;
  for (fs::path at = MORVANE_SOURCE_DIR; at != at.parent_path(); at = at.parent_path())
    if (fs::is_directory(at.parent_path() / "shared" / "corpus"))
      return at.parent_path() / "shared" / "corpus";
  return {};
}

// The Maya scenes among them, by name.
inline std::vector<std::filesystem::path> corpusScenes() {
  std::vector<std::filesystem::path> scenes;
  std::error_code none;
  for (const auto& entry :
       std::filesystem::recursive_directory_iterator(corpusFolder() / "ma", none)) {
    if (entry.path().extension() == ".ma") scenes.push_back(entry.path());
  }
  std::sort(scenes.begin(), scenes.end());
  return scenes;
}

}  // namespace morvane

#endif  // MORVANE_TESTS_UTIL_CORPUS_H_
