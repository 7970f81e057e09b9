#include <algorithm>
#include <map>
#include <regex>

#include "host/scene/MeshData.h"
#include "host/scene/Node.h"
#include "tests/file/SceneText.h"

namespace host {
namespace {

std::vector<fs::path> corpusScenes() {
  std::vector<fs::path> scenes;
  const fs::path folder = corpusFolder() / "ma";
  std::error_code error;
  for (const auto& entry : fs::recursive_directory_iterator(folder, error)) {
    if (entry.path().extension() == ".ma") {
      scenes.push_back(entry.path());
    }
  }
  std::sort(scenes.begin(), scenes.end());
  return scenes;
}

struct Counts {
  long points = 0, edges = 0, faces = 0, uvs = 0;
  bool operator==(const Counts& o) const {
    return points == o.points && edges == o.edges && faces == o.faces && uvs == o.uvs;
  }
};

// What the ranges of the file's statements add up to, mesh by mesh, told by looking at its lines
// alone.
std::map<std::string, Counts> countedInText(const std::string& text) {
  static const std::regex kLine(
      R"re(^createNode (\w+)[^\n]* -n "([^"]+)"|^\tsetAttr [^\n"]*"\.(vt|ed|fc|uvst\[\d+\]\.uvsp)\[(\d+)(?::(\d+))?\]")re",
      std::regex::multiline);
  std::map<std::string, Counts> meshes;
  std::string current;
  for (std::sregex_iterator match(text.begin(), text.end(), kLine), end; match != end; ++match) {
    const std::smatch& m = *match;
    if (m[1].matched) {
      current = m[1] == "mesh" ? m[2].str() : "";
      continue;
    }
    if (current.empty()) {
      continue;
    }
    const long count = m[5].matched ? std::stol(m[5]) - std::stol(m[4]) + 1 : 1;
    Counts& counts = meshes[current];
    (m[3] == "vt"   ? counts.points
     : m[3] == "ed" ? counts.edges
     : m[3] == "fc" ? counts.faces
                    : counts.uvs) += count;
  }
  return meshes;
}

Counts countedInScene(const MeshData& mesh) {
  Counts counts;
  counts.points = mesh.pointCount();
  counts.edges = static_cast<long>(mesh.edges().size());
  counts.faces = mesh.faceCount();
  for (const MeshUvSet& set : mesh.uvSets()) {
    counts.uvs += static_cast<long>(set.uvs.size());
  }
  return counts;
}

class CorpusScenes : public SceneFiles {};

TEST_F(CorpusScenes, HoldWhatTheirTextSays) {
  const std::vector<fs::path> scenes = corpusScenes();
  if (scenes.empty()) {
    GTEST_SKIP() << "no corpus";
  }
  int meshes = 0;
  for (const fs::path& path : scenes) {
    EXPECT_EQ(openPath(path.string()).find("failed"), std::string::npos) << path;
    for (const auto& [name, counts] : countedInText(readAll(path))) {
      if (counts.faces == 0) {
        continue;
      }
      const std::vector<NodePtr> named = Scene::current().nodesNamed(name);
      const bool any =
          std::any_of(named.begin(), named.end(), [&, expected = counts](const NodePtr& each) {
            return each->mesh != nullptr && countedInScene(*each->mesh) == expected;
          });
      EXPECT_TRUE(any) << path << " " << name;
      ++meshes;
    }
  }
  EXPECT_GT(meshes, 10);
}

TEST_F(CorpusScenes, StayTheSameThroughSavingAndOpening) {
  const std::vector<fs::path> scenes = corpusScenes();
  if (scenes.empty()) {
    GTEST_SKIP() << "no corpus";
  }
  for (const fs::path& path : scenes) {
    openPath(path.string());
    const std::string names = run("ls -l");
    const std::string connections =
        run("string $all[]; for ($n in `ls -l`) appendStringArray($all, `listConnections -c 1 -p 1 "
            "$n`); sort($all);");
    std::string error;
    ASSERT_TRUE(writeScene(pathOf("first.ma"), error)) << error;
    EXPECT_EQ(openPath(pathOf("first.ma")).find("failed"), std::string::npos);
    ASSERT_TRUE(writeScene(pathOf("second.ma"), error)) << error;
    EXPECT_TRUE(readAll(pathOf("first.ma")) == readAll(pathOf("second.ma"))) << path;
    EXPECT_EQ(run("sort(`ls -l`)"), [&] {
      openPath(path.string());
      return run("sort(`ls -l`)");
    }()) << path;
    EXPECT_FALSE(names.empty());
    EXPECT_FALSE(connections.empty());
  }
}

}  // namespace
}  // namespace host
