#include <sys/types.h>
#include <unistd.h>

#include "tests/end_to_end/Program.h"

namespace {

class Status : public ProgramTest {
 protected:
  // The command line fails with this status, says why (naming `named`) on standard error, and
  // changes no file.
  void refuses(const std::string& line, int status, const std::string& named) {
    SCOPED_TRACE(line);
    const auto before = names();
    const Outcome outcome = shell(line);
    EXPECT_EQ(outcome.status, status) << outcome.err;
    EXPECT_NE(outcome.err.find(named), std::string::npos) << outcome.err;
    EXPECT_EQ(outcome.out, "");
    EXPECT_EQ(names(), before);
  }
};

TEST_F(Status, WrongUsageIs2AndHelpIs0) {
  refuses("$morvane", 2, "subcommand");
  refuses("$morvane nonsense", 2, "nonsense");
  refuses("$morvane --nonsense", 2, "nonsense");
  refuses("$morvane export", 2, "SCENE");
  refuses("$morvane info", 2, "FILE");
  refuses("$morvane goblins a.psd --full", 2, "--json");
  refuses("$morvane goblins a.psd b.psd", 2, "b.psd");
  refuses("$morvane run scene.ma other.ma", 2, "other.ma");
  for (const char* line :
       {"--help", "--version", "run --help", "export -h", "info --help", "goblins --help"}) {
    const Outcome outcome = shell(std::string("$morvane ") + line);
    EXPECT_EQ(outcome.status, 0) << line;
    EXPECT_NE(outcome.out, "") << line;
    EXPECT_EQ(outcome.err, "") << line;
  }
}

TEST_F(Status, WhatCannotBeLoadedIs3) {
  write("not-a-scene.ma", "\x89PNG\r\n\x1A\n");
  refuses("$morvane export missing.ma", 3, "missing.ma");
  refuses("$morvane run missing.ma -c 'print 1'", 3, "missing.ma");
  refuses("$morvane run missing.ma -o saved.ma", 3, "missing.ma");
  refuses("$morvane export not-a-scene.ma", 3, "not-a-scene.ma");
  refuses("$morvane export .", 3, "");
}

// The program alone, without the plug-in that belongs beside it.
TEST_F(Status, AMissingPlugInIs3) {
  const Outcome copied = shell("mkdir -p alone/bin && cp $morvane alone/bin/ && ln -s " +
                               shellWord(MORVANE_BINARY_DIR "/lib") + " alone/lib");
  ASSERT_EQ(copied.status, 0) << copied.err;
  program_ = path("alone/bin/morvane");
  refuses("env -u MAYA_PLUG_IN_PATH $morvane run -c 'print 1'", 3, "morvane");
  const Outcome found = shell("MAYA_PLUG_IN_PATH=" + shellWord(MORVANE_BINARY_DIR "/plug-ins") +
                              " MAYA_SCRIPT_PATH=" + shellWord(MORVANE_BINARY_DIR "/scripts") +
                              " $morvane run -c 'print \"here\\n\"'");
  EXPECT_EQ(found.status, 0) << found.err;
  EXPECT_EQ(found.out, "here\n");
}

TEST_F(Status, AFailedCommandStopsTheRun) {
  write("two.mel", "print \"two\\n\";\n");
  write("bad.mel", "print \"bad\\n\";\n\n  noSuchCommand 1;\nprint \"never\\n\";\n");
  Outcome outcome =
      shell("$morvane run -c 'print \"one\\n\"' -f two.mel -c 'print \"three\\n\"' -o out.ma");
  EXPECT_EQ(outcome.status, 0) << outcome.err;
  EXPECT_EQ(outcome.out, "one\ntwo\nthree\n");
  EXPECT_TRUE(exists("out.ma"));

  outcome = shell("$morvane run -f bad.mel -c 'print \"never\\n\"' -o unsaved.ma");
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(outcome.out, "bad\n");
  EXPECT_NE(outcome.err.find("bad.mel"), std::string::npos) << outcome.err;
  EXPECT_NE(outcome.err.find("noSuchCommand"), std::string::npos) << outcome.err;
  EXPECT_FALSE(exists("unsaved.ma"));
  refuses("$morvane run -f missing.mel", 1, "missing.mel");
  refuses("$morvane run -o no/such/folder/out.ma", 1, "no/such/folder/out.ma");
}

TEST_F(Status, DamagedFilesAre1AndNamed) {
  write("cut.psd", psdBytes(16, 16).substr(0, 30));
  write("text.psd", "this is no picture");
  write("plain.psd", psdBytes(16, 16));
  write("picture.png", "x");
  for (const std::string command :
       {"info", "info --json", "goblins", "goblins --json", "goblins --obj out.obj"}) {
    for (const std::string file :
         {"cut.psd", "text.psd", "picture.png", "missing.psd", "missing.tga"}) {
      refuses("$morvane " + command + ' ' + file, 1, file);
    }
  }
  refuses("$morvane goblins plain.psd --obj out.obj", 1, "GoblinGeometry");
  const Outcome some = shell("$morvane info cut.psd plain.psd");
  EXPECT_EQ(some.status, 1);
  EXPECT_NE(some.out.find("plain.psd: 16 x 16 pixels"), std::string::npos) << some.out;
}

TEST_F(Status, OutputThatCannotBeWrittenIs1) {
  if (access("/dev/full", W_OK) != 0) GTEST_SKIP() << "no /dev/full here";
  write("plain.psd", psdBytes(16, 16));
  write("scene.ma", sceneOfTiles({"plain.psd"}));
  EXPECT_EQ(shell("$morvane info plain.psd >/dev/full").status, 1);
  EXPECT_EQ(shell("$morvane run -c 'print \"text\\n\"' >/dev/full").status, 1);
  EXPECT_EQ(shell("$morvane export scene.ma >/dev/full").status, 1);
}

}  // namespace
