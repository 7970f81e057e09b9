#include <algorithm>
#include <filesystem>
#include <functional>
#include <iterator>
#include <map>
#include <nlohmann/json.hpp>
#include <sstream>

#include "psd/PsdDocument.h"
#include "tests/end_to_end/Program.h"
#include "tests/util/Corpus.h"

namespace {

namespace fs = std::filesystem;
using Json = nlohmann::json;

// What `info` says of tiles before an export, and the records of the export.
class Forecast : public ProgramTest {
 protected:
  using Statements = std::map<std::string, Json>;  // by scene and tile: [error, status, warnings]

  static Json statement(const Json& tile) {
    return {tile["error"], tile["status"], tile["warnings"]};
  }

  static std::vector<Json> linesOf(const std::string& out) {
    std::vector<Json> lines;
    std::istringstream stream(out);
    for (std::string line; std::getline(stream, line);) lines.push_back(Json::parse(line));
    return lines;
  }

  // Of all scenes in these folders or files.
  Outcome outcomeOf(const std::string& command, const std::string& places) {
    return shell("find " + places + " -name '*.ma' -print0 | sort -z | xargs -0 $morvane " +
                 command + " --json");
  }

  Statements foretold(const std::string& places) {
    Statements all;
    for (const Json& scene : linesOf(outcomeOf("info", places).out))
      for (const Json& tile : scene["tiles"])
        all[scene["file"].get<std::string>() + tile["tile"].get<std::string>()] = statement(tile);
    return all;
  }

