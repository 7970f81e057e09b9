#include "tools/model/FilePairs.h"

#include <filesystem>
#include <map>
#include <utility>

#include "tools/terminal/Text.h"
#include "util/FileExtension.h"
#include "util/FileFacts.h"
#include "util/Path.h"

namespace tools {
namespace {

namespace fs = std::filesystem;

// Gives the path of each PSD file below `folder` to `add`. False when something cannot be listed.
template <typename Add>
bool listFiles(const std::string& folder, const Add& add) {
  std::error_code error;
  fs::recursive_directory_iterator at(morvane::systemPath(folder), error);
  for (const fs::recursive_directory_iterator end; !error && at != end; at.increment(error)) {
    std::error_code ignored;
    const std::string name = morvane::nameOf(at->path().filename());
    if (name[0] == '.')
      at.disable_recursion_pending();
    else if (morvane::lowerExtension(name) == ".psd" && !at->is_directory(ignored))
      add(at->path());
  }
  return !error;
}

}  // namespace

Pairing pairFiles(const std::string& before, const std::string& after, std::vector<FilePair>& pairs,
                  std::string& fault) {
  const bool isFolder[] = {morvane::factsOf(before).isFolder(), morvane::factsOf(after).isFolder()};
  if (!isFolder[0] && !isFolder[1]) {
    pairs.push_back({before, after});
    return Pairing::kPaired;
  }
  if (isFolder[0] != isFolder[1]) {
    fault = printable(isFolder[0] ? before : after) + " is a folder and " +
            printable(isFolder[0] ? after : before) + " is not; name two files, or two folders";
    return Pairing::kMixed;
  }
  std::map<fs::path, FilePair> files;
  for (const auto& [folder, side] :
       {std::pair(before, &FilePair::before), std::pair(after, &FilePair::after)}) {
    if (!listFiles(folder, [&folder = folder, &side = side, &files](const fs::path& path) {
          files[path.lexically_relative(morvane::systemPath(folder))].*side = morvane::nameOf(path);
        })) {
      fault = printable(folder) + ": the folder cannot be listed; make it readable";
      return Pairing::kUnreadable;
    }
  }
  for (auto& [path, pair] : files) pairs.push_back(std::move(pair));
  if (!pairs.empty()) return Pairing::kPaired;
  fault = printable(before) + " and " + printable(after) + ": no PSD file in either folder";
  return Pairing::kUnreadable;
}

}  // namespace tools
