#include "tile/TileSearch.h"

#include <maya/MFnDependencyNode.h>
#include <maya/MItDag.h>
#include <maya/MPlug.h>

#include "tile/GoblinExtraction.h"
#include "tile/MaterialLookup.h"

namespace morvane {

TileTextureNode textureOfTile(const MDagPath& tile) {
  const MeshWalk walk(tile);
  const MObject texture = walk.isDone() ? MObject() : findColourTexture(walk.path());
  if (texture.isNull()) return TileTextureNode();
  const MFnDependencyNode node(texture);
  MString file;
  MPlug(texture, node.attribute("fileTextureName")).getValue(file);
  return {file.asChar(), node.name().asChar()};
}

std::vector<MDagPath> topTransforms() {
  std::vector<MDagPath> transforms;
  MItDag walk(MItDag::kDepthFirst);
  for (walk.next(); !walk.isDone(); walk.next()) {
    walk.prune();
    MDagPath path;
    walk.getPath(path);
    if (path.node().hasFn(MFn::kTransform)) transforms.push_back(path);
  }
  return transforms;
}

std::vector<MDagPath> texturedTiles() {
  std::vector<MDagPath> tiles;
  for (const MDagPath& path : topTransforms())
    if (!textureOfTile(path).name.empty()) tiles.push_back(path);
  return tiles;
}

}  // namespace morvane
