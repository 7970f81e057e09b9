#include "host/state/HostState.h"
#include "tests/file/SceneText.h"

namespace host {
namespace {

class FileReading : public SceneFiles {
 protected:
  void TearDown() override {
    HostState::current().readFiles = ReadFiles();
    SceneFiles::TearDown();
  }
};

TEST_F(FileReading, ScriptsReadLinesOfWhatIsAFile) {
  allowFiles();
  writeText("list.txt", "first\nsecond\n\nlast");
  const struct {
    const char* script;
    const char* value;
  } kCases[] = {
      {"int $f = `fopen \"list.txt\" \"r\"`; fgetline $f;", "first\n"},
      {"fgetline $f;", "second\n"},
      {"fgetline $f;", "\n"},
      {"feof $f;", "0"},
      {"fgetline $f;", "last"},
      {"feof $f;", "1"},
      {"fgetline $f;", ""},
      {"frewind $f; fgetline $f;", "first\n"},
      {"fclose $f; fgetline $f;", "failed: fgetline: needs the number of an open file"},
      {"fopen \"none.txt\" \"r\";", "0"},
      {"fopen \".\" \"r\";", "0"},
      {"fopen \"list.txt\" \"w\";", "failed: fopen: files are only read; the mode must be \"r\""},
      {"fopen \"list.txt\";", "failed: fopen: files are only read; the mode must be \"r\""},
      {"int $i; for ($i = 0; $i < 100; $i++) fopen \"list.txt\" \"r\";",
       "failed: fopen: too many files are open; close some with fclose"},
  };
  for (const auto& c : kCases) EXPECT_EQ(run(c.script), c.value) << c.script;
  EXPECT_EQ(readAll(folder_ / "list.txt"), "first\nsecond\n\nlast");
}

TEST_F(FileReading, NoSceneAndNobodyUnaskedReads) {
  writeText("list.txt", "first\n");
  EXPECT_EQ(run("fopen \"list.txt\" \"r\";"),
            "failed: fopen: files are read only with run --allow-files");
  allowFiles();
  EXPECT_NE(open("fopen \"list.txt\" \"r\";\n").find("fopen: files are read only"),
            std::string::npos);
}

}  // namespace
}  // namespace host
