#ifndef MORVANE_HOST_STATE_SCENEPROJECT_H_
#define MORVANE_HOST_STATE_SCENEPROJECT_H_

#include <cstddef>
#include <map>
#include <string>

#include "host/state/Project.h"

namespace host {

class DirectoryMap;
class Scene;

// The project in which the files of the open scene are looked for, and what was found.
class SceneProject {
 public:
  // Makes a folder the project of all scenes opened later, wherever they are.
  void give(const std::string& folder) { given_ = folder; }
  // Makes the project of a scene in this folder the current one, and forgets all files.
  morvane::Status enter(const std::string& sceneFolder);
  morvane::Status open(const std::string& projectFolder);
  Project& project() { return project_; }

  // Gives the file textures among the scene's nodes from this serial on the names that they have on
  // this machine, after `map`. `folder` is the scene's. What is where its name says, seen
  // from there, and what is not found keep their names.
  void findTextures(const Scene& scene, DirectoryMap& map, std::size_t firstSerial,
                    const std::string& folder);

  // The places where a texture, named as nodes name it now, was looked for.
  FileSearch searchOf(const std::string& name, const std::string& folder) const;
  // The name for a scene file to use: the one written there before, while the node's name is
  // unchanged.
  const std::string& writtenName(std::size_t serial, const std::string& name) const;

 private:
  struct Found {
    std::string written;
    std::string name;
    FileSearch search;
  };

  std::string given_;
  Project project_;
  std::map<std::size_t, Found> found_;  // by serial; of textures that got another name
};

}  // namespace host

#endif  // MORVANE_HOST_STATE_SCENEPROJECT_H_
