#include "tile/MaterialLookup.h"

#include <maya/MDagPath.h>
#include <maya/MFnDependencyNode.h>
#include <maya/MFnSet.h>
#include <maya/MIntArray.h>
#include <maya/MItMeshPolygon.h>
#include <maya/MObjectArray.h>
#include <maya/MPlug.h>
#include <maya/MPlugArray.h>
#include <maya/MSelectionList.h>

#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

#include "geometry/GoblinGeometry.h"
#include "tile/MessageLog.h"
#include "tile/SceneAttributes.h"

namespace morvane {
namespace {

constexpr const char* kDefaultShadingGroup = "initialShadingGroup";

MPlug plugOf(MObject node, const char* attributeName) {
  MFnDependencyNode dependencyNode(node);
  const MObject attribute = dependencyNode.attribute(attributeName);
  return attribute.isNull() ? MPlug() : MPlug(node, attribute);
}

MPlugArray sourcesOf(const MPlug& plug) {
  MPlugArray sources;
  plug.connectedTo(sources, true, false);
  return sources;
}

// The node at the other end of the attribute's incoming connection; the null object when there is
// none.
MObject sourceNode(MObject node, const char* attributeName) {
  const MPlugArray sources = sourcesOf(plugOf(node, attributeName));
  return sources.length() == 0 ? MObject() : sources[0].node();
}

bool hasFacesOf(const MObject& mesh, MObject faces) {
  MDagPath path;
  MDagPath::getAPathTo(mesh, path);
  MStatus attached;
  MItMeshPolygon polygon(path, faces, &attached);
  return attached == MStatus::kSuccess && !polygon.isDone();
}

// Whether the default shading group only happens to be connected and shades nothing.
bool isIdleDefaultGroup(const MFnSet& group, bool hasFaces, unsigned int groupCount) {
  if (group.name() != kDefaultShadingGroup) return false;
  MSelectionList members;
  group.getMembers(members, true);
  return members.length() == 0 || (!hasFaces && groupCount > 1);
}

std::unique_ptr<char[]> refuse(const char* message) {
  logText(1, message);
  return nullptr;
}

}  // namespace

std::int32_t countMaterials(MObject mesh) {
  MObjectArray groups;
  MObjectArray faces;
  MFnMesh(mesh).getConnectedSetsAndMembers(0, groups, faces, true);
  std::vector<std::string> seen;
  for (unsigned int i = 0; i < groups.length(); ++i) {
    MStatus attached;
    const MFnSet group(groups[i], &attached);
    if (attached != MStatus::kSuccess) std::printf("ERROR: MFnSet::MFnSet\n");
    const MObject material = sourceNode(groups[i], "surfaceShader");
    if (material.isNull()) continue;
    const bool hasFaces = attached == MStatus::kSuccess && hasFacesOf(mesh, faces[i]);
    if (isIdleDefaultGroup(group, hasFaces, groups.length())) continue;
    const std::string name = getNodeName(material).asChar();
    if (std::find(seen.begin(), seen.end(), name) == seen.end()) seen.push_back(name);
  }
  return static_cast<std::int32_t>(seen.size());
}

std::unique_ptr<char[]> getTileTextureName(MFnMesh& mesh, unsigned int instance) {
  MObjectArray groups;
  MIntArray groupOfFace;
  mesh.getConnectedShaders(instance, groups, groupOfFace);
  if (groups.length() != 1) {
    return refuse("*** Error : Must have only one material attached to base mesh\n");
  }
  const MObject material = sourceNode(groups[0], "surfaceShader");
  if (material.isNull()) return refuse("*** Error : No material attached to shader node\n");
  const MPlugArray textures = sourcesOf(plugOf(material, "color"));
  if (textures.length() == 0) return refuse("*** Error : No texture attached to material node\n");
  if (textures.length() != 1) {
    return refuse("*** Error : Must have only one texture attached to base material\n");
  }
  const MObject texture = textures[0].node();
  if (!texture.hasFn(MFn::kFileTexture))
    return refuse("*** Error : Only file textures supported\n");
  MString fileName;
  if (plugOf(texture, "fileTextureName").getValue(fileName) != MStatus::kSuccess) {
    return refuse("*** Error : Error retrieving texture name\n");
  }
  return copyText(fileName.asChar());
}

}  // namespace morvane
