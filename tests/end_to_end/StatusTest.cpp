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

TEST_F(Status, WrongUsageIs2) {
  refuses("$morvane", 2, "subcommand");
  refuses("$morvane nonsense", 2, "nonsense");
  refuses("$morvane --nonsense", 2, "nonsense");
  refuses("$morvane exprot scene.ma", 2, "no subcommand exprot; did you mean export?");
  refuses("$morvane view a.psd --ouptut=b.html", 2, "no option --ouptut; did you mean --output?");
  refuses("$morvane export", 2, "SCENE");
  refuses("$morvane info", 2, "FILE");
  refuses("$morvane goblins a.psd --full", 2, "--json");
  refuses("$morvane goblins a.psd b.psd --obj c.obj", 2, "name exactly one");
  refuses("$morvane diff a.psd", 2, "NEW");
  refuses("$morvane diff . a.psd", 2, "name two files, or two folders");
  refuses("$morvane --json info a.psd", 2, "belongs behind the subcommand: morvane info --json");
  refuses("$morvane run scene.ma other.ma", 2, "other.ma");
  refuses("$morvane export tile1 scene.ma", 2, "tile1 is not a name of a scene");
  refuses("$morvane export scene.ma tile1 other.ma", 2, "other.ma comes after the tile tile1");
  for (const char* output : {"run -o", "import a.ma t a.psd -o", "view a.psd -o",
                             "goblins a.psd --obj", "goblins a.psd --glb", "export a.ma t --to"}) {
    refuses("$morvane " + std::string(output) + " ''", 2, "the name is empty");
    refuses("$morvane " + std::string(output) + " a.mb", 2, "the name must end in .");
  }
  for (const char* jobs : {"export a.ma --jobs 0", "export a.ma --jobs=-1", "info a.ma --jobs 257",
                           "info a.ma --jobs 2x"})
    refuses("$morvane " + std::string(jobs), 2, "needs a number from 1 to 256, not ");
  refuses("$morvane --worker 99", 2, "use --jobs");
  refuses("$morvane info a.ma --project nowhere", 2, "needs a folder, not nowhere");
  refuses("$morvane info a.ma --frame nan", 2, "needs a number, not nan");
  refuses("$morvane export a.ma t --to .psd", 2, "with something before it");
}

TEST_F(Status, WhatCannotBeLoadedIs3) {
  write("not-a-scene.ma", "\x89PNG\r\n\x1A\n");
  write("empty.ma", "");
  write("binary.mb", "FOR4....");
  refuses("$morvane export missing.ma", 3, "missing.ma; check the name");
  refuses("$morvane export Not-A-Scene.ma", 3, "; did you mean not-a-scene.ma?");
  refuses("$morvane export empty.ma", 3, "empty.ma is empty");
  for (const std::string command : {"export", "info"})
    refuses("$morvane " + command + " binary.mb", 3, "save it as Maya ASCII, .ma");
  refuses("$morvane run missing.ma -o saved.ma", 3, "missing.ma");
  refuses("$morvane export not-a-scene.ma", 3, "not-a-scene.ma");
  refuses("$morvane export .", 3, " is a folder; name a file in it");
}

TEST_F(Status, WhatTheSceneLacksIs1) {
  write("scene.ma", sceneOfTiles({"a.psd", "", "P:/art/a.psd"}));
  refuses("$morvane export scene.ma Tile2", 1,
          "did you mean tile2? The tiles are tile1, tile2, tile3");
  refuses("$morvane export scene.ma 'tile*' --to b.psd", 1, "tile* means 3 objects");
  const Outcome outcome =
      shell("$morvane export scene.ma --map p:/art=. --map P:/=no --map P:/arts=.");
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(outcome.err.find("--map P:: "), std::string::npos) << outcome.err;
  for (const char* line :
       {"Error: |tile2: its file texture names no file\n",
        "; set the fileTextureName of picture2\n", "/a.psd does not exist; it is where --map leads",
        "--map P:/arts: no texture and no reference lies in that folder"}) {
    EXPECT_NE(outcome.err.find(line), std::string::npos) << line << outcome.err;
  }
  write("a.psd", "the artist's");
  refuses("$morvane export scene.ma tile1 --to ./a.psd", 2, "a.psd is a texture of the scene");
  EXPECT_EQ(read("a.psd"), "the artist's");
}

