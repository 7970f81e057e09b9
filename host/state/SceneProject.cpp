#include "host/state/SceneProject.h"

#include <algorithm>

#include "host/mel/Interpreter.h"
#include "host/scene/Plug.h"
#include "host/scene/Scene.h"
#include "host/scene/Values.h"
#include "host/state/DirectoryMap.h"

namespace host {
namespace {

constexpr char kTextures[] = "sourceImages";

}  // namespace

morvane::Status SceneProject::enter(const std::string& sceneFolder) {
  found_.clear();
  const std::string folder = given_.empty() ? findProjectFolder(sceneFolder) : given_;
  if (!folder.empty()) return open(folder);
  project_ = Project();
  return {};
}

morvane::Status SceneProject::open(const std::string& projectFolder) {
  return readProject(projectFolder, project_);
}

void SceneProject::findTextures(const Scene& scene, DirectoryMap& map, std::size_t firstSerial,
                                const std::string& folder) {
  const auto& nodes = scene.nodes();
  for (auto entry = nodes.lower_bound(firstSerial); entry != nodes.end(); ++entry) {
    const NodePtr& node = entry->second;
    const auto plug =
        node->hasFn(MFn::kFileTexture) ? Plug::find(node, "fileTextureName") : std::nullopt;
    const auto written = plug ? readText(*plug) : std::nullopt;
    if (!written || written->empty()) continue;
    const std::string mapped = map.convert(*written).value_or(*written);
    FileSearch search = searchFile(mapped, folder, project_, kTextures);
    const bool isElsewhere =
        search.found && search.places.back() != mel::resolvedPath(mapped, folder);
    const std::string& name = isElsewhere ? search.places.back() : mapped;
    if (name == *written) continue;
    writeValue(*plug, name);
    if (isElsewhere) found_[node->serial()] = {mapped, name, std::move(search)};
  }
}

FileSearch SceneProject::searchOf(const std::string& name, const std::string& folder) const {
  const auto found = std::find_if(found_.begin(), found_.end(),
                                  [&](const auto& entry) { return entry.second.name == name; });
  return found != found_.end() ? found->second.search
                               : searchFile(name, folder, project_, kTextures);
}

const std::string& SceneProject::writtenName(std::size_t serial, const std::string& name) const {
  const auto found = found_.find(serial);
  return found != found_.end() && found->second.name == name ? found->second.written : name;
}

}  // namespace host
