#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <string>

#include "tests/util/ReplaceFileFixture.h"
#include "util/WholeFile.h"

namespace morvane {
namespace {

namespace fs = std::filesystem;

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

TEST_F(ReplaceFile, TakesNamesWithoutAFolderAndOfAnyLength) {
  const fs::path before = fs::current_path();
  fs::current_path(folder_);
  for (const std::size_t length : {1, 255}) {
    EXPECT_EQ(replace(std::string(length, 'f'), "new"), "");
    EXPECT_EQ(read(path(std::string(length, 'f'))), "new");
  }
  const std::string tooLong(256, 'f');
  EXPECT_EQ(replace(tooLong, "new").find("cannot write " + tooLong + ": "), 0u);
  fs::current_path(before);
  EXPECT_EQ(entries(), 2);
}

// What a run that was killed leaves goes a day later; whatever else has such a name stays.
TEST_F(ReplaceFile, RemovesAbandonedTemporaryFiles) {
  const auto age = [](const std::string& file, int hours) {
    std::error_code ignored;  // not every library can do it to a folder
    fs::last_write_time(file, fs::file_time_type::clock::now() - std::chrono::hours(hours),
                        ignored);
  };
  age(write(".morvane-1-0.tmp", "abandoned"), 25);
  age(write(".morvane-1-1.tmp", "perhaps still written"), 23);
  age(write(".morvane-notes.tmp", "a user's"), 1000);
  age(write(".morvane-1-0 notes.tmp", "a user's"), 1000);
  age(write("x.morvane-1-0.tmp", "a user's"), 1000);
  fs::create_directory(path(".morvane-folder.tmp"));
  age(path(".morvane-folder.tmp"), 1000);
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

TEST_F(ReplaceFile, WritesInPlaceWhereThatIsAsked) {
  const std::string large(3'000'000, 'x');
  for (const std::string& content : {large, std::string("short")}) {
    fs::remove(path("other"));
    fs::create_hard_link(write("f", "of middle length"), path("other"));
    FileReplacer out;
    ASSERT_TRUE(out.open(path("f").c_str()));
    EXPECT_EQ(out.otherNames(), 1u);
    const ScopedVariable inPlace("MORVANE_IN_PLACE", "1");
    EXPECT_EQ(replace(path("f"), content), "");
    EXPECT_TRUE(read("other") == content && read("f") == content);
  }
  write("f.morvane-copy", "cut off");
  const ScopedVariable inPlace("MORVANE_IN_PLACE", "1");
  EXPECT_NE(replace(path("f"), "new").find("f.morvane-copy is there"), std::string::npos);
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