// The program alone, without the plug-in that belongs beside it.
TEST_F(Status, AMissingPlugInIs3) {
  const Outcome copied = shell("mkdir -p alone/bin && cp $morvane alone/bin/ && ln -s " +
                               shellWord(MORVANE_BINARY_DIR "/lib") + " alone/lib");
  ASSERT_EQ(copied.status, 0) << copied.err;
  program_ = path("alone/bin/morvane");
  refuses("env -u MAYA_PLUG_IN_PATH $morvane run -c 'print 1'", 3, "is missing in ");
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
  write("text.psd", "this is not a picture");
  write("plain.psd", psdBytes(16, 16));
  write("picture.png", "x");
  write("jpeg.psd", "\xFF\xD8\xFF\xE0 and so on");
  write("png.tga", "\x89PNG and so on");
  write("empty.psd", "");
  shell("mkdir folder");
  for (const std::string command :
       {"info", "info --json", "goblins", "goblins --json", "goblins --obj out.obj"}) {
    for (const std::string file : {"cut.psd", "text.psd", "picture.png", "missing.psd",
                                   "missing.tga", "jpeg.psd", "png.tga", "empty.psd", "folder"}) {
      refuses("$morvane " + command + ' ' + file, 1, file);
    }
  }
  refuses("$morvane goblins plain.psd --obj out.obj", 1, "GoblinGeometry");
  refuses("$morvane diff cut.psd plain.psd", 1, "cut.psd");
  refuses("$morvane diff plain.psd missing.psd", 1, "missing.psd");
  refuses("$morvane diff folder folder", 1, "no PSD file in either folder");
  refuses("$morvane info jpeg.psd", 1, "FF D8 FF E0, a JPEG image");
  refuses("$morvane info png.tga", 1, "not a TGA image: begins with 89 50 4E 47, a PNG image");
  refuses("$morvane info empty.psd", 1, "is empty");
  refuses("$morvane info folder", 1, "is a folder");
  write("short.psd", psdBytes(16, 16).substr(0, psdBytes(16, 16).size() - 1));
  for (const std::string command : {"info", "goblins", "view -o page.html"}) {
    const Outcome outcome = shell("$morvane " + command + " short.psd");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_NE(outcome.err.find("short.psd: the merged image is cut off: at least 768 bytes wanted, "
                               "767 there"),
              std::string::npos)
        << outcome.err;
  }
  const Outcome some = shell("$morvane info cut.psd plain.psd");
  EXPECT_EQ(some.status, 1);
  EXPECT_NE(some.out.find("plain.psd: 16 x 16 pixels"), std::string::npos) << some.out;
}

// It is kept whole, so that it can be looked at, but takes no goblins.
TEST_F(Status, AnotherSignatureIs1AndNamed) {
  write("other.psd", psdBytes(16, 16).replace(3, 1, "X"));
  write("scene.ma", sceneOfTiles({"other.psd"}));
  for (const char* command :
       {"info other.psd", "info --json other.psd", "export scene.ma", "info scene.ma"}) {
    const Outcome outcome = shell(std::string("$morvane ") + command);
    EXPECT_EQ(outcome.status, 1) << command;
    EXPECT_NE(outcome.out, "") << command;
    EXPECT_NE(outcome.err.find("other.psd: not a PSD file: begins with 38 42 50 58"),
              std::string::npos)
        << outcome.err;
  }
}

