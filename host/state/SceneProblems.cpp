#include "host/state/SceneProblems.h"

#include <utility>

namespace host {

void SceneProblems::add(SceneProblem problem) {
  std::size_t& count = problem.kind == SceneProblem::Kind::kDamage ? damages : notices;
  if (++count <= kMostKept) list.push_back(std::move(problem));
}

}  // namespace host
