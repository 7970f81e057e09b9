#include <cstdio>
#include <cstdlib>
#include <exception>
#include <fstream>
#include <iterator>
#include <new>
#include <string>
#include <system_error>
#include <vector>

#include "tools/cli/Commands.h"
#include "tools/cli/Manual.h"
#include "tools/cli/Usage.h"
#include "tools/cli/Worker.h"
#include "tools/terminal/Activity.h"
#include "tools/terminal/ExitStatus.h"
#include "tools/terminal/Platform.h"
#include "tools/terminal/Text.h"
#include "util/Path.h"

namespace tools {
namespace {

constexpr const char* kExamples =
    "Examples:\n"
    "  morvane export level.ma                  every tile's goblins into its texture\n"
    "  morvane export level.ma 'pond*'          only of the tiles of that name\n"
    "  morvane run level.ma -c '...' -o new.ma  run commands on a scene and save it\n"
    "  morvane goblins textures/pond.psd        show what a tile's file carries\n"
    "  morvane view textures/*.psd -o all.html  look at files in a browser\n"
    "Status: 0 done, 1 something failed, 2 wrong usage, 3 scene or plug-in not loaded";

// Leaves the texts of options 56 columns of a terminal that has 80.
constexpr std::size_t kHelpColumn = 24;

// Standard output that could not be written (a full disk) must not pass for success.
int flushed(int status) {
  const bool ok = std::fflush(stdout) == 0 && std::ferror(stdout) == 0;
  if (ok) return status;
  std::fprintf(
      stderr,
      "morvane: standard output could not be written; is the disk full, or its reader gone?\n");
  return status == kDone ? kFailed : status;
}

int printFilled(const std::string& file, const CLI::App& program) {
  std::ifstream in(morvane::systemPath(file), std::ios::binary);
  const std::string text{std::istreambuf_iterator<char>(in), {}};
  if (!in) {
    complain(file + ": cannot be read");
    return kFailed;
  }
  std::fputs(filledTemplate(text, program).c_str(), stdout);
  return kDone;
}

int run(const std::vector<std::string>& words) {
  int status = kDone;
  CLI::App program("Goblin geometry of tiles, in scenes and in layered image files", "morvane");
  program.set_version_flag("--version", "morvane " MORVANE_VERSION);
  program.get_formatter()->column_width(kHelpColumn);
  for (const AddSubcommand add : kSubcommands) add(program, status);
  std::string templateFile;  // of what is made while the program is built
  program.add_option("--fill-template", templateFile)->group("");
  std::string channel;
  program.add_option("--worker", channel)->group("");
  program.footer(kExamples);
  program.failure_message(wrongUsage);
  try {
    std::vector<const char*> arguments;
    for (const std::string& word : words) arguments.push_back(word.c_str());
    program.parse(static_cast<int>(arguments.size()), arguments.data());
  } catch (const CLI::ParseError& error) {
    return program.exit(error) == 0 ? kDone : kUsage;
  }
  if (!templateFile.empty()) return printFilled(templateFile, program);
  if (!channel.empty()) return runWorker(channel);
  if (program.get_subcommands().empty()) {
    std::fputs("morvane: a subcommand is required; morvane --help shows them\n", stderr);
    return kUsage;
  }
  return status;
}

void reportLackOfMemory() {
  const char* const doing = currentActivity();
  std::fprintf(stderr, "morvane: out of memory%s%s; free some, or give fewer or smaller files\n",
               *doing != '\0' ? " while " : "", doing);
}

// A library that needs memory to clear up after a lack of it ends up here. Files that were being
// written stay what they were.
[[noreturn]] void endWithoutMemory() {
  try {
    if (std::current_exception()) throw;
  } catch (const std::bad_alloc&) {
    reportLackOfMemory();
    std::_Exit(kFailed);
  } catch (...) {
  }
  std::abort();
}

}  // namespace
}  // namespace tools

// What is thrown past everything is the lack of memory or of threads. Files that were being written
// are cleared away on the way here.
int main(int argc, char** argv) {
  tools::letWritesFail();
  tools::prepareStreams();
  std::set_terminate(tools::endWithoutMemory);
  try {
    return tools::flushed(tools::run(tools::commandLine(argc, argv)));
  } catch (const std::bad_alloc&) {
    tools::reportLackOfMemory();
  } catch (const std::system_error& error) {
    tools::complain(tools::printable(error.what()) + "; try again, or with fewer files");
  }
  return tools::kFailed;
}
