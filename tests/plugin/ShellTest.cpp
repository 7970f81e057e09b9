#include <gtest/gtest.h>

#include <string>

#include "tile/MessageLog.h"
#include "util/Platform.h"

namespace morvane {
namespace {

template <typename Log>
std::string captured(Log log) {
  ::testing::internal::CaptureStdout();
  log();
  return ::testing::internal::GetCapturedStdout();
}

TEST(MessageLog, PrintsLevelsZeroToThreeFormattedOnceAndCut) {
  EXPECT_EQ(captured([] {
              for (int level = -1; level <= 4; ++level) logf(level, "%d\n", level);
              logf(1, "%s", "100%s %n");
              logText(1, "%d");
            }),
            "0\n1\n2\n3\n100%s %n%d");
  const std::string text(300, 'x');
  EXPECT_EQ(captured([&] { logf(1, "%s", text.c_str()); }), text.substr(0, 255));
  EXPECT_EQ(captured([&] { logText(1, text.c_str()); }), text);
}

TEST(SplitPath, CutsOffDirectoryAndExtension) {
  const struct {
    const char* path;
    const char* directory;
    const char* name;
    const char* extension;
  } cases[] = {
      {"/art/tile01.tga", "/art/", "tile01", ".tga"},
      {"tile.a.PSD", "", "tile.a", ".PSD"},
      {"/art.v2/tile", "/art.v2/", "tile", ""},
      {"../tile.", "../", "tile", "."},
      {"/art/.psd", "/art/", "", ".psd"},
      {"", "", "", ""},
      {"/art/", "/art/", "", ""},
  };
  for (const auto& c : cases) {
    const SplitPath split = splitPath(c.path);
    EXPECT_EQ(split.directory, c.directory) << c.path;
    EXPECT_EQ(split.name, c.name) << c.path;
    EXPECT_EQ(split.extension, c.extension) << c.path;
    EXPECT_EQ(split.drive + split.directory + split.name + split.extension, c.path);
  }
}

}  // namespace
}  // namespace morvane
