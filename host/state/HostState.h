#ifndef MORVANE_HOST_STATE_HOSTSTATE_H_
#define MORVANE_HOST_STATE_HOSTSTATE_H_

#include <cstdio>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/evaluation/GraphEvaluation.h"
#include "host/mel/Command.h"
#include "host/mel/Interpreter.h"
#include "host/plugin/PluginRegistry.h"
#include "host/scene/Scene.h"
#include "host/state/DirectoryMap.h"
#include "host/state/SceneGaps.h"
#include "host/state/SceneInfo.h"
#include "host/state/SceneProblems.h"
#include "host/state/SceneProject.h"
#include "host/state/SceneUnits.h"

namespace host {

// The scene files that are being read, one inside the other.
struct FilesBeingRead {
  std::vector<std::string> open;  // absolute, the innermost last
  int references = 0;             // read since the outermost was opened
  bool reportedTooLarge = false;  // one of those that were not read, because there are too many
};

// The files that scripts read.
struct ReadFiles {
  using File = std::unique_ptr<std::FILE, int (*)(std::FILE*)>;

  bool isAllowed = false;
  int last = 0;  // the number that a file got last
  std::map<int, File> files;
};

// Everything that a host remembers. One host runs at a time, as the API has no argument that names
// one.
struct HostState {
  Scene scene;
  SceneInfo info;
  SceneGaps gaps;
  SceneProblems problems;
  SceneUnits units;  // of the scene file that is being read
  GraphEvaluation graph{scene, [this] { return ratesOf(info); }};
  FilesBeingRead files;
  ReadFiles readFiles;
  DirectoryMap folders;
  SceneProject project;
  std::optional<double> givenFrame;  // at which scenes are opened, if not as they were saved
  mel::CommandTable commands;
  mel::Interpreter interpreter{commands, this};
  mel::NamedValues options;  // of optionVar
  PluginRegistry plugins{interpreter};
  std::function<void(std::string_view)> beforeMessage;

  // The host that runs.
  static HostState& current();
  // Puts a new host in its place, which has no commands yet. Plug-ins are unloaded first; none of
  // them may be running.
  static void reset();
};

}  // namespace host

#endif  // MORVANE_HOST_STATE_HOSTSTATE_H_
