#include "tests/faults/SaveFolder.h"

#include <sys/stat.h>

#include <cstdlib>
#include <filesystem>
#include <random>

namespace fs = std::filesystem;

namespace {

// Set before the first folder is made. Every save waits for the disk, which others may keep busy.
const bool kInMemory = fs::is_directory("/dev/shm") && ::setenv("TMPDIR", "/dev/shm", 0) == 0;

std::string noisy(std::string file, std::size_t header) {
  std::minstd_rand random(7);
  for (std::size_t i = header; i < file.size(); ++i) file[i] = static_cast<char>(random() >> 8);
  return file;
}

}  // namespace

// Open to other users, as whom some tests run the program.
SaveFolder::SaveFolder() {
  ::chmod(folder_.c_str(), 0755);
}

Files SaveFolder::scenesAndTextures() {
  const std::string note =
      "createNode transform -n \"note\";\n\taddAttr -ln \"text\" -dt \"string\";\n"
      "\tsetAttr \".text\" -type \"string\" \"" +
      std::string(150'000, 'x') + "\";\n";
  return {{"scene.ma", sceneOfTiles({"a.psd", "tex/b.tga", "c.psd"}) + note},
          {"pebbled.ma", sceneOfTiles({"a.psd"}) + note},
          {"bare.ma", sceneOfTiles({"a.psd"}, true) + note},
          {"a.psd", noisy(psdBytes(64, 64), 40)},
          {"tex/b.tga", noisy(tgaBytes(288, 256), 18)},
          {"c.psd", noisy(psdBytes(256, 288), 40)}};
}

void SaveFolder::reset(const Files& files) {
  fs::remove_all(path("work"));
  for (const auto& [name, bytes] : files) write("work/" + name, bytes);
}

Files SaveFolder::look() {
  Files files;
  leftovers_ = 0;
  for (const auto& entry : fs::recursive_directory_iterator(path("work"))) {
    const std::string name = entry.path().lexically_relative(path("work")).string();
    const std::string last = entry.path().filename().string();
    if (last.rfind(".morvane-", 0) == 0 && last.substr(last.size() - 4) == ".tmp")
      ++leftovers_;
    else if (std::error_code ignored; entry.is_regular_file(ignored))
      files[name] = read("work/" + name);
  }
  return files;
}
