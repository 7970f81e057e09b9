#ifndef MORVANE_TESTS_UTIL_SCRATCHFOLDER_H_
#define MORVANE_TESTS_UTIL_SCRATCHFOLDER_H_

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

namespace morvane {

// A test with an empty folder of its own, which is removed afterwards. In memory where there is
// such a place: every save waits for the disk, which other programs may keep busy.
class ScratchFolder : public ::testing::Test {
 protected:
  ScratchFolder() {
    const auto* const info = ::testing::UnitTest::GetInstance()->current_test_info();
    const bool inMemory = std::filesystem::is_directory("/dev/shm");
    folder_ = std::filesystem::path(inMemory ? "/dev/shm" : ::testing::TempDir()) /
              (std::string("morvane_") + std::to_string(::getpid()) + "_" +
               info->test_suite_name() + "_" + info->name());
    std::filesystem::remove_all(folder_);
    std::filesystem::create_directories(folder_);
  }
  ~ScratchFolder() override { std::filesystem::remove_all(folder_); }

  std::string path(const std::string& name) const { return (folder_ / name).string(); }

  std::string write(const std::string& name, const std::string& bytes) const {
    std::ofstream(path(name), std::ios::binary) << bytes;
    return path(name);
  }

  static std::string read(const std::string& file) {
    std::ifstream in(file, std::ios::binary);
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
