#include "util/ReplaceFile.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <string>

#include "tests/util/ScratchFolder.h"
#include "util/WholeFile.h"

namespace morvane {
namespace {

namespace fs = std::filesystem;

class ReplaceFile : public ScratchFolder {
 protected:
  // Replaces the file; the error, or an empty text.
  std::string replace(const std::string& file, const std::string& content) {
    FileReplacer out;
    if (out.open(file.c_str()) && out.append(content.data(), content.size()) && out.commit()) {
      EXPECT_EQ(out.error(), "");
      return std::string();
    }
    EXPECT_FALSE(out.append("x", 1));
    EXPECT_FALSE(out.commit());
    return out.error();
  }
};

TEST_F(ReplaceFile, WritesWhateverTheSizesOfThePieces) {
  std::string expected;
  FileReplacer out;
  ASSERT_TRUE(out.open(path("f").c_str()));
  for (std::size_t size : {0, 1, 65535, 1, 65536, 3, 200000, 65535, 65537, 7}) {
    const std::string piece(size, static_cast<char>('a' + size % 26));
    ASSERT_TRUE(out.append(piece.data(), piece.size()));
    expected += piece;
  }
  EXPECT_FALSE(fs::exists(path("f")));
  ASSERT_TRUE(out.commit());
  EXPECT_TRUE(read(path("f")) == expected);
  EXPECT_EQ(entries(), 1);
}

TEST_F(ReplaceFile, LeavesTheOldFileWithoutACommit) {
  write("f", "old");
  {
    FileReplacer out;
    ASSERT_TRUE(out.open(path("f").c_str()));
    ASSERT_TRUE(out.append("new", 3));
    EXPECT_EQ(entries(), 2);
  }
  EXPECT_EQ(read(path("f")), "old");
  EXPECT_EQ(entries(), 1);
}

TEST_F(ReplaceFile, KeepsPermissionsAndFollowsLinks) {
  fs::create_directory(path("sub"));
  write("sub/f", "old");
  ::chmod(path("sub/f").c_str(), 0640);
  fs::create_symlink("sub/f", path("link"));
  fs::create_symlink(path("link"), path("link to link"));
  EXPECT_EQ(replace(path("link to link"), "new"), "");
  EXPECT_EQ(read(path("sub/f")), "new");
  EXPECT_TRUE(fs::is_symlink(path("link")) && fs::is_symlink(path("link to link")));
  struct stat status;
  ASSERT_EQ(::stat(path("sub/f").c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 07777, 0640u);

  fs::create_symlink("sub/made", path("dangling"));
  const mode_t mask = ::umask(027);
  EXPECT_EQ(replace(path("dangling"), "made"), "");
  ::umask(mask);
  ASSERT_EQ(::stat(path("sub/made").c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 07777, 0640u);
}

TEST_F(ReplaceFile, RefusesWhatCannotBeReplaced) {
  fs::create_directory(path("folder"));
  write("read only", "old");
  ::chmod(path("read only").c_str(), 0444);
  fs::create_symlink("loop", path("loop"));
  ASSERT_EQ(::mkfifo(path("pipe").c_str(), 0666), 0);
  const auto before = entries();
  const char* const cases[][2] = {
      {"folder", "Is a directory"},       {"missing/f", "No such file or directory"},
      {"read only", "Permission denied"}, {"loop", "Too many levels of symbolic links"},
      {"pipe", "not a regular file"},     {"read only/f", "Not a directory"}};
  for (const auto& [name, reason] : cases) {
    EXPECT_EQ(replace(path(name), "new"), "cannot write " + path(name) + ": " + reason);
  }
  EXPECT_EQ(read(path("read only")), "old");
  EXPECT_EQ(entries(), before);
}

TEST_F(ReplaceFile, LeavesTheOldFileWhenTheDiskTakesNoMore) {
  write("f", "old");
  struct rlimit old;
  ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &old), 0);
  const auto handler = std::signal(SIGXFSZ, SIG_IGN);
  const struct rlimit low = {100000, old.rlim_max};
  ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &low), 0);
  const std::string error = replace(path("f"), std::string(300000, 'x'));
  ::setrlimit(RLIMIT_FSIZE, &old);
  std::signal(SIGXFSZ, handler);
  EXPECT_EQ(error, "cannot write " + path("f") + ": File too large");
  EXPECT_EQ(read(path("f")), "old");
  EXPECT_EQ(entries(), 1);
}

