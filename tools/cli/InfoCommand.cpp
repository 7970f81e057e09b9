#include <algorithm>
#include <string>
#include <vector>

#include "tools/batch/ExportMessages.h"
#include "tools/batch/UnusedMaps.h"
#include "tools/cli/Commands.h"
#include "tools/cli/InfoReport.h"
#include "tools/cli/Options.h"
#include "tools/jobs/JobPool.h"
#include "tools/scene/SceneOpener.h"
#include "tools/scene/Session.h"
#include "tools/terminal/ExitStatus.h"
#include "tools/terminal/Text.h"
#include "util/FileFacts.h"

namespace tools {
namespace {

struct Options {
  std::vector<std::string> files;
  bool json = false;
  OpeningOptions opening;
  JobOptions jobs;
};

class Information {
 public:
  explicit Information(const Options& options) : options_(options) {
    for (const std::string& file : options.files) paths_.push_back(absoluteName(file));
  }

  ExitStatus report() {
    const auto scenes =
        static_cast<std::size_t>(std::count_if(paths_.begin(), paths_.end(), isScene));
    // Layered files are read so fast that only who asks for processes gets them.
    const unsigned processes =
        options_.jobs.asked == 0 && scenes < 2 ? 1 : jobsFor(options_.jobs.asked, paths_.size());
    if (processes > 1)
      reportInPool(processes);
    else
      reportHere();
    unusedMaps_.report();
    return worst_;
  }

 private:
  void reportHere() {
    InfoReport files(options_.opening, options_.json);
    for (std::size_t i = 0; i < paths_.size(); ++i)
      worst_ = std::max(worst_, files.report(options_.files[i], paths_[i]));
  }

  void reportInPool(unsigned processes) {
    JobCalls calls;
    calls.order = [&](std::size_t file) { return orderOf(file); };
    calls.leave = [](std::size_t) {};
    calls.lose = [&](std::size_t file, const std::string& why) {
      complain(printable(options_.files[file]) + ": the process that read it " + why +
               "; the other files go on");
      return Message{{"status", static_cast<int>(kFailed)}};
    };
    calls.finish = [&](std::size_t, const Message& result) {
      worst_ = std::max(worst_, static_cast<ExitStatus>(result.at("status").get<int>()));
      if (result.contains("unusedMaps")) unusedMaps_.add(result["unusedMaps"]);
    };
    calls.makeRoom = [](const std::function<void()>& print) { print(); };
    if (runJobs({"--worker"}, {paths_.size(), processes, options_.jobs.ordered}, calls)) return;
    complain("the output could not be passed on; is the disk full?");
    worst_ = std::max(worst_, kFailed);
  }

  Message orderOf(std::size_t file) const {
    return {{"do", "info"},
            {"name", options_.files[file]},
            {"path", paths_[file]},
            {"json", options_.json},
            {"opening", messageOf(options_.opening)}};
  }

  const Options& options_;
  std::vector<std::string> paths_;  // absolute, before a scene moves the working folder
  UnusedMaps unusedMaps_;
  ExitStatus worst_ = kDone;
};

}  // namespace

void addInfo(CLI::App& program, int& status) {
  auto options = std::make_shared<Options>();
  CLI::App* command =
      program.add_subcommand("info", "Show what is in PSD files, or a scene's tiles");
  command
      ->add_option("FILE", options->files,
                   "PSD files, TGA files as they would be imported,\n"
                   "or scenes (*.ma, *.mb): their tiles and textures")
      ->type_name("")
      ->required();
  command->add_flag("--json", options->json, "One JSON object a line for each file");
  addJobOptions(*command, options->jobs);
  addFolderOptions(*command, options->opening);
  addFrameOption(*command, options->opening);
  command->footer(
      "Examples:\n"
      "  morvane info textures/*.psd                layers, resources and goblins\n"
      "  morvane info level.ma                      tiles, their goblins and textures\n"
      "  morvane info --json pond.psd | jq .layers  the same for a script");
  command->callback([options, &status] { status = Information(*options).report(); });
}

}  // namespace tools
