#include "host/commands/Builtin.h"

#include "host/commands/MeshObject.h"
#include "host/mel/Command.h"
#include "host/mesh/MeshBuild.h"
#include "host/mesh/MeshData.h"

namespace host::mel {
namespace {

// A polygon with these corners, in a transform of its own, shaded like every new object.
CommandResult polyCreateFacet(const Arguments& arguments, CommandContext& context) {
  MeshPolygons polygon;
  for (const std::vector<double>& xyz : arguments.allNumbers("p")) {
    polygon.connects.push_back(static_cast<int>(polygon.points.size()));
    polygon.points.push_back({xyz[0], xyz[1], xyz[2]});
  }
  polygon.counts.push_back(static_cast<int>(polygon.points.size()));
  MeshData mesh;
  std::string error = buildMesh(polygon, mesh);
  if (!error.empty()) return CommandResult::failure("polyCreateFacet: " + error);
  const std::string name = arguments.has("n") ? arguments.text("n") : "polySurface1";
  return addMeshObject(context, "polyCreateFacet", name, std::move(mesh));
}

}  // namespace

void addMeshCommands(CommandTable& table) {
  table.add("polyCreateFacet",
            {{"p", "point", "nnn"},
             {"n", "name", "s"},
             {"ch", "constructionHistory", "b"},
             {"tx", "texture", "i"},
             {"s", "subdivision", "i"}},
            polyCreateFacet);
}

}  // namespace host::mel
