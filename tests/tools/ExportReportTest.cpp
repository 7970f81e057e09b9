#include "tools/batch/ExportReport.h"

#include <gtest/gtest.h>

#include "tools/terminal/ProgressBar.h"

namespace tools {
namespace {

class ExportReportTest : public testing::Test {
 protected:
  // What the report says of these lines; empty when all went well.
  std::string concludeAfter(std::initializer_list<const char*> lines) {
    testing::internal::CaptureStderr();
    for (const char* line : lines) report_.readLine(line);
    const bool ok = report_.conclude();
    const std::string said = testing::internal::GetCapturedStderr();
    EXPECT_EQ(ok, said.empty());
    return said;
  }

  std::vector<std::string> begun_;
  ExportReport report_{
      "a.ma",
      {{"|missing", "no/such/texture.psd"}, {"picture", ""}, {"|full", "full.psd"}},
      [this](const TileOutcome& tile) { begun_.push_back(tile.path); }};
};

TEST_F(ExportReportTest, WarningsAreNoFailure) {
  EXPECT_EQ(concludeAfter({"Exporting tile |a...", "*** Warning : goblin outside of tile boundary",
                           "*** Warning : goblin outside of tile boundary",
                           "Warning: more than one material on the goblin!Exporting tile |b..."}),
            "");
  EXPECT_EQ(begun_, (std::vector<std::string>{"|a", "|b"}));
  ASSERT_EQ(report_.tiles().size(), 2u);
  EXPECT_EQ(report_.tiles()[0].warnings,
            (decltype(TileOutcome::warnings){{"goblin outside of tile boundary", 2},
                                             {"more than one material on the goblin!", 1}}));
  EXPECT_TRUE(report_.tiles()[1].warnings.empty());
}

TEST_F(ExportReportTest, NamesEachFailedTileOnceWithItsReason) {
  report_.readHostLine("Error: cannot write full.psd: No space left on device");
  const std::string said = concludeAfter(
      {"Exporting tile |good...", "Exporting tile |missing...", "*** Error : couldn't load psd",
       "*** Error exporting tile 1", "Exporting tile |full...", "*** Error : couldn't save psd",
       "*** Error exporting tile 2", "Exporting tile |fine..."});
  EXPECT_EQ(
      said,
      "morvane: a.ma: |missing: couldn't load psd; its texture "
      "no/such/texture.psd does not exist; if it lies elsewhere on this machine, say where with "
      "--map FROM=TO or --project DIR\n"
      "morvane: a.ma: |full: couldn't save psd: cannot write full.psd: No space left "
      "on device; free some space there\n");
}

// The first error ends without a line feed, and the last is of a node that has no path.
TEST_F(ExportReportTest, HearsErrorsThatStandOnNoLineOfTheirOwn) {
  const std::string said =
      concludeAfter({"Exporting tile |a...",
                     "*** Error : transform weirdness on goblin*** Error exporting tile 0",
                     "Warning: more than one material on the goblin!Exporting tile |b...",
                     "Warning: more than one material on the goblin!*** Error : No mesh",
                     "*** Error exporting tile 1", "*** Error : couldn't get DAG path",
                     "*** Error exporting tile 2"});
  for (const char* named : {"a.ma: |a: transform weirdness on goblin;", "a.ma: |b: No mesh;",
                            "a.ma: picture: couldn't get DAG path"})
    EXPECT_NE(said.find(named), std::string::npos) << named << said;
}

TEST(ProgressLine, ShowsTheShareDoneAndTheTimeLeft) {
  EXPECT_EQ(progressLine(0, 5, "a"), "[--------------------]   0%  a");
  EXPECT_EQ(progressLine(0.25, 30, "b"), "[#####---------------]  25%  b  1:30 left");
  EXPECT_EQ(progressLine(0.5, 3661, "c"), "[##########----------]  50%  c  1:01:01 left");
  EXPECT_EQ(progressLine(2, 9, "d"), "[####################] 100%  d  0:00 left");
}

}  // namespace
}  // namespace tools
