#ifndef MORVANE_TOOLS_CLI_OPTIONS_H_
#define MORVANE_TOOLS_CLI_OPTIONS_H_

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

#include "tools/scene/Session.h"

// Options that several subcommands have, with the checks of what they are given.
namespace tools {

// What an option's file may be called: `written` ("a PSD file") has one of these extensions.
struct OutputKind {
  std::string written;
  std::vector<std::string> extensions;  // ".psd"
};
extern const OutputKind kSceneOutput;  // Maya ASCII

// Refuses as wrong usage what `option` is given where it is not a name of such a file: an empty
// text, for one, which a script's unset variable leaves.
void checkOutput(CLI::Option& option, const OutputKind& kind);

// How a subcommand's scenes are shared out among processes.
struct JobOptions {
  unsigned asked = 0;  // processes; 0: as many as there are cores
  bool ordered = false;
};
// Gives a subcommand the options --jobs and --ordered.
void addJobOptions(CLI::App& command, JobOptions& jobs);

// Gives a subcommand the options --map and --project, which fill `opening` with what was
// checked.
void addFolderOptions(CLI::App& command, OpeningOptions& opening);
// The same for --frame.
void addFrameOption(CLI::App& command, OpeningOptions& opening);

}  // namespace tools

#endif  // MORVANE_TOOLS_CLI_OPTIONS_H_