TEST_F(Status, AScenesTilesAreListedAndAMissingTextureIs1) {
  write("plain.psd", psdBytes(16, 16));
  write("sound.ma", sceneOfTiles({"plain.psd"}));
  write("scene.ma", sceneOfTiles({"plain.psd", "gone.psd"}));
  EXPECT_EQ(shell("$morvane info sound.ma").status, 0);
  const Outcome outcome = shell("$morvane info --json scene.ma plain.psd");
  EXPECT_EQ(outcome.status, 1);
  const std::string tile1 =
      R"({"tile":"|tile1","texture":"plain.psd","exists":true,"lookedFor":[")" + path("plain.psd") +
      R"("],"goblins":1,)";
  EXPECT_EQ(outcome.out.find(R"({"file":"scene.ma","tiles":[)" + tile1 +
                             R"("warnings":[],"error":null,"status":0},)"),
            0)
      << outcome.out;
  EXPECT_NE(outcome.out.find("{\"file\":\"plain.psd\""), std::string::npos) << outcome.out;
  EXPECT_NE(
      outcome.err.find("scene.ma: |tile2: couldn't load psd; its texture gone.psd does not exist"),
      std::string::npos);
  write("empty.ma", "//Maya ASCII 2018 scene\n");
  EXPECT_EQ(shell("$morvane info empty.ma").status, 1);
  refuses("$morvane info missing.ma", 3, "missing.ma");
}

TEST_F(Status, OutputThatCannotBeWrittenIs1) {
  if (access("/dev/full", W_OK) != 0) GTEST_SKIP() << "no /dev/full here";
  write("plain.psd", psdBytes(16, 16));
  write("scene.ma", sceneOfTiles({"plain.psd"}));
  EXPECT_EQ(shell("$morvane info plain.psd >/dev/full").status, 1);
  EXPECT_EQ(shell("$morvane run -c 'print \"text\\n\"' >/dev/full").status, 1);
  EXPECT_EQ(shell("$morvane export scene.ma >/dev/full").status, 1);
}

// The scene's goblin is the triangle (0, 0, 0), (1, 0, 0), (0, 0, -1) on a tile that is 4 wide.
TEST_F(Status, ADiffIs0WhenEqualAnd1WhenNot) {
  const std::string scene = sceneOfTiles({"plain.psd"});
  write("scene.ma", scene);
  write("moved.ma", withGoblinsAt(scene, "1 0 0 2 0 0 1 0 -1"));
  write("plain.psd", psdBytes(16, 16));
  const Outcome made = shell(
      "mkdir -p old/deep new/deep && cp plain.psd old/bare.psd && cp plain.psd new/extra.psd && "
      "cp plain.psd new/bare.psd && $morvane export scene.ma tile1 --to old/deep/a.psd && "
      "$morvane export moved.ma tile1 --to new/deep/a.psd && $morvane export scene.ma && "
      "cp plain.psd tagged.psd");
  ASSERT_EQ(made.status, 0) << made.err;
  Outcome outcome = shell("$morvane diff tagged.psd old/deep/a.psd");
  EXPECT_EQ(outcome.status, 0) << outcome.out << outcome.err;
  EXPECT_EQ(outcome.out, "");
  outcome = shell("$morvane diff old new");
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(outcome.out,
            "old/deep/a.psd, new/deep/a.psd: 1 moved, 0 the same\n"
            "  moved       1  pebble               by 0.250 0.000 0.000\n"
            "new/extra.psd is new: 0 the same\n");
  outcome = shell("$morvane diff --json old/deep/a.psd new/deep/a.psd");
  EXPECT_EQ(outcome.out,
            "{\"old\":\"old/deep/a.psd\",\"new\":\"new/deep/a.psd\",\"equal\":false,\"sound\":true,"
            "\"same\":0,\"goblins\":[{\"state\":\"moved\",\"name\":\"pebble\",\"old\":1,\"new\":1,"
            "\"by\":[0.25,0.0,0.0]}]}\n");
}

}  // namespace
