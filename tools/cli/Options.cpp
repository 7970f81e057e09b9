#include "tools/cli/Options.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <system_error>

#include "tools/jobs/JobPool.h"
#include "tools/terminal/Text.h"
#include "util/FileExtension.h"
#include "util/FileFacts.h"

namespace tools {
namespace {

// Empty when `name` is one of that kind.
std::string whyNoOutput(const std::string& name, const OutputKind& kind) {
  const auto& allowed = kind.extensions;
  std::string needed = allowed.front();
  for (std::size_t i = 1; i < allowed.size(); ++i) needed += " or " + allowed[i];
  const std::string rule = kind.written + " is written, so that the name must end in " + needed;
  if (name.empty()) return "the name is empty (a variable that is not set?); " + rule;
  const std::string extension = morvane::lowerExtension(name);
  if (std::find(allowed.begin(), allowed.end(), extension) != allowed.end()) return "";
  return printable(name) + ": " + rule + (extension.empty() ? ", with something before it" : "");
}

}  // namespace

const OutputKind kSceneOutput = {"only Maya ASCII", {".ma"}};

void checkOutput(CLI::Option& option, const OutputKind& kind) {
  option.check([kind](const std::string& name) { return whyNoOutput(name, kind); }, "");
}

void addJobOptions(CLI::App& command, JobOptions& jobs) {
  command.add_option("--jobs", jobs.asked, "So many scenes at once (of several: as cores)")
      ->type_name("N")
      ->check(
          [](const std::string& text) {
            char* end = nullptr;
            const unsigned long number = std::strtoul(text.c_str(), &end, 10);
            const bool isNumber = !text.empty() && text[0] != '-' && *end == '\0';
            return isNumber && number >= 1 && number <= kMostJobs
                       ? std::string()
                       : "needs a number from 1 to " + std::to_string(kMostJobs) + ", not " +
                             printable(text);
          },
          "");
  command.add_flag("--ordered", jobs.ordered, "Output in the order of the command line");
}

void addFolderOptions(CLI::App& command, OpeningOptions& opening) {
  command.add_option("--map", opening.maps, "What the scene has in FROM is in TO here; repeatable")
      ->type_name("FROM=TO")
      ->expected(1)
      ->take_all()
      ->check(
          [](const std::string& pair) {
            const std::size_t sign = pair.find('=');
            const bool ok = sign != std::string::npos && sign > 0 && sign + 1 < pair.size();
            return ok ? std::string() : "needs two folders, FROM=TO, not " + printable(pair);
          },
          "");
  command
      .add_option("--project", opening.project,
                  "Where textures are looked for, not the nearest project")
      ->type_name("DIR")
      ->check(
          [](const std::string& folder) {
            return morvane::factsOf(folder).isFolder() ? std::string()
                                                       : "needs a folder, not " + printable(folder);
          },
          "");
}

void addFrameOption(CLI::App& command, OpeningOptions& opening) {
  command
      .add_option("--frame", opening.frame, "The time to look at; none: that of the saved scene")
      ->type_name("N")
      ->check(
          [](const std::string& frame) {
            char* end = nullptr;
            const double number = std::strtod(frame.c_str(), &end);
            const bool ok = !frame.empty() && *end == '\0' && std::isfinite(number);
            return ok ? std::string() : "needs a number, not " + printable(frame);
          },
          "");
}

}  // namespace tools
