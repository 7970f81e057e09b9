#include <algorithm>
#include <map>
#include <string>
#include <vector>

#include "host/Host.h"
#include "tools/cli/Commands.h"
#include "tools/cli/Options.h"
#include "tools/scene/SceneDamage.h"
#include "tools/scene/Session.h"
#include "tools/terminal/Activity.h"
#include "tools/terminal/ExitStatus.h"
#include "tools/terminal/OutputFile.h"
#include "tools/terminal/Text.h"
#include "tools/terminal/TimeLimit.h"

namespace tools {
namespace {

struct Step {
  bool isFile = false;
  std::string text;    // commands, or the absolute name of a file of them
  std::string origin;  // for messages
};

struct Options {
  std::string scene;
  std::vector<std::string> commands;
  std::vector<std::string> files;
  std::string output;
  OpeningOptions opening;
  bool allowsFiles = false;
  double timeout = 0.0;  // seconds; 0: none
};

// The -c and -f of the command line in the order in which they stand there.
std::vector<Step> stepsInOrder(const CLI::App& command) {
  std::vector<Step> steps;
  std::map<const CLI::Option*, std::size_t> used;
  for (const CLI::Option* option : command.parse_order()) {
    const bool isFile = option->check_lname("file");
    if (!isFile && !option->check_lname("command")) continue;
    const std::size_t number = used[option]++;
    const std::string& value = option->results()[number];
    steps.push_back(
        {isFile, isFile ? absoluteName(value) : value, "-c " + std::to_string(number + 1)});
  }
  return steps;
}

ExitStatus runSteps(const Options& options, const std::vector<Step>& steps) {
  for (const Step& step : steps) {
    nowDoing("running", step.isFile ? step.text : step.origin);
    const bool ok =
        step.isFile ? host::executeFile(step.text) : host::execute(step.text, step.origin);
    if (ok) continue;
    reportDamage(options.scene, host::takeSceneProblems());
    if (!options.output.empty()) {
      complain("a command failed, so " + printable(options.output) +
               " was not written; what is printed above says why");
    }
    return kFailed;
  }
  return kDone;
}

// Opens the scene and runs everything on it within the time that there is.
ExitStatus openAndRun(const Options& options, const std::vector<Step>& steps,
                      const std::string& output) {
  const TimeLimit limit(options.timeout);
  const ExitStatus started = startSession(options.scene, options.opening);
  if (started != kDone) return started;
  if (!output.empty() && wouldReplaceTexture(output)) return kUsage;
  if (options.allowsFiles) host::allowFiles();
  return runSteps(options, steps);
}

ExitStatus runScene(const Options& options, const std::vector<Step>& steps) {
  const std::string output = options.output.empty() ? "" : absoluteName(options.output);
  if (!output.empty() && wouldReplaceInput(output, options.files)) return kUsage;
  const ExitStatus done = openAndRun(options, steps, output);
  if (done != kDone) return done;
  const ExitStatus saved = saveScene(output);
  if (saved == kDone && !output.empty()) reportWritten(options.output);
  reportUnusedMaps();
  return std::max(saved, reportDamage(options.scene, host::takeSceneProblems()));
}

}  // namespace

void addRun(CLI::App& program, int& status) {
  auto options = std::make_shared<Options>();
  CLI::App* command =
      program.add_subcommand("run", "Run commands on a scene with the plug-in loaded");
  command->add_option("SCENE", options->scene, "The scene to open (*.ma, *.mb); none: an empty one")
      ->type_name("");
  command->add_option("-c,--command", options->commands, "Commands to run")
      ->type_name("COMMANDS")
      ->expected(1)
      ->take_all();
  command->add_option("-f,--file", options->files, "A file of commands to run")
      ->type_name("FILE")
      ->expected(1)
      ->take_all();
  checkOutput(*command
                   ->add_option("-o,--output", options->output,
                                "Save the scene here (*.ma) when all commands succeeded")
                   ->type_name("SCENE"),
              kSceneOutput);
  command->add_flag("--allow-files", options->allowsFiles, "Let commands read files (fopen)");
  command
      ->add_option("--timeout", options->timeout,
                   "End a run that takes longer than this (status 1)")
      ->type_name("SECONDS")
      ->check(CLI::Range(0.001, 1e7).description(""));
  addFolderOptions(*command, options->opening);
  addFrameOption(*command, options->opening);
  command->footer(
      "Every -c and -f runs in the order given, up to the first that fails. A damaged\n"
      "scene is used as far as it can be read, and the status is 1.\n"
      "Examples:\n"
      "  morvane run level.ma -c 'print `ls -type mesh`'   ask for something\n"
      "  morvane run level.ma -f tidy.mel -o tidied.ma     change it and save\n"
      "  morvane run -c 'polyCreateFacet -p 0 0 0 -p 0 0 1 -p 1 0 0' -o new.ma");
  command->callback(
      [options, command, &status] { status = runScene(*options, stepsInOrder(*command)); });
}

}  // namespace tools
