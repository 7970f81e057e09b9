#include "bench/Scratch.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>

namespace bench {
namespace {

struct Folder {
  std::string path;

  Folder() {
    std::string name = (std::filesystem::temp_directory_path() / "morvane-bench-XXXXXX").string();
    if (::mkdtemp(name.data())) path = name;
  }
  ~Folder() {
    std::error_code ignored;
    if (!path.empty()) std::filesystem::remove_all(path, ignored);
  }
};

}  // namespace

const std::string& scratchFolder() {
  static const Folder folder;
  return folder.path;
}

void writeFile(const std::string& path, const std::string& text) {
  std::ofstream(path, std::ios::binary) << text;
}

}  // namespace bench
