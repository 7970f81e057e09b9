#ifndef MORVANE_HOST_FILE_SCENEINFO_H_
#define MORVANE_HOST_FILE_SCENEINFO_H_

#include <string>
#include <vector>

#include "util/FileIdentity.h"

namespace host {

// What a scene file says beside its nodes, kept so that a saved scene says it again. Statements
// stand as they are written, without the semicolon.
struct SceneInfo {
  std::string firstLine;                  // "//Maya ASCII 2018 scene"; empty for a new scene
  std::vector<std::string> references;    // file -rdi ..., file -r ...
  std::vector<std::string> requirements;  // requires ...
  std::string timeUnit;                   // "film"
  std::vector<std::string> fileInfo;      // fileInfo ...
  std::vector<std::string> metadata;      // dataStructure ..., applyMetadata ...

  // relationship ...; dropped from a saved scene when the node is gone.
  struct Relationship {
    std::string node;
    std::string statement;
  };
  std::vector<Relationship> relationships;

  std::string openedAs;          // the file's path; empty for a new scene
  morvane::FileIdentity opened;  // that file, before it was read or as it was last saved

  static SceneInfo& current();
};

}  // namespace host

#endif  // MORVANE_HOST_FILE_SCENEINFO_H_
