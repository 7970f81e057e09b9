#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <chrono>
#include <thread>

#include "tests/util/ReplaceFileFixture.h"
#include "util/FileLock.h"

namespace morvane {
namespace {

namespace fs = std::filesystem;

TEST_F(ReplaceFile, KeepsPermissionsAndGivesANewFileTheUsualOnes) {
  ::chmod(write("old", "old").c_str(), 0640);
  EXPECT_EQ(replace(path("old"), "new"), "");
  const mode_t mask = ::umask(027);
  EXPECT_EQ(replace(path("made"), "made"), "");
  ::umask(mask);
  for (const char* name : {"old", "made"}) {
    struct stat status;
    ASSERT_EQ(::stat(path(name).c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777, 0640u) << name;
  }
}

TEST_F(ReplaceFile, LeavesLinksThatLookAbandoned) {
  write("f", "old");
  fs::create_symlink("f", path(".morvane-1-0.tmp"));
  const timespec times[] = {{0, 0}, {0, 0}};
  ASSERT_EQ(::utimensat(AT_FDCWD, path(".morvane-1-0.tmp").c_str(), times, AT_SYMLINK_NOFOLLOW), 0);
  EXPECT_EQ(replace(path("f"), "new"), "");
  EXPECT_EQ(entries(), 2);
}

TEST_F(ReplaceFile, WaitsForTheLockAsLongAsItMay) {
  const int other = ::open(write("f", "old").c_str(), O_RDWR);
  ASSERT_TRUE(lockFile(other, 0).ok());
  {
    const ScopedVariable wait("MORVANE_WAIT", "0");
    EXPECT_EQ(replace(path("f"), "new"),
              "cannot write " + path("f") + ": another program keeps it locked; waited 0 s");
  }
  const ScopedVariable wait("MORVANE_WAIT", "60");
  std::thread unlocker([other] {
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    ::close(other);
  });
  EXPECT_EQ(replace(path("f"), "new"), "");
  unlocker.join();
  EXPECT_EQ(read("f"), "new");
}

}  // namespace
}  // namespace morvane
