// Scenes that were changed a word or a statement at a time: what opens without damage saves as a
// scene that opens without damage and without a warning that is new, and saves as itself.

#include <algorithm>
#include <cstdlib>
#include <set>
#include <sstream>

#include "fuzz/Mutator.h"
#include "tests/file/SceneText.h"

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size,
                                               std::size_t room, unsigned seed);

// In place of libFuzzer's: one byte becomes another.
extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t) {
  static std::mt19937 random(3);
  if (size != 0) data[random() % size] = static_cast<std::uint8_t>(random());
  return size;
}

namespace host {
namespace {

// Nodes of a scene with nothing that leads to others, which are not in the same piece.
std::string alone(const std::string& scene) {
  std::istringstream lines(scene);
  std::string kept;
  for (std::string line; std::getline(lines, line);) {
    if (line.compare(0, 11, "createNode ") == 0)
      line = line.substr(0, std::min(line.find(" -p "), line.size() - 1)) + ";";
    if (line.compare(0, 11, "createNode ") == 0 || line[0] == '\t') kept += line + "\n";
  }
  return kept;
}

class Reopened : public SceneFiles {
 protected:
  // Pieces of whole statements, short enough that a change falls on every kind of them.
  std::vector<std::string> pieces() const {
    const fs::path root = MORVANE_SOURCE_DIR;
    std::vector<std::string> found = {
        readAll(root / "examples/garden/scenes/garden.ma"),
        "createNode transform -n \"particleShape\";\ncreateNode transform -n \"x:particleShape\";\n"
        "addAttr -ln \"goblinName\" -dt \"string\";\n\tsetAttr \".goblinName\" -type \"string\" "
        "\"a \\\"b\\\" \\\\ c\";\n"};
    const std::string meadow = readAll(root / "examples/meadow/meadow.ma");
    for (std::size_t from = 0; from < meadow.size();) {
      const std::size_t end = std::min(meadow.size(), meadow.find("createNode ", from + 4000));
      if (end - from < 20000) found.push_back(alone(meadow.substr(from, end - from)));
      from = end;
    }
    return found;
  }

  static std::string mutated(const std::string& piece, unsigned seed) {
    std::string text = piece;
    text.resize(piece.size() + 1000);
    auto* const bytes = reinterpret_cast<std::uint8_t*>(text.data());
    text.resize(LLVMFuzzerCustomMutator(bytes, piece.size(), text.size(), seed));
    return text;
  }

  // Opens, and gives what was noticed without the places; `damages` grows by what was damaged.
  std::set<std::string> notices(const std::string& path, std::size_t& damages) const {
    std::set<std::string> texts;
    openPath(path);
    damages += HostState::current().problems.damages;
    for (const SceneProblem& problem : HostState::current().problems.list)
      texts.insert(problem.text);
    return texts;
  }

  // False when the scene is damaged.
  bool check(const std::string& scene) {
    writeText("scene.ma", "//Maya ASCII 2018 scene\n" + scene);
    std::size_t damages = 0;
    const auto before = notices(pathOf("scene.ma"), damages);
    if (damages != 0) return false;
    EXPECT_TRUE(save("first.ma"));
    const auto after = notices(pathOf("first.ma"), damages);
    EXPECT_EQ(damages, 0u);
    for (const std::string& text : after) EXPECT_EQ(before.count(text), 1u) << text;
    EXPECT_TRUE(save("second.ma"));
    EXPECT_EQ(readAll(pathOf("second.ma")), readAll(pathOf("first.ma")));
    return true;
  }
};

// MORVANE_SCENES in the environment says how many.
TEST_F(Reopened, ChangedScenesStayTheSame) {
  const char* const asked = std::getenv("MORVANE_SCENES");
  const unsigned count = asked != nullptr ? static_cast<unsigned>(std::atoi(asked)) : 100;
  const auto found = pieces();
  unsigned sound = 0;
  for (unsigned i = 0; i < count && !HasFailure(); ++i) {
    const std::string scene = mutated(found[i % found.size()], i);
    SCOPED_TRACE("scene " + std::to_string(i));
    sound += check(scene) ? 1 : 0;
    if (HasFailure()) std::printf("%s", scene.c_str());
  }
  EXPECT_GT(sound, count / 5);
  std::printf("figures: %u changed scenes, %u without damage\n", count, sound);
}

}  // namespace
}  // namespace host