TEST_F(ReplaceFile, FailsWhenItsFolderGoesMeanwhile) {
  fs::create_directory(path("sub"));
  FileReplacer out;
  ASSERT_TRUE(out.open(path("sub/f").c_str()) && out.append("new", 3));
  fs::remove_all(path("sub"));
  EXPECT_FALSE(out.commit());
  EXPECT_EQ(out.error(), "cannot write " + path("sub/f") + ": No such file or directory");
}

TEST_F(ReplaceFile, TakesNamesWithoutAFolderAndOfAnyLength) {
  const fs::path before = fs::current_path();
  fs::current_path(folder_);
  for (const std::size_t length : {1, 255}) {
    EXPECT_EQ(replace(std::string(length, 'f'), "new"), "");
    EXPECT_EQ(read(path(std::string(length, 'f'))), "new");
  }
  const std::string tooLong(256, 'f');
  EXPECT_EQ(replace(tooLong, "new"), "cannot write " + tooLong + ": File name too long");
  fs::current_path(before);
  EXPECT_EQ(entries(), 2);
}

// What a run that was killed leaves goes a day later; whatever else has such a name stays.
TEST_F(ReplaceFile, RemovesAbandonedTemporaryFiles) {
  const auto age = [](const std::string& file, int hours) {
    fs::last_write_time(file, fs::file_time_type::clock::now() - std::chrono::hours(hours));
  };
  age(write(".morvane-1-0.tmp", "abandoned"), 25);
  age(write(".morvane-1-1.tmp", "perhaps still written"), 23);
  age(write(".morvane-notes", "a user's"), 1000);
  age(write("x.morvane-1-0.tmp", "a user's"), 1000);
  fs::create_directory(path(".morvane-folder.tmp"));
  age(path(".morvane-folder.tmp"), 1000);
  fs::create_symlink("x.morvane-1-0.tmp", path(".morvane-link.tmp"));
  EXPECT_EQ(replace(path("f"), "new"), "");
  EXPECT_FALSE(fs::exists(path(".morvane-1-0.tmp")));
  EXPECT_EQ(entries(), 6);
}

TEST_F(ReplaceFile, TwoWritersAtOnceEachWriteAWholeFile) {
  FileReplacer first, second;
  ASSERT_TRUE(first.open(path("f").c_str()) && second.open(path("f").c_str()));
  ASSERT_TRUE(first.append("first", 5) && second.append("second", 6));
  ASSERT_TRUE(second.commit() && first.commit());
  EXPECT_EQ(read(path("f")), "first");
  EXPECT_EQ(entries(), 1);
}

TEST_F(ReplaceFile, ReadsOnlyRegularFilesOfAllowedSize) {
  std::unique_ptr<std::uint8_t[]> bytes;
  std::size_t size = 0;
  std::string error;
  const std::string file = write("f", "four");
  ASSERT_TRUE(readWholeFile(file.c_str(), 4, bytes, size, error));
  EXPECT_EQ(std::string(bytes.get(), bytes.get() + size), "four");
  EXPECT_FALSE(readWholeFile(file.c_str(), 3, bytes, size, error));
  ASSERT_EQ(::mkfifo(path("pipe").c_str(), 0666), 0);
  const std::string cases[][2] = {{path("missing"), "No such file or directory"},
                                  {folder_.string(), "Is a directory"},
                                  {path("pipe"), "not a regular file"},
                                  {"/dev/zero", "not a regular file"}};
  for (const auto& [name, reason] : cases) {
    EXPECT_FALSE(readWholeFile(name.c_str(), 100, bytes, size, error));
    EXPECT_EQ(error, reason) << name;
  }
  EXPECT_EQ(size, 4u);
}

}  // namespace
}  // namespace morvane
