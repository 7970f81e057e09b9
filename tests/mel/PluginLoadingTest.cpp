#include <filesystem>
#include <fstream>

#include "tests/mel/Script.h"

namespace host::mel {
namespace {

class PluginLoading : public testing::Test {
 protected:
  static void SetUpTestSuite() { addPlugInFolder(MORVANE_PROBE_FOLDER); }
  void SetUp() override { newScene(); }
};

TEST_F(PluginLoading, CommandsGetTheirWordsAndGiveResults) {
  EXPECT_EQ(run("loadPlugin probe;"), "probe");
  EXPECT_EQ(run("loadPlugin probe;"), "probe");
  EXPECT_EQ(
      run("string $list[] = {\"p q\", \"-x\"}; probe -f 1.50 \"a b\" $list `ls persp` (1 + 1);"),
      "-f|1.50|a b|p q|-x|persp|2");
  EXPECT_EQ(run("size(`probe \"; createNode transform -n trace;\"`) * 10 + `objExists trace`;"),
            "320");
  EXPECT_EQ(run("probe fail;"), "failed: probe: the command failed");
  EXPECT_EQ(run("pluginInfo -q -vendor probe;"), "Probe");
  EXPECT_EQ(run("pluginInfo -q -c probe;"), "probe");
  EXPECT_EQ(run("proc probe() { }"), "failed: 'probe' is a command; a procedure cannot replace it");
  EXPECT_EQ(run("unloadPlugin probe; pluginInfo -q -loaded probe;"), "0");
  EXPECT_EQ(run("probe;"), "failed: unknown command 'probe'");
}

TEST_F(PluginLoading, TranslatorsAreChosenByTypeOrByContent) {
  const std::string folder = std::filesystem::temp_directory_path().generic_string();
  Interpreter::current().setCallerFolder(folder);
  const std::string path = folder + "/probe.bin";
  std::ofstream(path) << "PROB and more";
  run("loadPlugin probe;");
  EXPECT_EQ(run("file -import -options \"o=1\" \"probe.bin\";"), path);
  EXPECT_EQ(run("file -import -type \"probeFile\" -options \"o=1\" \"probe.bin\";"), path);
  EXPECT_EQ(run("file -import -type \"probeFile\" \"probe.bin\";"),
            "failed: file: the 'probeFile' translator could not read " + path +
                "; what it printed says why");
  EXPECT_EQ(run("select persp; file -exportSelected -type \"probeFile\" \"out.bin\";"),
            "failed: file: files of type 'probeFile' cannot be written");
  EXPECT_EQ(run("file -import -type \"other\" \"probe.bin\";"),
            "failed: file: unknown file type 'other'; load the plug-in that reads it");
  // What the plug-in leaves registered goes with it.
  run("unloadPlugin probe;");
  EXPECT_EQ(run("file -import \"probe.bin\";"),
            "failed: file: " + path +
                " is neither a Maya scene nor of a type that a loaded plug-in knows");
  std::filesystem::remove(path);
}

TEST_F(PluginLoading, AFailedStartLeavesWhatWasRegistered) {
  EXPECT_NE(run("loadPlugin probe_fails;").find("the start-up of"), std::string::npos);
  EXPECT_EQ(run("probeLeft 7;"), "7");
  EXPECT_EQ(run("select persp; ls -sl;"), "persp");
  EXPECT_NE(run("loadPlugin probe_fails;").find("failed before"), std::string::npos);
  EXPECT_NE(run("unloadPlugin probe_fails;").find("the removal of"), std::string::npos);
  EXPECT_EQ(run("probeLeft;"), "failed: unknown command 'probeLeft'");
}

TEST_F(PluginLoading, WhatIsNoPluginIsRefused) {
  const std::string probes = MORVANE_PROBE_FOLDER;
  std::ofstream(probes + "/gone") << "no plug-in";
  const std::string gone = run("loadPlugin gone;");
  EXPECT_EQ(gone.find("failed: loadPlugin: no plug-in named gone was found: gone."), 0u) << gone;
  EXPECT_NE(gone.find(" is missing in " + probes + ", "), gone.npos) << gone;
  std::filesystem::remove(probes + "/gone");
  EXPECT_NE(run("loadPlugin probe_lacks_removal;").find("does not export uninitializePlugin"),
            std::string::npos);
  EXPECT_EQ(run("probe;"), "failed: unknown command 'probe'");
  const std::string text = probes + "/text.so";
  std::ofstream(text) << "no library";
  EXPECT_NE(run("loadPlugin \"" + text + "\";").find("cannot load " + text), std::string::npos);
  std::filesystem::remove(text);
  EXPECT_EQ(run("unloadPlugin probe;"), "failed: unloadPlugin: no plug-in named probe is loaded");
}

}  // namespace
}  // namespace host::mel
