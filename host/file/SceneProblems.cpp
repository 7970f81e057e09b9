#include "host/file/SceneProblems.h"

#include <utility>

namespace host {

SceneProblems& SceneProblems::current() {
  static SceneProblems problems;
  return problems;
}

void SceneProblems::add(SceneProblem problem) {
  std::size_t& count = problem.kind == SceneProblem::Kind::kDamage ? damages : notices;
  if (++count <= kMostKept) {
    list.push_back(std::move(problem));
  }
}

}  // namespace host
