#ifndef MORVANE_TOOLS_CLI_COMMANDS_H_
#define MORVANE_TOOLS_CLI_COMMANDS_H_

#include <CLI/CLI.hpp>

namespace tools {

// One for each subcommand, in the file named after it. Each call adds one to the program; when the
// command line asks for it, its work is done while the command line is parsed and its exit status
// stored.
void addRun(CLI::App& program, int& status);
void addExport(CLI::App& program, int& status);
void addImport(CLI::App& program, int& status);
void addInfo(CLI::App& program, int& status);
void addGoblins(CLI::App& program, int& status);
void addDiff(CLI::App& program, int& status);
void addServe(CLI::App& program, int& status);
void addView(CLI::App& program, int& status);

using AddSubcommand = void (*)(CLI::App& program, int& status);

// In the order of --help. The manual page and the shell's completion follow from what each adds.
constexpr AddSubcommand kSubcommands[] = {addRun,     addExport, addImport, addInfo,
                                          addGoblins, addDiff,   addView,   addServe};

}  // namespace tools

#endif  // MORVANE_TOOLS_CLI_COMMANDS_H_
