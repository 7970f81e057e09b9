#ifndef MORVANE_TESTS_UTIL_SCRATCHFOLDER_H_
#define MORVANE_TESTS_UTIL_SCRATCHFOLDER_H_

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>

namespace morvane {

// A test with an empty folder of its own, which is removed afterwards. Files are named relative to
// it.
class ScratchFolder : public ::testing::Test {
 protected:
  // In memory where there is such a place: every save waits for the disk, which other programs may
  // keep busy.
  ScratchFolder()
      : ScratchFolder(std::filesystem::is_directory("/dev/shm") ? "/dev/shm"
                                                                : ::testing::TempDir()) {}
  explicit ScratchFolder(const std::filesystem::path& parent) {
    std::random_device random;
    do {
      folder_ = parent / ("morvane-test-" + std::to_string(random()));
    } while (!std::filesystem::create_directory(folder_));
    folder_ = std::filesystem::canonical(folder_);
  }
  ~ScratchFolder() override {
    std::error_code ignored;
    std::filesystem::remove_all(folder_, ignored);
  }

  std::string path(const std::string& name) const { return (folder_ / name).generic_string(); }

  std::string write(const std::string& name, const std::string& bytes) const {
    std::filesystem::create_directories((folder_ / name).parent_path());
    std::ofstream(path(name), std::ios::binary) << bytes;
    return path(name);
  }

  std::string read(const std::string& name) const {
    std::ifstream in(path(name), std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
  }

  // How many files, folders and links there are, leftovers included.
  std::ptrdiff_t entries() const {
    return std::distance(std::filesystem::directory_iterator(folder_),
                         std::filesystem::directory_iterator());
  }

  std::filesystem::path folder_;
};

}  // namespace morvane

#endif  // MORVANE_TESTS_UTIL_SCRATCHFOLDER_H_
