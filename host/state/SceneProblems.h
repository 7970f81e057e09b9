#ifndef MORVANE_HOST_STATE_SCENEPROBLEMS_H_
#define MORVANE_HOST_STATE_SCENEPROBLEMS_H_

#include <cstddef>
#include <string>
#include <vector>

namespace host {

// Something in a scene file that could not be used as it stands there.
struct SceneProblem {
  enum class Kind {
    kNotice,  // also sound scenes have such: what plug-ins or files that are not here would know
    kDamage,  // what no sound scene has: something of it is lost
  };
  Kind kind = Kind::kNotice;
  std::string file;  // that says it, maybe one that the scene refers to; empty: none in particular
  int line = 0;      // in it, from 1; 0 where there is no one line
  std::string text;  // what and, where something can be done, what to do; one line
};

// What was found in the scene files that were read, in order.
struct SceneProblems {
  static constexpr std::size_t kMostKept = 1000;  // of each kind; more are only counted

  std::vector<SceneProblem> list;
  std::size_t notices = 0;
  std::size_t damages = 0;
  // How a file ended that is not a reference; of several, the worst.
  enum class End {
    kWhole,     // with the comment that Maya ends its scenes with
    kUnmarked,  // without it
    kDoubtful,  // without it, although the file begins as Maya's own do: damage
    kCut,       // inside a statement
  };
  End end = End::kWhole;

  void add(SceneProblem problem);
};

}  // namespace host

#endif  // MORVANE_HOST_STATE_SCENEPROBLEMS_H_
