#include <gtest/gtest.h>
#include <windows.h>

#include <chrono>
#include <memory>
#include <thread>
#include <vector>

#include "tests/util/ReplaceFileFixture.h"
#include "util/FileFacts.h"
#include "util/Path.h"
#include "util/WholeFile.h"

namespace morvane {
namespace {

namespace fs = std::filesystem;

class ReplaceFileOnWindows : public ReplaceFile {
 protected:
  std::wstring wide(const std::string& name) const { return systemPath(path(name)).native(); }

  // As programs open a file that do not think of others.
  HANDLE hold(const std::string& name) const {
    return CreateFileW(wide(name).c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0,
                       nullptr);
  }

  std::string readBack(const std::string& file) const {
    std::unique_ptr<std::uint8_t[]> bytes;
    std::size_t size = 0;
    const Status status = readWholeFile(file.c_str(), 1000, bytes, size);
    return status.ok() ? std::string(bytes.get(), bytes.get() + size) : status.text();
  }
};

TEST_F(ReplaceFileOnWindows, RefusesNamesOfSomethingElse) {
  write("tile.psd", "old");
  for (const char* name : {"con.psd", "NUL", "tile.psd:goblins", "tile.psd.", "tile.psd ", "a?.psd",
                           "a*.psd", "com1.psd", "a|b.psd"}) {
    FileReplacer out;
    EXPECT_FALSE(out.open(path(name).c_str())) << name;
    EXPECT_EQ(out.status().code(), StatusCode::kBadArgument) << name;
    EXPECT_NE(out.status().text().find(name), std::string::npos) << out.status().text();
    EXPECT_FALSE(factsOf(path(name)).exists()) << name;
    EXPECT_EQ(openToRead(path(name)), nullptr) << name;
  }
  fs::create_directory(path("folder"));
  EXPECT_EQ(replace(path("folder"), "new"), "cannot write " + path("folder") + ": Is a directory");
  EXPECT_EQ(replace(path("none/f"), "new"),
            "cannot write " + path("none/f") + ": No such file or directory");
  EXPECT_EQ(read("tile.psd"), "old");
  EXPECT_EQ(entries(), 2);
}

TEST_F(ReplaceFileOnWindows, TakesNamesOfEveryAlphabetLengthAndForm) {
  std::string deep = nameOf(folder_);
  for (int i = 0; i < 10; ++i) {
    deep += "/" + std::string(40, static_cast<char>('a' + i));
    ASSERT_NE(CreateDirectoryW(systemPath(deep).c_str(), nullptr), 0) << GetLastError();
  }
  const std::string folder = nameOf(folder_);
  const fs::path before = fs::current_path();
  fs::current_path(folder_);
  for (const std::string& file :
       {std::string("plain"), folder + "/pr\u00E4rie \u8349\u539F \xF0\x9F\x8C\xBF \u0628.psd",
        deep + "/tile.psd", "./" + std::string(200, 'x') + "/../y",
        folder.substr(0, 2) + "relative", folder + "\\back",
        "\\\\?\\" + systemPath(folder + "/").make_preferred().string() + "long"}) {
    for (const char* content : {"made", "replaced"}) {
      EXPECT_EQ(replace(file, content), "") << file;
      EXPECT_EQ(readBack(file), content) << file;
    }
    EXPECT_TRUE(isSameFile(identityAt(file), identityAt(file))) << file;
    EXPECT_EQ(factsOf(file).size, 8u) << file;
  }
  fs::current_path(before);
  // The library's own removal does not get at names that long.
  DeleteFileW(systemPath(deep + "/tile.psd").c_str());
  for (; deep != folder; deep.resize(deep.rfind('/'))) RemoveDirectoryW(systemPath(deep).c_str());
  EXPECT_EQ(entries(), 6);
}

TEST_F(ReplaceFileOnWindows, KeepsAttributesAccessListAndStreams) {
  write("f", "old");
  DWORD features = 0;
  GetVolumeInformationW((folder_.root_path() / "").c_str(), nullptr, 0, nullptr, nullptr, &features,
                        nullptr, 0);
  const bool hasStreams = (features & FILE_NAMED_STREAMS) != 0;
  const std::wstring stream = wide("f") + L":note";
  if (hasStreams)
    CloseHandle(CreateFileW(stream.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr));
  ASSERT_NE(SetFileAttributesW(wide("f").c_str(), FILE_ATTRIBUTE_HIDDEN), 0);
  const auto list = [&] {
    DWORD size = 0;
    GetFileSecurityW(wide("f").c_str(), DACL_SECURITY_INFORMATION, nullptr, 0, &size);
    std::vector<unsigned char> bytes(size);
    GetFileSecurityW(wide("f").c_str(), DACL_SECURITY_INFORMATION, bytes.data(), size, &size);
    return bytes;
  };
  const DWORD attributes = GetFileAttributesW(wide("f").c_str());
  const auto before = list();
  EXPECT_EQ(replace(path("f"), "new"), "");
  EXPECT_EQ(GetFileAttributesW(wide("f").c_str()), attributes);
  EXPECT_EQ(list(), before);
  EXPECT_EQ(GetFileAttributesW(stream.c_str()) != INVALID_FILE_ATTRIBUTES, hasStreams);
  SetFileAttributesW(wide("f").c_str(), FILE_ATTRIBUTE_READONLY);
  EXPECT_EQ(replace(path("f"), "newer"), "cannot write " + path("f") + ": the file is read-only");
  SetFileAttributesW(wide("f").c_str(), FILE_ATTRIBUTE_NORMAL);
  EXPECT_EQ(read("f"), "new");
  EXPECT_EQ(entries(), 1);
}

TEST_F(ReplaceFileOnWindows, WaitsForOtherProgramsAsLongAsItMay) {
  write("f", "old");
  std::FILE* const reader = openToRead(path("f"));  // one that lets others do as they like
  EXPECT_EQ(replace(path("f"), "newer"), "");
  EXPECT_EQ(std::fgetc(reader), 'o');
  std::fclose(reader);

  const HANDLE held = hold("f");
  {
    const ScopedVariable wait("MORVANE_WAIT", "0");
    EXPECT_EQ(replace(path("f"), "new"),
              "cannot write " + path("f") + ": another program keeps it open; waited 0 s");
  }
  EXPECT_EQ(read("f"), "newer");
  EXPECT_EQ(entries(), 1);
  const ScopedVariable wait("MORVANE_WAIT", "60");
  std::thread closer([held] {
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    CloseHandle(held);
  });
  EXPECT_EQ(replace(path("f"), "new"), "");
  closer.join();
  EXPECT_EQ(read("f"), "new");
  EXPECT_EQ(entries(), 1);
}

}  // namespace
}  // namespace morvane
