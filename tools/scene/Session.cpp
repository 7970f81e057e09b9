#include "tools/scene/Session.h"

#include <filesystem>

#include "host/Host.h"
#include "tools/terminal/Activity.h"
#include "tools/terminal/OutputFile.h"
#include "tools/terminal/Text.h"
#include "util/Environment.h"
#include "util/Path.h"
#include "util/WholeNames.h"

namespace tools {

std::string absoluteName(const std::string& name) {
  return morvane::absoluteName(name);
}

ExitStatus startSession(const std::string& scene, const OpeningOptions& opening,
                        morvane::Status* status) {
  nowDoing("opening", scene.empty() ? "an empty scene" : scene);
  const std::string path = scene.empty() ? "" : absoluteName(scene);
  host::start(absoluteName("."));
  for (const std::string& pair : opening.maps) {
    const std::size_t sign = pair.find('=');
    std::error_code ignored;
    host::mapFolder(pair.substr(0, sign),
                    morvane::canonicalName(absoluteName(pair.substr(sign + 1)), ignored));
  }
  if (opening.frame) host::openAtFrame(*opening.frame);
  if (!opening.project.empty()) host::useProject(absoluteName(opening.project));
  const std::filesystem::path program = morvane::pathOf(morvane::programFolder());
  if (!program.empty()) {
    host::addPlugInFolder(morvane::nameOf(program.parent_path() / "plug-ins"));
    host::addScriptFolder(morvane::nameOf(program.parent_path() / "scripts"));
  }
  if (!path.empty() && !morvane::reportTo(status, host::openScene(path))) return kNotLoaded;
  if (host::loadPlugin("morvane")) return kDone;
  morvane::reportTo(status, {morvane::StatusCode::kNotFound, "the plug-in cannot be loaded"});
  complain(
      "the plug-in cannot be loaded; it belongs into the folder plug-ins beside the program's "
      "folder, or into one that MAYA_PLUG_IN_PATH names");
  return kNotLoaded;
}

ExitStatus saveScene(const std::string& output) {
  if (!output.empty()) nowDoing("saving", output);
  const morvane::Status saved = output.empty() ? morvane::Status() : host::saveScene(output);
  if (saved.ok()) return kDone;
  complain("the scene was not saved; " +
           writingAdvice(saved.code(), "name a file in a folder that can be written"));
  return kFailed;
}

}  // namespace tools
