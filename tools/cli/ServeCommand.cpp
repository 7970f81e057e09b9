#include <cstdio>
#include <iostream>
#include <nlohmann/json.hpp>
#include <string>

#include "host/Host.h"
#include "tools/batch/ExportRecords.h"
#include "tools/batch/ExportScenes.h"
#include "tools/batch/SceneReport.h"
#include "tools/cli/Commands.h"
#include "tools/cli/Options.h"
#include "tools/scene/SceneDamage.h"
#include "tools/scene/Session.h"
#include "tools/terminal/OutputAside.h"
#include "tools/terminal/Text.h"

// The subcommand that the Python class Scene talks to; no help shows it. Requests come on standard
// input and answers go to standard output, a JSON value a line each:
//
//   {"do": "tiles"}                          as `info SCENE --json` answers
//   {"do": "export", "tiles": ["pond*"]}     as `export SCENE [TILES] --json` answers; none: every
//   tile
//   {"do": "mel", "text": "ls -type mesh"}   {"kind": "strings", "array": true, "values": [...]}
//   {"do": "save", "file": "/absolute.ma"}   nothing
//
// After the answers to each, and once after the scene was opened, comes {"done": STATUS, "error":
// TEXT}, where the text may be empty. The first answer is the record of the scene, with its
// problems. What scripts and the plug-in print goes to standard error, beside what the program
// says.
namespace tools {
namespace {

using Json = nlohmann::json;

Json answerJson(const host::Answer& answer) {
  switch (answer.kind) {
    case host::Answer::Kind::kInts:
      return {{"kind", "ints"}, {"array", answer.isArray}, {"values", answer.ints}};
    case host::Answer::Kind::kFloats:
      return {{"kind", "floats"}, {"array", answer.isArray}, {"values", answer.floats}};
    case host::Answer::Kind::kStrings: {
      Json values = Json::array();
      for (const std::string& text : answer.strings) values.push_back(toUtf8(text));
      return {{"kind", "strings"}, {"array", answer.isArray}, {"values", values}};
    }
    case host::Answer::Kind::kNothing:
      break;
  }
  return {{"kind", "nothing"}, {"array", false}, {"values", Json::array()}};
}

class Server {
 public:
  Server(std::string scene, OpeningOptions opening)
      : scene_(std::move(scene)), opening_(std::move(opening)) {}

  ExitStatus run() {
    const ExitStatus opened = open();
    std::string line;
    while (opened == kDone && std::getline(std::cin, line)) {
      error_.clear();
      const ExitStatus status = answer(Json::parse(line, nullptr, false));
      finish(status);
    }
    return opened;
  }

 private:
  static void say(const Json& json) {
    std::printf("%s\n", json.dump().c_str());
    std::fflush(stdout);
  }

  void finish(ExitStatus status) const { say({{"done", status}, {"error", toUtf8(error_)}}); }

  ExitStatus open() {
    const std::string path = absoluteName(scene_);
    morvane::Status opened;
    ExitStatus status = startSession("", opening_, &opened);
    if (status == kDone) {
      opened = host::openScene(path);
      status = opened.ok() ? kDone : kNotLoaded;
      const host::SceneProblems problems = host::takeSceneProblems();
      OutputAside().writeLine(sceneRecord(scene_, problems, damageOf(problems), status));
    }
    error_ = opened.text();
    finish(status);
    return status;
  }

  ExitStatus save(const std::string& file) {
    const morvane::Status saved = host::saveScene(file);
    error_ = saved.text();
    return saved.ok() ? kDone : kFailed;
  }

  static std::string text(const Json& request, const char* key) {
    const auto found = request.find(key);
    return found != request.end() && found->is_string() ? found->get<std::string>() : "";
  }

  ExitStatus answer(const Json& request) {
    const std::string wanted = request.is_object() ? text(request, "do") : "";
    if (wanted == "tiles") {
      reportScene(scene_, true);
      return kDone;
    }
    if (wanted == "export") return exportTiles(request);
    if (wanted == "mel") return runText(text(request, "text"));
    if (wanted == "save") return save(text(request, "file"));
    error_ = "not a request";
    return kUsage;
  }

  ExitStatus exportTiles(const Json& request) {
    ExportJob job{{scene_}, {}, {}, true};
    for (const Json& tile : request.value("tiles", Json::array()))
      if (tile.is_string()) job.nodes.push_back(tile.get<std::string>());
    return exportOpenScene(job);
  }

  ExitStatus runText(const std::string& script) {
    host::Answer answer;
    bool ok = false;
    {
      const OutputAside aside;
      ok = host::evaluate(script, answer, error_);
    }
    if (!ok) return kFailed;
    say(answerJson(answer));
    return kDone;
  }

  std::string scene_;
  OpeningOptions opening_;
  std::string error_;
};

}  // namespace

void addServe(CLI::App& program, int& status) {
  struct Options {
    std::string scene;
    OpeningOptions opening;
  };
  auto options = std::make_shared<Options>();
  CLI::App* command = program.add_subcommand("serve", "Answer the Python module");
  command->group("");
  command->add_option("SCENE", options->scene, "The scene to open")->required()->type_name("");
  addFolderOptions(*command, options->opening);
  command->callback(
      [options, &status] { status = Server(options->scene, options->opening).run(); });
}

}  // namespace tools
