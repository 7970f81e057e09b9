#include "tools/scene/SceneDamage.h"

#include "tools/terminal/Text.h"
#include "util/Path.h"

namespace tools {
namespace {

using End = host::SceneProblems::End;

constexpr std::size_t kMostNamed = 3;
constexpr const char* kNoEnd = "it lacks the line // End of, with which Maya ends one";
constexpr const char* kAdvice = "fetch the scene again, or open it in Maya and save it again";
constexpr const char* kEndAdvice =
    "fetch the scene again or, where nothing is missing, add the line // End of at its end";

bool isDamage(const host::SceneProblem& problem) {
  return problem.kind == host::SceneProblem::Kind::kDamage;
}

std::string placeOf(const host::SceneProblem& problem) {
  if (problem.line == 0) return printable(problem.text);
  return printable(morvane::nameOf(morvane::pathOf(problem.file).filename())) + ':' +
         std::to_string(problem.line);
}

const char* adviceFor(const host::SceneProblems& problems) {
  return problems.end == End::kDoubtful && problems.damages == 1 ? kEndAdvice : kAdvice;
}

}  // namespace

std::string damageOf(const host::SceneProblems& problems) {
  if (problems.damages == 0) return "";
  std::string text = problems.end == End::kCut        ? "the scene is cut off; "
                     : problems.end == End::kDoubtful ? "the scene looks cut off; "
                                                      : "";
  text += problems.damages == 1
              ? "1 place of the scene is damaged"
              : std::to_string(problems.damages) + " places of the scene are damaged";
  std::size_t named = 0;
  for (const host::SceneProblem& problem : problems.list) {
    if (!isDamage(problem) || named == kMostNamed) continue;
    text += (named++ == 0 ? ": " : ", ") + placeOf(problem);
  }
  return text + (problems.damages > named ? ", ..." : "");
}

std::string likelyLoss(const host::SceneProblems& problems) {
  if (problems.damages > 0) return "; " + damageOf(problems) + "; " + adviceFor(problems);
  if (problems.end == End::kWhole) return "";
  return std::string("; the scene looks cut off: ") + kNoEnd + "; " + kAdvice;
}

ExitStatus reportDamage(const std::string& scene, const host::SceneProblems& problems) {
  if (problems.damages == 0) return kDone;
  const std::string shown = scene.empty() ? "" : printable(scene) + ": ";
  complain(shown + damageOf(problems) + "; what stood there is missing, and the rest was done; " +
           adviceFor(problems));
  return kFailed;
}

void reportUnusedMaps() {
  reportUnusedMaps(host::unusedFolders());
}

void reportUnusedMaps(const std::vector<std::string>& folders) {
  for (const std::string& folder : folders) {
    complain("--map " + printable(folder) +
             ": no texture and no reference lies in that folder; check how the scene writes it");
  }
}

}  // namespace tools
