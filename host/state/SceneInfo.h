#ifndef MORVANE_HOST_STATE_SCENEINFO_H_
#define MORVANE_HOST_STATE_SCENEINFO_H_

#include <cstdint>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "util/FileIdentity.h"

#include "host/scene/Plug.h"

namespace host {

// The statements of a scene file beside its nodes, kept as written, without the semicolon, for the
// saved scene.
struct SceneInfo {
  std::string firstLine;                  // "//Maya ASCII 2018 scene"; empty for a new scene
  std::vector<std::string> references;    // file -rdi ..., file -r ...
  std::vector<std::string> requirements;  // requires ...
  std::string timeUnit;                   // "film"
  std::string lengthUnit;                 // "meter"; empty: centimetres
  std::string angleUnit;                  // "radian"; empty: degrees
  std::vector<std::string> fileInfo;      // fileInfo ...
  std::vector<std::string> metadata;      // dataStructure ..., applyMetadata ...

  std::set<std::string> namespaces;  // that scripts made, without nodes so far

  // The last of the connections that every new scene has.
  std::uint64_t lastDefaultConnection = 0;

  // setAttr statements of nodes that are not here.
  std::vector<std::string> strayStatements;

  // connectAttr statements with an end that is missing here, or takes no such connection.
  struct LooseConnection {
    struct End {
      bool isKnown = false;      // that there is such a node; dropped when it is gone
      std::weak_ptr<Node> node;  // then
      std::string text;          // the plug's path; the whole name where the node is not known
    };
    End source;
    End destination;
    bool isNext = false;  // -nextAvailable
  };
  std::vector<LooseConnection> looseConnections;

  // By the serial of a connection through a reference's place holder: the place holder, which
  // stands in a saved scene for the end in the other file. Null for an end in the scene itself.
  struct StandIn {
    Plug source;
    Plug destination;
  };
  std::map<std::uint64_t, StandIn> standIns;

  // relationship ...; dropped from a saved scene when the node was there and is gone.
  struct Relationship {
    std::string node;
    bool isKnown = false;
    std::string statement;
  };
  std::vector<Relationship> relationships;

  std::string openedAs;          // the file's path; empty for a new scene
  morvane::FileIdentity opened;  // that file, before it was read or as it was last saved
};

}  // namespace host

#endif  // MORVANE_HOST_STATE_SCENEINFO_H_
