#include "util/WindowsNames.h"

#include <gtest/gtest.h>

namespace morvane {
namespace {

// From "Naming Files, Paths, and Namespaces" and "Maximum Path Length Limitation" of Windows'
// documentation.
TEST(WindowsNames, RefusesWhatWindowsTakesForSomethingElse) {
  for (const char* path :
       {"tile.psd", "C:\\level\\tile.psd", "C:/level/tile.psd", "C:tile.psd", "..\\a/./tile.psd",
        "\\\\machine\\share\\tile.psd", "//machine/share/tile.psd", "\\\\?\\C:\\tile.psd",
        "\\\\?\\UNC\\machine\\share\\tile.psd", "con-tile.psd", "COM10.psd", "console", "lpt.psd",
        "a b.psd", ".morvane", "pr\u00E4rie.psd", "\u8349\u539F.psd", "\xF0\x9F\x8C\xBF.psd", ""}) {
    EXPECT_EQ(whyNoWindowsFile(path), "") << path;
  }
  for (const char* path : {"con.psd",
                           "a/CON",
                           "C:\\level\\nul.tar.gz",
                           "aux .psd",
                           "Prn",
                           "com1.psd",
                           "LPT9",
                           "COM\u00B2.psd",
                           "conin$",
                           "aux/tile.psd",
                           "tile.psd:stream",
                           "C:\\a:b\\tile.psd",
                           "CD:x",
                           "tile.psd.",
                           "tile.psd ",
                           "a./tile.psd",
                           "...",
                           "a?.psd",
                           "a*.psd",
                           "a|b",
                           "a\"b",
                           "<a>",
                           "a\nb",
                           "\\\\.\\C:",
                           "\\\\.\\pipe\\x",
                           "\\\\?\\Volume{1}\\x"}) {
    EXPECT_NE(whyNoWindowsFile(path), "") << path;
  }
}

TEST(WindowsNames, HasALongFormOfWholePathsAlone) {
  const struct {
    const char* path;
    const char* asLong;
  } cases[] = {{"C:\\a\\b", "\\\\?\\C:\\a\\b"},
               {"\\\\machine\\share\\a", "\\\\?\\UNC\\machine\\share\\a"},
               {"C:a", "C:a"},
               {"a\\b", "a\\b"},
               {"\\a", "\\a"},
               {"\\\\.\\pipe\\x", "\\\\.\\pipe\\x"}};
  for (const auto& c : cases) {
    EXPECT_EQ(longWindowsPath(c.path), c.asLong);
    EXPECT_EQ(longWindowsPath(c.asLong), c.asLong);
    EXPECT_EQ(shortWindowsPath(c.asLong), c.path);
    EXPECT_EQ(shortWindowsPath(c.path), c.path);
  }
}

TEST(WindowsNames, AreMeantInAFolder) {
  const struct {
    const char* folder;
    const char* path;
    const char* meant;
  } cases[] = {{"C:\\level", "tile.psd", "C:/level/tile.psd"},
               {"C:/level/", "..\\art/./tile.psd", "C:/art/tile.psd"},
               {"C:/level", "/art//tile.psd", "C:/art/tile.psd"},
               {"C:/level", "c:tile.psd", "C:/level/tile.psd"},
               {"C:/level", "D:tile.psd", "D:tile.psd"},
               {"C:/level", "D:\\art\\tile.psd", "D:/art/tile.psd"},
               {"C:/level", "../../..", "C:/"},
               {"C:/level", "con.psd", "C:/level/con.psd"},
               {"C:/level", "tile.psd.", "C:/level/tile.psd."},
               {"C:/level", "\\\\machine\\share\\a\\..\\tile.psd", "//machine/share/tile.psd"},
               {"//machine/share/level", "..\\tile.psd", "//machine/share/tile.psd"},
               {"//machine/share/level", "../../tile.psd", "//machine/share/tile.psd"},
               {"\\\\?\\UNC\\machine\\share", "/tile.psd", "//machine/share/tile.psd"},
               {"", "a/../../b", "../b"},
               {"a", "..", "."}};
  for (const auto& c : cases)
    EXPECT_EQ(normalWindowsPath(joinedWindowsPath(c.folder, c.path)), c.meant) << c.path;
}

}  // namespace
}  // namespace morvane
