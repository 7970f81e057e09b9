#ifndef MORVANE_TOOLS_CLI_USAGE_H_
#define MORVANE_TOOLS_CLI_USAGE_H_

#include <CLI/CLI.hpp>
#include <string>

namespace tools {

// What to tell of a command line that `program` refused with `error`: one line, which names the
// subcommand or option that was probably meant.
std::string wrongUsage(const CLI::App* program, const CLI::Error& error);

}  // namespace tools

#endif  // MORVANE_TOOLS_CLI_USAGE_H_
