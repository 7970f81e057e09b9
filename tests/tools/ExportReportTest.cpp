#include "tools/ExportReport.h"

#include <gtest/gtest.h>

namespace tools {
namespace {

class ExportReportTest : public testing::Test {
 protected:
  // What the report says of these lines; empty when all went well.
  std::string concludeAfter(std::initializer_list<const char*> lines, bool progress = false) {
    ExportReport report({{"|missing", "no/such/texture.psd"}}, {progress, 3});
    testing::internal::CaptureStderr();
    for (const char* line : lines) report.hear(line);
    const bool ok = report.conclude();
    const std::string said = testing::internal::GetCapturedStderr();
    EXPECT_EQ(ok, progress || said.empty());
    return said;
  }
};

TEST_F(ExportReportTest, WarningsAreNoFailure) {
  EXPECT_EQ(concludeAfter({"Exporting tile |a...", "*** Warning : goblin outside of tile boundary",
                           "Warning: more than one material on the goblin!Exporting tile |b..."}),
            "");
}

TEST_F(ExportReportTest, NamesEachFailedTileOnceWithItsReason) {
  const std::string said = concludeAfter(
      {"Exporting tile |good...", "Exporting tile |missing...", "*** Error : couldn't load psd",
       "*** Error exporting tile 1", "Exporting tile |full...", "*** Error : couldn't save psd",
       "*** Error exporting tile 2", "Exporting tile |fine..."});
  EXPECT_EQ(said,
            "morvane: export failed for |missing: couldn't load psd; its texture "
            "no/such/texture.psd does not exist\n"
            "morvane: export failed for |full: couldn't save psd; check that the texture's folder "
            "can be written and "
            "the disk is not full\n");
}

TEST_F(ExportReportTest, HearsAnErrorThatEndsWithoutALineFeed) {
  const std::string said =
      concludeAfter({"Exporting tile |a...",
                     "*** Error : transform weirdness on goblin*** Error exporting tile 0",
                     "Warning: more than one material on the goblin!Exporting tile |b...",
                     "Warning: more than one material on the goblin!*** Error : No mesh",
                     "*** Error exporting tile 1"});
  EXPECT_NE(said.find("for |a: transform weirdness on goblin;"), std::string::npos) << said;
  EXPECT_NE(said.find("for |b: No mesh;"), std::string::npos) << said;
}

TEST_F(ExportReportTest, ANodeWithoutAPathIsItsOwnFailure) {
  const std::string said = concludeAfter(
      {"Exporting tile |a...", "*** Error : No transform", "*** Error exporting tile 0",
       "*** Error : couldn't get DAG path", "*** Error exporting tile 1"});
  EXPECT_NE(said.find("for |a: No transform"), std::string::npos) << said;
  EXPECT_NE(said.find("for a selected node: couldn't get DAG path"), std::string::npos) << said;
}

TEST_F(ExportReportTest, ProgressNamesTilesSafely) {
  EXPECT_EQ(concludeAfter({"Exporting tile |a...", "Exporting tile |\x1B[2J..."}, true),
            "morvane: tile 1 of 3: |a\nmorvane: tile 2 of 3: |\\x1B[2J\n");
}

}  // namespace
}  // namespace tools
