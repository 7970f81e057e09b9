#include <optional>

#include "host/state/SceneProject.h"
#include "tests/file/SceneText.h"
#include "tests/util/ScopedVariable.h"

namespace host {
namespace {

// A project with a scene two folders below it.
class Projects : public SceneFiles {
 protected:
  void SetUp() override {
    SceneFiles::SetUp();
    write("job/workspace.mel",
          "//Maya 2018 Project Definition\n\nworkspace -fr \"scene\" \"parts\";\n"
          "workspace -fr \"sourceImages\" \"maps\" -fr \"images\" \"pictures\";\n"
          "workspace -rt \"images\" \"elsewhere\";\nsourceimages(`getenv HOME`);\n"
          "setenv(\"images\");\nworkspace -o \"/\";\n");
    for (const char* const name :
         {"job/sourceimages/a.tga", "job/maps/bare.tga", "job/both.tga", "job/scenes/deep/both.tga",
          "job/scenes/deep/beside.tga", "art/v.tga", "other/sourceimages/a.tga"})
      write(name, "picture");
    art_.emplace("MORVANE_TEST_ART", pathOf("art").c_str());
  }
  void TearDown() override {
    art_.reset();
    HostState::current().project = SceneProject();
    SceneFiles::TearDown();
  }

  void write(const std::string& name, const std::string& text) const {
    fs::create_directories((folder_ / name).parent_path());
    writeText(name, text);
  }
  // A scene in job/scenes/deep; gives the warnings.
  std::string openDeep(const std::string& statements) const {
    write("job/scenes/deep/level.ma", "//Maya ASCII 2018 scene\n" + statements);
    return openPath(pathOf("job/scenes/deep/level.ma"));
  }

  std::optional<morvane::ScopedVariable> art_;
};

std::string texture(const std::string& node, const std::string& name) {
  return "createNode file -n \"" + node + "\";\n\tsetAttr \".ftn\" -type \"string\" \"" + name +
         "\";\n";
}

TEST_F(Projects, TexturesAreFoundAndKeepTheirNamesInTheFile) {
  const struct {
    std::string name;
    std::string here;  // empty: the same
  } kCases[] = {
      {"sourceimages/a.tga", pathOf("job/sourceimages/a.tga")},
      {"P:/old//sourceimages/a.tga", pathOf("job/sourceimages/a.tga")},
      {"/gone//sourceimages//a.tga", pathOf("job/sourceimages/a.tga")},
      {"bare.tga", pathOf("job/maps/bare.tga")},
      {"beside.tga", ""},
      {"both.tga", pathOf("job/both.tga")},
      {"$MORVANE_TEST_ART/v.tga", pathOf("art/v.tga")},
      {"${MORVANE_TEST_ART}/v.tga", pathOf("art/v.tga")},
      {"$MORVANE_TEST_UNSET/v.tga", ""},
      {"${MORVANE_TEST_ART/v.tga", ""},
      {"sourceimages/none.tga", ""},
      {pathOf("art/v.tga"), ""},
      {"//server/art/a.tga", ""},
  };
  std::string statements;
  for (const auto& c : kCases) statements += texture("t#", c.name);
  EXPECT_EQ(openDeep(statements), "");
  int number = 0;
  ASSERT_TRUE(save("job/scenes/again.ma"));
  const std::string saved = readAll(pathOf("job/scenes/again.ma"));
  for (const auto& c : kCases) {
    EXPECT_EQ(run("getAttr t" + std::to_string(++number) + ".ftn;"),
              c.here.empty() ? c.name : c.here);
    EXPECT_NE(saved.find("-type \"string\" \"" + c.name + "\""), saved.npos) << c.name;
  }
  run("setAttr -type \"string\" t1.ftn \"new.tga\";");
  ASSERT_TRUE(save("job/scenes/again.ma"));
  EXPECT_NE(readAll(pathOf("job/scenes/again.ma")).find("\"new.tga\""), saved.npos);
}

TEST_F(Projects, EveryPlaceIsToldInOrder) {
  openDeep("");
  const std::string deep = pathOf("job/scenes/deep");
  EXPECT_EQ(searchOfTexture("x/none.tga").places,
            (std::vector<std::string>{pathOf("job/x/none.tga"), deep + "/x/none.tga",
                                      pathOf("job/maps/x/none.tga")}));
  EXPECT_EQ(searchOfTexture("/gone//x/none.tga").places,
            (std::vector<std::string>{pathOf("job/x/none.tga"), "/gone//x/none.tga"}));
  const FileSearch found = searchOfTexture("beside.tga");
  EXPECT_TRUE(found.found);
  EXPECT_EQ(found.places,
            (std::vector<std::string>{pathOf("job/beside.tga"), deep + "/beside.tga"}));
}

TEST_F(Projects, ReferencesAreFound) {
  const std::string part = "//Maya ASCII 2018 scene\ncreateNode transform -n \"";
  write("job/parts/ruled.ma", part + "ruled\";\n");
  write("job/sets/named.ma", part + "named\";\n");
  EXPECT_EQ(
      openDeep("file -r -ns \"a\" \"ruled.ma\";\nfile -r -ns \"b\" \"P:/old//sets/named.ma\";\n"
               "file -r -ns \"c\" \"sets/named.ma{1}\";\n"),
      "");
  EXPECT_EQ(run("ls -type transform \"*:*\";"), "a:ruled b:named c:named");
}

TEST_F(Projects, AnotherOneCanBeGiven) {
  HostState::current().project.give(pathOf("other"));
  openDeep(texture("t", "sourceimages/a.tga"));
  EXPECT_EQ(run("getAttr t.ftn;"), pathOf("other/sourceimages/a.tga"));
  EXPECT_EQ(run("workspace -q -rd;"), pathOf("other/"));
}

TEST_F(Projects, ScriptsAskForIt) {
  openDeep("workspace -o \"/\";\n");
  const struct {
    const char* script;
    std::string value;
  } kCases[] = {
      {"workspace -q -rd;", pathOf("job/")},
      {"workspace -q -fullName;", pathOf("job")},
      {"workspace -q -shortName;", "job"},
      {"workspace -fileRuleEntry \"sourceImages\";", "maps"},
      {"workspace -q -fre \"none\";", ""},
      {"workspace -q -frl;", "images scene sourceImages"},
      {"workspace -q -fr;", "images pictures scene parts sourceImages maps"},
      {"workspace -en \"maps/x.tga\";", pathOf("job/maps/x.tga")},
      {"workspace -fr \"shaders\" \"glsl\"; workspace -fre \"shaders\";", "glsl"},
      {"workspace -o \"other\"; workspace -q -rd;", pathOf("other/")},
  };
  for (const auto& c : kCases) EXPECT_EQ(run(c.script), c.value) << c.script;
}

TEST_F(Projects, RulesThatCannotBeReadAreToldOf) {
  for (const std::string& text : {std::string("workspace -fr \"sourceImages\" (;\n"),
                                  std::string(5000, '('), std::string(std::size_t{2} << 20, '/')}) {
    write("job/workspace.mel", text);
    const std::string warnings = openDeep(texture("t", "sourceimages/a.tga"));
    EXPECT_NE(warnings.find(pathOf("job/workspace.mel")), warnings.npos) << warnings;
    EXPECT_EQ(run("getAttr t.ftn;"), pathOf("job/sourceimages/a.tga"));
  }
}

}  // namespace
}  // namespace host
