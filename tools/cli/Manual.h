#ifndef MORVANE_TOOLS_CLI_MANUAL_H_
#define MORVANE_TOOLS_CLI_MANUAL_H_

#include <CLI/CLI.hpp>
#include <string>

namespace tools {

// A manual page or a shell completion whose template has lines that only the program's options can
// fill, so that neither can lag behind them:
//
//   @VERSION@             the program's name and version
//   @SYNOPSIS@            one line of roff for each subcommand, with its operands and options
//   @COMMANDS@            what each subcommand and each of its options does, in roff
//   @SUBCOMMANDS@         the subcommands' names, separated by spaces
//   @OPTION_CASES@        one `NAME) echo "OPTION..." ;;` of a shell's case for each subcommand
std::string filledTemplate(std::string text, const CLI::App& program);

}  // namespace tools

#endif  // MORVANE_TOOLS_CLI_MANUAL_H_
