#include <algorithm>

#include "tests/end_to_end/Program.h"

// What files, names and scenes of other people's must not be able to do.

namespace {

class HostileInput : public ProgramTest {
 protected:
  void SetUp() override {
    write("scene.ma", sceneOfTiles({"a.psd"}));
    write("bare.ma", sceneOfTiles({"a.psd"}, true));
    write("a.psd", psdBytes(32, 32));
  }

  // Ends in time, and not because it was done.
  void refuses(const std::string& arguments) {
    const auto before = names();
    const Outcome outcome = shell("timeout 20 $morvane " + arguments);
    EXPECT_TRUE(outcome.status == 1 || outcome.status == 3) << arguments << ": " << outcome.status;
    EXPECT_NE(outcome.err, "") << arguments;
    EXPECT_EQ(names(), before) << arguments;
  }
};

std::string literal(const std::string& text) {
  std::string escaped;
  for (const char c : text) {
    if (c == '"' || c == '\\') escaped += '\\';
    escaped += c == '\n' ? "\\n" : c == '\t' ? "\\t" : std::string(1, c);
  }
  return escaped;
}

// Statements that reach out of the scene are refused, whether the plug-in is loaded or not.
TEST_F(HostileInput, ASceneOnlyDescribesItself) {
  write("evil.mel", "print \"ran\\n\"; file -rename \"made.ma\"; file -save;");
  shell("cp " + shellWord(MORVANE_BINARY_DIR "/plug-ins/morvane.so") + " other.so");
  const std::vector<std::string> statements = {"file -rename \"made.ma\"",
                                               "file -save",
                                               "file -exportAll -type \"mayaAscii\" \"made.ma\"",
                                               "file -open \"bare.ma\"",
                                               "loadPlugin \"./other.so\"",
                                               "unloadPlugin \"morvane\"",
                                               "source \"evil.mel\"",
                                               "eval \"print \\\"ran\\\\n\\\"\"",
                                               "print \"ran\\n\"",
                                               "`print \"ran\\n\"`",
                                               "exportTile",
                                               "dirmap -m \"/\" \"/tmp\"",
                                               "system \"touch made\"",
                                               "fopen \"made\" \"w\"",
                                               "proc p() { print \"ran\\n\"",
                                               "error \"stop\""};
  std::string scene = sceneOfTiles({"a.psd"}) + "select -r \"tile1\";\n";
  for (const std::string& statement : statements) scene += statement + ";\n";
  scene +=
      "requires \"./other.so\" \"1\";\ncreateNode script -n \"s\";\n\tsetAttr \".b\" -type "
      "\"string\" "
      "\"print \\\"ran\\\\n\\\"\";\n\tsetAttr \".st\" 1;\ncreateNode expression -n "
      "\"e\";\n\tsetAttr "
      "\".ixp\" -type \"string\" \"print \\\"ran\\\\n\\\"\";\n";
  write("evil.ma", scene);
  const auto before = names();
  const std::string report = " -c 'print `pluginInfo -q -listPlugins`; print `file -q -shortName`'";
  for (const char* const open : {"evil.ma", "-c 'file -open \"evil.ma\"'"}) {
    const Outcome outcome = shell("$morvane run " + std::string(open) + report);
    EXPECT_EQ(outcome.status, 1) << outcome.err;
    EXPECT_EQ(outcome.out, "morvane\nevil.ma");
    EXPECT_EQ(std::count(outcome.err.begin(), outcome.err.end(), '\n'),
              static_cast<std::ptrdiff_t>(statements.size()) + 1)
        << outcome.err;
    EXPECT_EQ(names(), before);
    EXPECT_EQ(read("a.psd"), psdBytes(32, 32));
  }
}

// The plug-in's start-up runs a script by its name, and the working folder may be anybody's.
TEST_F(HostileInput, AScriptBesideAnArtistsFilesIsNotThePlugIns) {
  write("omrblindData.mel", "print \"ran\\n\";");
  write("morvane.so", "");
  const Outcome outcome = shell("$morvane run -c 'print \"own\\n\"' -c 'source \"omrblindData\"'");
  EXPECT_EQ(outcome.status, 0) << outcome.err;
  EXPECT_EQ(outcome.out, "own\n");
  EXPECT_EQ(shell("$morvane run -c 'source \"./omrblindData\"'").out, "ran\n");
}

TEST_F(HostileInput, NamesAreNeverCommands) {
  for (const std::string& text :
       std::vector<std::string>{"x\"; print \"ran\\n\"; \"", "x\\\"; print \\\"ran\\n\\\"; \\\"",
                                "`print \"ran\\n\"`", "$x; ${y}", "back\\slash\\", "two\nlines\n",
                                "tab\there", "gr\xC3\xBCn \xE7\x9F\xB3", "\xFF\xFE"}) {
    SCOPED_TRACE(text);
    const std::string psd = text + ".psd";
    for (const Outcome& outcome :
         {morvane({"export", "scene.ma", text}), morvane({"export", "scene.ma", text + '*'}),
          morvane({"import", "scene.ma", text, "a.psd", "-o", "out.ma"})}) {
      EXPECT_EQ(outcome.status, 1);
      EXPECT_EQ(outcome.out.find("ran\n"), std::string::npos);
    }
    EXPECT_EQ(morvane({"export", "scene.ma", "tile1", "--to", psd}).status, 0);
    EXPECT_TRUE(exists(psd));

    // The path stands in a command as it is, or not at all.
    const bool plain = text.find_first_of("\"\\\n\t") == std::string::npos;
    const Outcome imported = morvane({"import", "bare.ma", "tile1", psd, "-o", "out.ma"});
    EXPECT_EQ(imported.status, plain ? 0 : 1) << imported.err;
    EXPECT_EQ(imported.out.find("ran\n"), std::string::npos);
    EXPECT_EQ(exists("out.ma"), plain);
    if (plain) {
      EXPECT_EQ(shell("$morvane run out.ma -c 'print `getAttr tileShape1.psdFileName`'").out,
                path(psd));
    }

    write("named.ma", sceneOfTiles({literal(psd)}));
    write(psd, psdBytes(32, 32));
    EXPECT_EQ(morvane({"export", "named.ma"}).status, 0);
    EXPECT_EQ(morvane({"goblins", psd}).status, 0) << "the texture has its goblins";
    EXPECT_EQ(morvane({"run", "named.ma", "-o", text + ".ma"}).status, 0);
    EXPECT_TRUE(exists(text + ".ma"));
    shell(
        "rm -f out.ma named.ma && find . -type f ! -name a.psd ! -name scene.ma ! -name bare.ma "
        "-delete");
    EXPECT_EQ(names(), (std::vector<std::string>{"a.psd", "bare.ma", "scene.ma"}));
  }
}

// A pipe that nobody writes to, a device without an end, a folder, and a file that says that it is
// empty and waits.
TEST_F(HostileInput, WhatIsNoFileIsRefused) {
  shell(
      "for e in psd tga ma mel; do mkfifo pipe.$e; mkdir folder.$e; ln -s /dev/zero zero.$e; "
      "ln -s /proc/kmsg waits.$e; done");
  for (const char* const name : {"pipe", "folder", "zero", "waits"}) {
    const std::string kind = name;
    for (const std::string& image : {kind + ".psd", kind + ".tga"}) {
      refuses("info " + image);
      refuses("goblins " + image);
      refuses("import bare.ma tile1 " + image + " -o out.ma");
      write("tile.ma", sceneOfTiles({image}));
      refuses("export tile.ma");
    }
    refuses("export " + kind + ".ma");
    refuses("run " + kind + ".ma -c 'print 1'");
    if (kind != "waits") refuses("run -f " + kind + ".mel");
    if (kind != "waits") refuses("run scene.ma -o " + kind + ".ma");
    if (kind != "waits") refuses("export scene.ma tile1 --to " + kind + ".psd");
    write("tile.ma",
          "//Maya ASCII 2018 scene\nfile -r -dr 1 -typ \"mayaAscii\" \"" + kind + ".ma\";\n");
    const Outcome refers = shell("timeout 20 $morvane run tile.ma");
    EXPECT_EQ(refers.status, 0) << refers.err;
    EXPECT_NE(refers.err.find(kind + ".ma"), std::string::npos) << refers.err;
  }
  EXPECT_NE(shell("timeout 20 $morvane run -f waits.mel").status, 124);
}

// An export changes the textures that the scene names, wherever they are, and those only when they
// are images.
TEST_F(HostileInput, AnExportChangesOnlyImages) {
  write("notes.txt", "8BPS");
  write("fake.psd", "#!/bin/sh\n");
  write("outside.psd", psdBytes(32, 32));
  shell(
      "mkdir scenes && ln -s ../notes.txt scenes/link.psd && ln -s ../outside.psd scenes/good.psd");
  write("scenes/tiles.ma", sceneOfTiles({"../notes.txt", "link.psd", "../fake.psd", "/etc/passwd",
                                         "good.psd", path("a.psd")}));
  const Outcome outcome = morvane({"export", "scenes/tiles.ma"});
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(read("notes.txt"), "8BPS");
  EXPECT_EQ(read("fake.psd"), "#!/bin/sh\n");
  EXPECT_EQ(names("scenes"), (std::vector<std::string>{"good.psd", "link.psd", "tiles.ma"}));
  EXPECT_EQ(
      shell("test -L scenes/good.psd && $morvane goblins outside.psd && $morvane goblins a.psd")
          .status,
      0);
}

TEST_F(HostileInput, NamesFromFilesCannotControlTheTerminal) {
  const std::string hostile =
      "\x1B[2J\xC2\x9B"
      "31m\x07\x7F\xE2\x80\xAEgone";
  std::string scene = sceneOfTiles({"a.psd"});
  const std::string name = "-type \"string\" \"pebble";
  scene.insert(scene.find(name) + name.size(), hostile);
  write("evil.ma", scene + hostile + " \"x\";\nsetAttr \"" + hostile + "\" 1;\nfile -r -dr 1 \"" +
                       hostile + "\";\n");
  // An image resource of that name: 30 bytes.
  const std::string resource = "8BIM\x04\x09\x12" + hostile + std::string(5, '\0');
  write("b.psd", psdBytes(32, 32).replace(30, 4, std::string("\0\0\0\x1E", 4) + resource));
  write("textures.ma", sceneOfTiles({"\xE2\x80\xAEgone.psd",
                                     "\x9B\x33"
                                     "1m.psd"}));
  const Outcome outcome = shell(
      "$morvane export evil.ma tile1 --to out.psd >/dev/null; $morvane goblins out.psd; "
      "$morvane goblins --json out.psd; $morvane info --json b.psd; $morvane info b.psd; $morvane "
      "-\x1B[2J; $morvane export --json textures.ma; $morvane info textures.ma");
  EXPECT_NE(outcome.out.find("pebble\\x1B[2J\\x9B31m\\x07\\x7F\\u{202E}gone"), std::string::npos)
      << outcome.out;
  EXPECT_NE(outcome.out.find("resource 1033 \\x1B[2J\\x9B31m"), std::string::npos) << outcome.out;
  EXPECT_NE(outcome.out.find("\\u001b[2J\\u009b31m"), std::string::npos) << outcome.out;
  const std::string shown = outcome.out + outcome.err;
  EXPECT_EQ(shown.find('\x9B'), std::string::npos);
  EXPECT_EQ(shown.find("\xE2\x80\xAE"), std::string::npos);
  EXPECT_TRUE(std::all_of(shown.begin(), shown.end(), [](unsigned char c) {
    return c == '\n' || (c >= 0x20 && c != 0x7F);
  })) << shown;
}

}  // namespace
