#include "host/state/DirectoryMap.h"

#include "host/scene/Values.h"
#include "tests/file/SceneText.h"

namespace host {
namespace {

class DirectoryMaps : public SceneFiles {
 protected:
  void TearDown() override {
    HostState::current().folders = DirectoryMap();
    SceneFiles::TearDown();
  }
};

TEST_F(DirectoryMaps, TheLongestFolderThatHoldsTheNameIsReplaced) {
  run("dirmap -en on; dirmap -m \"P:\\\\art\\\\\" \"/mnt/art\"; dirmap -m \"/old\" \"/new\"; "
      "dirmap -m \"/old//rocks\" \"/stone/\"; dirmap -m \"//server\" \"/\";");
  const struct {
    const char* name;
    const char* here;
  } cases[] = {
      {"P:/art/a.psd", "/mnt/art/a.psd"},
      {"P:\\\\art\\\\b\\\\a.psd", "/mnt/art/b/a.psd"},
      {"P:/art", "/mnt/art"},
      {"P:/artist/a.psd", "P:/artist/a.psd"},
      {"p:/art/a.psd", "/mnt/art/a.psd"},
      {"P:/Art/a.psd", "P:/Art/a.psd"},
      {"/old/a.psd", "/new/a.psd"},
      {"/old/rocks/a.psd", "/stone/a.psd"},
      {"/old//rocks///a.psd", "/stone/a.psd"},
      {"/x/old/a.psd", "/x/old/a.psd"},
      {"old/a.psd", "old/a.psd"},
      {"//server/tex/a.psd", "/tex/a.psd"},
      {"", ""},
  };
  for (const auto& c : cases)
    EXPECT_EQ(run(std::string("dirmap -cd \"") + c.name + "\";"), c.here) << c.name;
  EXPECT_EQ(run("dirmap -gmd \"/old/\";"), "/new");
  EXPECT_EQ(run("dirmap -um \"/old\"; size(`dirmap -gam`);"), "6");
  EXPECT_EQ(run("dirmap -en off; dirmap -cd \"P:/art/a.psd\";"), "P:/art/a.psd");
  EXPECT_EQ(run("dirmap -m \"\" \"/new\";").substr(0, 7), "failed:");
}

TEST_F(DirectoryMaps, TexturesAndReferencesOfAnOpenedSceneAreFoundHere) {
  fs::create_directories(folder_ / "parts");
  writeText("parts/part.ma", "//Maya ASCII 4.0 scene\ncreateNode transform -n \"inPart\";\n");
  writeText(
      "scene.ma",
      "//Maya ASCII 4.0 scene\nfile -r -ns \"p\" \"D:/job/parts/part.ma\";\n"
      "dirmap -m \"D:/job\" \"/etc\";\n"
      "createNode file -n \"moved\";\nsetAttr \".ftn\" -type \"string\" \"D:/job/t.psd\";\n"
      "createNode file -n \"other\";\nsetAttr \".ftn\" -type \"string\" \"D:/jobs/t.psd\";\n");
  run("dirmap -en on; dirmap -m \"D:/job\" \"" + folder_.generic_string() + "\";");
  EXPECT_EQ(run("file -o -f \"scene.ma\"; getAttr moved.ftn;"), pathOf("t.psd"));
  EXPECT_EQ(run("getAttr other.ftn;"), "D:/jobs/t.psd");
  EXPECT_EQ(run("objExists \"p:inPart\";"), "1");
}

}  // namespace
}  // namespace host
