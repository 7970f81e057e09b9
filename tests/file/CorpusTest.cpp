#include <algorithm>
#include <array>
#include <map>
#include <regex>
#include <set>
#include <utility>

#include "host/mesh/MeshData.h"
#include "host/scene/Node.h"
#include "tests/file/SceneText.h"

namespace host {
namespace {

using Counts = std::array<std::size_t, 4>;  // points, edges, faces, UVs

// What the ranges of the file's statements add up to, mesh by mesh, told by looking at its lines
// alone.
std::vector<std::pair<std::string, Counts>> countedInText(const std::string& text) {
  static const std::regex kLine(
      R"re(^createNode (\w+)[^\n]* -n "([^"]+)"|^\tsetAttr [^\n"]*"\.(vt|ed|fc|uvst\[\d+\]\.uvsp)\[(\d+)(?::(\d+))?\]")re",
      std::regex::multiline);
  std::vector<std::pair<std::string, Counts>> meshes;  // several may share a name
  bool inMesh = false;
  for (std::sregex_iterator match(text.begin(), text.end(), kLine), end; match != end; ++match) {
    const std::smatch& m = *match;
    if (m[1].matched) {
      inMesh = m[1] == "mesh";
      if (inMesh) meshes.push_back({m[2].str(), {}});
      continue;
    }
    if (!inMesh) continue;
    const std::size_t kind = m[3] == "vt" ? 0 : m[3] == "ed" ? 1 : m[3] == "fc" ? 2 : 3;
    meshes.back().second[kind] += m[5].matched ? std::stoul(m[5]) - std::stoul(m[4]) + 1 : 1;
  }
  return meshes;
}

bool holds(const NodePtr& node, const Counts& expected) {
  if (node->mesh == nullptr) return false;
  const MeshData& mesh = *node->mesh;
  std::size_t uvs = 0;
  for (const MeshUvSet& set : mesh.uvSets()) uvs += set.uvs.size();
  return expected == Counts{static_cast<std::size_t>(mesh.pointCount()), mesh.edges().size(),
                            static_cast<std::size_t>(mesh.faceCount()), uvs};
}

// How many statements of each kind a scene has that must come back one by one.
std::map<std::string, int> countedStatements(const std::string& text) {
  static const std::set<std::string> kKinds = {"createNode", "addAttr",  "relationship",
                                               "fileInfo",   "requires", "file",
                                               "rename",     "lockNode", "connectAttr"};
  std::map<std::string, int> counts;
  for (std::size_t at = 0; at < text.size(); at = text.find('\n', at), at += at < text.size()) {
    at += text[at] == '\t' ? 1 : 0;
    const std::string word = text.substr(at, std::min(text.find(' ', at) - at, std::size_t{20}));
    counts[word] += kKinds.count(word) != 0 ? 1 : 0;
  }
  return counts;
}

class CorpusScenes : public SceneFiles {};

TEST_F(CorpusScenes, HoldWhatTheirTextSaysAndStayTheSameThroughSaving) {
  const std::vector<fs::path> scenes = corpusScenes();
  if (scenes.empty()) GTEST_SKIP() << "no corpus";
  int meshes = 0;
  for (const fs::path& path : scenes) {
    const std::string warnings = openPath(path.string());
    EXPECT_EQ(warnings.find("failed"), std::string::npos) << path;
    EXPECT_EQ(HostState::current().problems.damages, 0u) << warnings;
    for (const auto& [name, counts] : countedInText(readAll(path))) {
      if (counts[2] == 0) continue;
      const std::vector<NodePtr> named = Scene::current().nodesNamed(name);
      EXPECT_TRUE(std::any_of(
          named.begin(), named.end(),
          [&, expected = counts](const NodePtr& each) { return holds(each, expected); }))
          << path << " " << name;
      ++meshes;
    }
    const std::string nodes = run("sort(`ls -l`)");
    std::string saved[2];
    for (std::string& bytes : saved) {
      ASSERT_TRUE(save("saved.ma"));
      bytes = readAll(pathOf("saved.ma"));
      EXPECT_EQ(openPath(pathOf("saved.ma")).find("failed"), std::string::npos);
      EXPECT_EQ(run("sort(`ls -l`)"), nodes) << path;
    }
    EXPECT_TRUE(saved[0] == saved[1]) << path;
    const std::map<std::string, int> kept = countedStatements(saved[0]);
    for (const auto& [kind, count] : countedStatements(readAll(path)))
      EXPECT_EQ(kept.count(kind) == 0 ? 0 : kept.at(kind), count) << kind << " in " << path;
  }
  EXPECT_GT(meshes, 10);
}

}  // namespace
}  // namespace host
