#ifndef MORVANE_TOOLS_CLI_COMMANDS_H_
#define MORVANE_TOOLS_CLI_COMMANDS_H_

#include <CLI/CLI.hpp>

// The subcommands. Each call adds one to the program; when the command line asks for it, its work
// is done while the command line is parsed and its exit status stored.
namespace tools {

void addRun(CLI::App& program, int& status);
void addExport(CLI::App& program, int& status);
void addImport(CLI::App& program, int& status);
void addInfo(CLI::App& program, int& status);
void addGoblins(CLI::App& program, int& status);
void addServe(CLI::App& program, int& status);
void addView(CLI::App& program, int& status);

}  // namespace tools

#endif  // MORVANE_TOOLS_CLI_COMMANDS_H_
