#include "tools/Session.h"

#include <filesystem>

#include "host/Host.h"
#include "tools/Platform.h"
#include "tools/Text.h"

namespace tools {

std::string absoluteName(const std::string& name) {
  std::error_code error;
  const auto absolute = std::filesystem::absolute(name, error);
  return error ? name : absolute.string();
}

ExitStatus startSession(const std::string& scene) {
  const std::string path = scene.empty() ? "" : absoluteName(scene);
  host::start(absoluteName("."));
  const std::filesystem::path program = programFolder();
  if (!program.empty()) {
    host::addPlugInFolder((program.parent_path() / "plug-ins").string());
    host::addScriptFolder((program.parent_path() / "scripts").string());
  }
  if (!path.empty() && !host::openScene(path)) return kNotLoaded;
  if (!host::loadPlugin("morvane")) {
    complain(
        "the plug-in cannot be loaded; it belongs into the folder plug-ins beside the program's "
        "folder, "
        "or into one that MAYA_PLUG_IN_PATH names");
    return kNotLoaded;
  }
  return kDone;
}

}  // namespace tools
