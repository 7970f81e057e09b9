#include "util/ReplaceFile.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <unistd.h>

#include <chrono>
#include <functional>
#include <string>
#include <thread>

#include "tests/util/ScratchFolder.h"
#include "util/FileLock.h"
#include "util/WholeFile.h"

namespace morvane {
namespace {

namespace fs = std::filesystem;

// Links, full disks, refused targets and what a failed save leaves are looked at in tests/faults.
class ReplaceFile : public ScratchFolder {
 protected:
  // Replaces the file; the error, or an empty text.
  std::string replace(const std::string& file, const std::string& content) {
    FileReplacer out;
    if (out.open(file.c_str()) && out.append(content.data(), content.size()) && out.commit()) {
      EXPECT_TRUE(out.status().ok());
      return std::string();
    }
    EXPECT_FALSE(out.append("x", 1));
    EXPECT_FALSE(out.commit());
    return out.status().text();
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
  age(write(".morvane-notes.tmp", "a user's"), 1000);
  age(write(".morvane-1-0 notes.tmp", "a user's"), 1000);
  age(write("x.morvane-1-0.tmp", "a user's"), 1000);
  fs::create_directory(path(".morvane-folder.tmp"));
  age(path(".morvane-folder.tmp"), 1000);
  fs::create_symlink("x.morvane-1-0.tmp", path(".morvane-link.tmp"));
  EXPECT_EQ(replace(path("f"), "new"), "");
  EXPECT_FALSE(fs::exists(path(".morvane-1-0.tmp")));
  EXPECT_EQ(entries(), 7);
}

TEST_F(ReplaceFile, TwoWritersAtOnceEachWriteAWholeFile) {
  FileReplacer first, second;
  ASSERT_TRUE(first.open(path("f").c_str()) && second.open(path("f").c_str()));
  ASSERT_TRUE(first.append("first", 5) && second.append("second", 6));
  ASSERT_TRUE(second.commit() && first.commit());
  EXPECT_EQ(read(path("f")), "first");
  EXPECT_EQ(entries(), 1);
}

// Whoever read the file before others changed it does not replace what they wrote.
TEST_F(ReplaceFile, FailsWhenTheTargetIsNotWhatWasRead) {
  const struct {
    const char* name;
    std::function<void(const std::string&)> meanwhile;
    std::string left;
    bool isThere = true;  // when it is read
  } cases[] = {
      {"nothing", [](const std::string&) {}, "new"},
      {"written in place, of the same size",
       [&](const std::string& file) {
         const auto read = fs::last_write_time(file);
         write("f", "OLD");
         fs::last_write_time(file, read + std::chrono::nanoseconds(100));
       },
       "OLD"},
      {"replaced, with the time kept",
       [&](const std::string& file) {
         const auto read = fs::last_write_time(file);
         fs::last_write_time(write("g", "OLD"), read);
         fs::rename(path("g"), file);
       },
       "OLD"},
      {"removed", [](const std::string& file) { fs::remove(file); }, ""},
      {"made", [&](const std::string&) { write("f", "made"); }, "made", false},
      {"nothing made", [](const std::string&) {}, "new", false},
  };
  for (const auto& c : cases) {
    fs::remove(path("f"));
    const std::string file = c.isThere ? write("f", "old") : path("f");
    FileReplacer out;
    ASSERT_TRUE(out.open(file.c_str()) && out.append("new", 3));
    out.expect(identityAt(file));
    c.meanwhile(file);
    const bool mayReplace = c.left == "new";
    EXPECT_EQ(out.commit(), mayReplace) << c.name;
    EXPECT_EQ(out.status().code(), mayReplace ? StatusCode::kOk : StatusCode::kChanged) << c.name;
    EXPECT_EQ(read("f"), c.left) << c.name;
    EXPECT_EQ(entries(), c.left.empty() ? 0 : 1) << c.name;
    EXPECT_EQ(isSameFile(out.written(), identityAt(file)), mayReplace) << c.name;
  }
}

TEST_F(ReplaceFile, WaitsForTheLockAsLongAsItMay) {
  const int other = ::open(write("f", "old").c_str(), O_RDWR);
  ASSERT_TRUE(lockFile(other, 0).ok());
  ::setenv("MORVANE_WAIT", "0", 1);
  EXPECT_EQ(replace(path("f"), "new"),
            "cannot write " + path("f") + ": another program keeps it locked; waited 0 s");
  ::setenv("MORVANE_WAIT", "60", 1);
  std::thread unlocker([other] {
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    ::close(other);
  });
  EXPECT_EQ(replace(path("f"), "new"), "");
  unlocker.join();
  ::unsetenv("MORVANE_WAIT");
  EXPECT_EQ(read("f"), "new");
}

TEST_F(ReplaceFile, WritesInPlaceWhereThatIsAsked) {
  const std::string large(3'000'000, 'x');
  for (const std::string& content : {large, std::string("short")}) {
    fs::remove(path("other"));
    fs::create_hard_link(write("f", "of middle length"), path("other"));
    FileReplacer out;
    ASSERT_TRUE(out.open(path("f").c_str()));
    EXPECT_EQ(out.otherNames(), 1u);
    ::setenv("MORVANE_IN_PLACE", "1", 1);
    EXPECT_EQ(replace(path("f"), content), "");
    ::unsetenv("MORVANE_IN_PLACE");
    EXPECT_TRUE(read("other") == content && read("f") == content);
  }
  write("f.morvane-copy", "cut off");
  ::setenv("MORVANE_IN_PLACE", "1", 1);
  EXPECT_NE(replace(path("f"), "new").find("f.morvane-copy is there"), std::string::npos);
  ::unsetenv("MORVANE_IN_PLACE");
  EXPECT_EQ(read("f"), "short");
  EXPECT_EQ(entries(), 3);
}

TEST_F(ReplaceFile, ReadsWholeFilesOfAllowedSize) {
  std::unique_ptr<std::uint8_t[]> bytes;
  std::size_t size = 0;
  const std::string file = write("f", "four");
  ASSERT_TRUE(readWholeFile(file.c_str(), 4, bytes, size).ok());
  EXPECT_EQ(std::string(bytes.get(), bytes.get() + size), "four");
  EXPECT_EQ(readWholeFile(file.c_str(), 3, bytes, size).code(), StatusCode::kTooLarge);
  EXPECT_EQ(size, 4u);
}

}  // namespace
}  // namespace morvane