  Statements exported(const std::string& places, std::string* told = nullptr) {
    Statements all;
    const Outcome outcome = outcomeOf("export", places);
    if (told != nullptr) *told = outcome.err;
    for (const Json& record : linesOf(outcome.out)) {
      if (!record["tile"].is_null()) {
        all[record["scene"].get<std::string>() + record["tile"].get<std::string>()] =
            statement(record);
      }
    }
    return all;
  }
};

std::string tileNamed(const char* base, std::size_t number) {
  return base + std::to_string(number);
}

void replace(std::string& text, const std::string& from, const std::string& to) {
  const std::size_t at = text.find(from);
  ASSERT_NE(at, std::string::npos) << from;
  text.replace(at, from.size(), to);
}

struct Case {
  std::string texture;
  std::string error;  // how it begins; empty: the tile is exported
  std::function<void(std::string& scene, const std::string& number)> breaks{};
};

// Takes away what the file stores of a mesh's shape.
auto pointless(const std::string& mesh) {
  return [=](std::string& scene, const std::string& n) {
    const std::size_t node = scene.find("createNode mesh -n \"" + mesh + n + '"');
    const std::size_t at = scene.find("\tsetAttr", node);
    scene.erase(at, scene.find("createNode", at) - at);
  };
}

// The same, and connects a node that would make it.
auto madeBy(const std::string& mesh, const std::string& type) {
  return [=](std::string& scene, const std::string& n) {
    pointless(mesh)(scene, n);
    scene += "createNode " + type + " -n \"" + type + n + "\";\nconnectAttr \"" + type + n +
             ".out\" \"" + mesh + n + ".i\";\n";
  };
}

// Puts statements after the one that makes a node.
auto set(const std::string& creation, const std::string& statements) {
  return [=](std::string& scene, const std::string& n) {
    const std::string made = "createNode " + creation + n + '"';
    const std::size_t at = scene.find('\n', scene.find(made)) + 1;
    scene.insert(at, statements);
  };
}

// Ends the scene with a reference, an edit of it, and a statement, in which # is the tile's number.
auto refersTo(const std::string& file, const std::string& edit, const std::string& statement = "") {
  return [=](std::string& scene, const std::string& n) {
    std::string text = "file -r -ns \"r#\" -dr 1 -rfn \"r#RN\" \"" + file +
                       "\";\ncreateNode reference -n \"r#RN\";\n\tsetAttr \".ed\" -type "
                       "\"dataReferenceEdits\" \"r#RN\" \"r#RN\" 1 " +
                       edit + ";\n" + statement;
    for (std::size_t at = text.find('#'); at != text.npos; at = text.find('#', at))
      text.replace(at, 1, n);
    scene += text;
  };
}

// Takes a connection out of a scene before something else is done.
template <typename Next>
auto without(const std::string& source, const std::string& destination, Next next) {
  return [=](std::string& scene, const std::string& n) {
    const std::string ends[] = {source, destination};
    std::string numbered[2];
    for (int i = 0; i < 2; ++i) {
      numbered[i] = ends[i];
      numbered[i].replace(numbered[i].find('#'), 1, n);
    }
    replace(scene, "connectAttr \"" + numbered[0] + "\" \"" + numbered[1] + '"',
            "select -ne :time1");
    next(scene, n);
  };
}

const std::vector<Case>& cases() {
  const std::string none;
  static const std::vector<Case> kCases = {
      {"sound.psd", none},
      {"image.tga", none},
      {"joint.psd", "transform weirdness on goblin",
       [](std::string& scene, const std::string& n) {
         replace(scene, "createNode transform -n \"pebble" + n, "createNode joint -n \"pebble" + n);
       }},
      {"materials.psd", "Must have only one material",
       [](std::string& scene, const std::string& n) {
         scene +=
             "createNode lambert -n \"extra\";\ncreateNode shadingEngine -n \"extraSG\";\n"
             "connectAttr \"extra.oc\" \"extraSG.ss\";\n"
             "connectAttr \"tileShape" +
             n + ".iog\" \"extraSG.dsm\" -na;\n";
       }},
      {"standard.psd", none,
       [](std::string& scene, const std::string& n) {
         replace(scene, "lambert -n \"ground" + n, "standardSurface -n \"ground" + n);
         replace(scene, "ground" + n + ".c\"", "ground" + n + ".bc\"");
       }},
      {"gone.psd", "couldn't load psd: gone.psd: No such file"},
      {none, "couldn't load psd: |tile7: its file texture names no file"},
      {"photo.jpg", "couldn't load psd: photo.jpg: "},
      {"gone_photo.jpg", "couldn't load psd: gone_photo.jpg: "},
      {"cut.psd", "couldn't load psd: cut.psd: "},
      {"other.psd", "couldn't add goblin layer: other.psd: not a PSD file"},
      {"tiny.psd", "goblin geometry exceeds layer size"},
      {"shared.psd", "its goblins were replaced by those of |tile14"},
      {"./shared.psd", none, set("transform -n \"pebble", "\tsetAttr \".t\" 0.5 0 0;\n")},
      {"same.psd", none},
      {"same.psd", none},
      {"claim.psd", none},
      {"claim.tga", "claim.tga would be written as "},
      {"bare.psd", none, set("mesh -n \"pebbleShape", "\tsetAttr \".io\" yes;\n")},
      {"flat.psd", "tile has no extent in x or z",
       set("mesh -n \"tileShape",
           "\tsetAttr -s 4 \".pt[0:3]\" -type \"float3\" 0 0 -4 0 0 -4 0 0 4 0 0 4;\n")},
      {"nan.psd", "|tile21|pebble21|pebbleShape21: vertex 1 is not finite",
       set("mesh -n \"pebbleShape", "\tsetAttr \".pt[1]\" -type \"float3\" nan 0 0;\n")},
      {"history.psd",
       "|tile22|pebble22|pebbleShape22 is made by polyBevel322 (polyBevel3), which is not "
       "evaluated",
       madeBy("pebbleShape", "polyBevel3")},
      {"ground.psd",
       "|tile23|tileShape23 is made by polyBevel323 (polyBevel3), which is not evaluated",
       madeBy("tileShape", "polyBevel3")},
      {"moved.psd", "|tile24|pebble24 is driven by move (expression), which is not evaluated",
       [](std::string& scene, const std::string& n) {
         scene += "createNode expression -n \"move\";\nconnectAttr \"move.out[0]\" \"pebble" + n +
                  ".tx\";\n";
       }},
      {"follows.psd", none,
       [](std::string& scene, const std::string& n) {
         scene +=
             "createNode transform -n \"leader\";\n\tsetAttr \".tx\" 1;\nconnectAttr \"leader.tx\" "
             "\"pebble" +
             n + ".tx\";\n";
       }},
      {"tweaked.psd", "|tile26|tileShape26 is driven by wave (expression), which is not evaluated",
       [](std::string& scene, const std::string& n) {
         scene += "createNode expression -n \"wave\";\nconnectAttr \"wave.out[0]\" \"tileShape" +
                  n + ".pt[0].py\";\n";
       }},
      {"named.psd", "its texture picture27 is driven by season (calendar)",
       [](std::string& scene, const std::string& n) {
         scene += "createNode calendar -n \"season\";\nconnectAttr \"season.out[0]\" \"picture" +
                  n + ".ftn\";\n";
       }},
      {"parented.psd", "|tile28 needs the referenced file gone.ma (r28RN), which was not found",
       refersTo("gone.ma", R"(0 "|r#:rock" "|tile#" "-s -r ")")},
      {"placed.psd", "|tile29|pebble29 needs the referenced file gone.ma (r29RN), which was not",
       refersTo("gone.ma", "", "connectAttr \"r#RN.phl[1]\" \"pebble#.tx\";\n")},
      {"shaded.psd", "|tile30|tileShape30 needs the referenced file gone.ma (r30RN), which was not",
       without("tileShape#.iog", "group#.dsm",
               refersTo("gone.ma", "", "connectAttr \"tileShape#.iog\" \"r#RN.phl[1]\";\n"))},
      {"coloured.psd", "|tile31|tileShape31 needs the referenced file gone.ma (r31RN), which was",
       without("picture#.oc", "ground#.c",
               refersTo("gone.ma", "", "connectAttr \"r#RN.phl[1]\" \"ground#.c\";\n"))},
      {"edited.psd", "|tile32 has an edit of r32RN that was not applied: ",
       refersTo("rock.ma", R"(2 "|tile#|r#:gone" "translate" " -type \"double3\" 1 2 3")")},
      {"beside.psd", none, refersTo("gone.ma", R"(0 "|r#:rock" "" "-s -r ")")},
      {"packed.tga", "couldn't load psd: packed.tga: TGA of image type 10, run-length true-colour"},
      {"turned.tga", none},
      {"painted.tga", "couldn't save psd: cannot write painted.psd: somebody's picture"},
      {"bottom.psd",
       "couldn't add goblin layer: bottom.psd: its bottom layer is named GoblinGeometry"},
      {"empty.psd", "tile has no extent in x or z", pointless("tileShape")},
      {"blown.psd", "|tile39|heap39 is driven by gust (expression), which is not evaluated",
       [](std::string& scene, const std::string& n) {
         const std::string pebble = "createNode transform -n \"pebble" + n + "\" -p \"";
         replace(scene, pebble + "tile" + n + '"',
                 "createNode transform -n \"heap" + n + "\" -p \"tile" + n + "\";\n" + pebble +
                     "heap" + n + '"');
         scene += "createNode expression -n \"gust\";\nconnectAttr \"gust.out[0]\" \"heap" + n +
                  ".tx\";\n";
       }},
      {"far.psd", none, set("transform -n \"pebble", "\tsetAttr \".t\" 4 0 0;\n")},
  };
  return kCases;
}

TEST_F(Forecast, SaysOfBrokenTilesWhatAnExportDoes) {
  std::vector<std::string> textures;
  for (const Case& c : cases()) {
    textures.push_back(c.texture);
    if (!c.texture.empty() && c.texture.find("gone") == std::string::npos) {
      const bool isTga = c.texture.find(".tga") != std::string::npos;
      write(c.texture, isTga ? tgaBytes(32, 32) : psdBytes(32, 32));
    }
  }
  write("photo.jpg", "\xFF\xD8\xFF\xE0 and so on");
  write("cut.psd", psdBytes(32, 32).substr(0, 30));
  write("other.psd", psdBytes(32, 32).replace(3, 1, "X"));
  write("tiny.psd", psdBytes(2, 2));
  write("packed.tga", tgaBytes(32, 32).replace(2, 1, "\x0A"));
  write("turned.tga", tgaBytes(32, 32).replace(17, 1, " "));  // from the top
  morvane::PsdDocument painted(32, 32);
  ASSERT_EQ(painted.addLayer("sky"), 1);
  ASSERT_TRUE(painted.save(path("painted.psd").c_str()));
  const char layer[] = "GoblinGeometry";
  painted.layers[0].name.reset(new char[sizeof layer]);
  std::copy(std::begin(layer), std::end(layer), painted.layers[0].name.get());
  for (auto* const length :
       {&painted.layers[0].extraLength, &painted.layerInfoLength, &painted.layerAndMaskLength}) {
    *length += 12;  // a name of 4 bytes in all has become one of 16
  }
  ASSERT_TRUE(painted.save(path("bottom.psd").c_str()));
  std::string scene = sceneOfTiles(textures);
  for (std::size_t i = 0; i < cases().size(); ++i)
    if (cases()[i].breaks) cases()[i].breaks(scene, std::to_string(i + 1));
  write("broken.ma", scene);
  write("rock.ma", "//Maya ASCII 2018 scene\ncreateNode transform -n \"rock\";\n");
  std::map<std::string, std::string> before;
  for (const std::string& name : names()) before[name] = read(name);
  const Statements said = foretold("broken.ma");
  for (const std::string& name : names()) EXPECT_TRUE(read(name) == before[name]) << name;
  std::string told;
  EXPECT_EQ(said, exported("broken.ma", &told));
  ASSERT_EQ(said.size(), cases().size());
  for (std::size_t i = 0; i < cases().size(); ++i) {
    const Case& c = cases()[i];
    const Json& tile = said.at(tileNamed("broken.ma|tile", i + 1));
    const std::string error = tile[0].is_null() ? "" : tile[0].get<std::string>();
    EXPECT_EQ(error.substr(0, c.error.size()), c.error) << c.texture;
    EXPECT_EQ(error.empty(), c.error.empty()) << c.texture << error;
    EXPECT_EQ(tile[1], c.error.empty() ? 0 : 1) << c.texture;
    EXPECT_EQ(tile[2].empty(), c.texture != "turned.tga" && c.texture != "far.psd") << tile[2];
    const bool isNamed = told.find(tileNamed("broken.ma: |tile", i + 1) + ": ") != told.npos;
    EXPECT_EQ(isNamed, !c.error.empty()) << c.texture;
    const bool isKept =
        !c.error.empty() && before.count(c.texture) != 0 && c.texture != "shared.psd";
    EXPECT_TRUE(!isKept || read(c.texture) == before[c.texture]) << c.texture;
  }
}

TEST_F(Forecast, SaysOfRealScenesWhatAnExportDoes) {
  fs::copy(fs::path(MORVANE_SOURCE_DIR) / "examples", path("examples"),
           fs::copy_options::recursive);
  std::string places = "examples";
  if (!morvane::corpusScenes().empty()) {
    fs::copy(morvane::corpusFolder() / "ma", path("ma"), fs::copy_options::recursive);
    places += " ma";
  }
  const Statements said = foretold(places);
  EXPECT_EQ(said, exported(places));
  EXPECT_EQ(said.at("examples/meadow/meadow.ma|pondTile")[1], 0);
  const std::string opened =
      shell("find " + places +
            " -name '*.ma' | while read -r f; do $morvane run \"$f\" -o out.ma "
            "&& echo sound || echo \"failed $f\"; done")
          .out;
  EXPECT_EQ(opened.find("failed"), std::string::npos) << opened;
  EXPECT_NE(opened.find("sound"), std::string::npos);
}

}  // namespace
