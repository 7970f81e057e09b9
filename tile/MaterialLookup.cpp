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
#include <string>
#include <vector>

#include "geometry/GoblinGeometry.h"
#include "tile/SceneAttributes.h"
#include "tile/TileLines.h"

namespace morvane {
namespace {

constexpr const char* kDefaultShadingGroup = "initialShadingGroup";

// The names that materials have for the colour of their surface. The first that a material has is
// taken; a material with `color` is never asked for another.
constexpr const char* kColourNames[] = {
    "color",               // Lambert and all that derives from it, most renderers' own
    "TEX_color_map",       // StingrayPBS, whose base_color is what is used without a map
    "u_BaseColorTexture",  // GLSLShader with the glTF program
    "baseColor",           // standardSurface, openPBRSurface, aiStandardSurface, PxrDisney
    "bc",                  // the first two, where the host knows only what the scene file calls it
    "base_color",          // RedshiftStandardMaterial; aiStandardSurface in its files
    "diffuseColor",        // usdPreviewSurface, PxrSurface
    "diffuse_color",       // RedshiftMaterial
    "DiffuseTexture",      // dx11Shader
    "diffuse",             // mia_material_x, CoronaSurface
};

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

MPlug colourOf(MObject material) {
  for (const char* const name : kColourNames) {
    const MPlug plug = plugOf(material, name);
    if (!plug.isNull()) return plug;
  }
  return MPlug();
}

// Reports the material that has no texture, and where it was looked for.
std::string withoutTexture(const MFnMesh& mesh, MObject material, const MPlug& colour) {
  MDagPath path;
  MDagPath::getAPathTo(mesh.object(), path);
  const MFnDependencyNode node(material);
  return std::string(path.fullPathName().asChar()) + ": material " + node.name().asChar() + " (" +
         node.typeName().asChar() + ") has " +
         (colour.isNull() ? "no colour that is known here"
                          : std::string("nothing connected to ") + colour.name().asChar());
}

bool hasFacesOf(const MObject& mesh, MObject faces) {
  MDagPath path;
  MDagPath::getAPathTo(mesh, path);
  MStatus attached;
  MItMeshPolygon polygon(path, faces, &attached);
  return attached == MStatus::kSuccess && !polygon.isDone();
}

// Whether the default shading group is connected but shades nothing.
bool isIdleDefaultGroup(const MFnSet& group, bool hasFaces, unsigned int groupCount) {
  if (group.name() != kDefaultShadingGroup || hasFaces) return false;
  if (groupCount > 1) return true;
  // Asked last: the group lists every mesh of a level that nobody has shaded.
  MSelectionList members;
  group.getMembers(members, true);
  return members.length() == 0;
}

std::unique_ptr<char[]> refuse(TileMessages& messages, const char* error) {
  messages.fail(error);
  return nullptr;
}

}  // namespace

std::int32_t countMaterials(MObject mesh, TileMessages& messages) {
  MObjectArray groups;
  MObjectArray faces;
  MFnMesh(mesh).getConnectedSetsAndMembers(0, groups, faces, true);
  std::vector<std::string> seen;
  for (unsigned int i = 0; i < groups.length(); ++i) {
    MStatus attached;
    const MFnSet group(groups[i], &attached);
    if (attached != MStatus::kSuccess) messages.log("ERROR: MFnSet::MFnSet\n");
    const MObject material = sourceNode(groups[i], "surfaceShader");
    if (material.isNull()) continue;
    const bool hasFaces = attached == MStatus::kSuccess && hasFacesOf(mesh, faces[i]);
    if (isIdleDefaultGroup(group, hasFaces, groups.length())) continue;
    const std::string name = getNodeName(material).asChar();
    if (std::find(seen.begin(), seen.end(), name) == seen.end()) seen.push_back(name);
  }
  return static_cast<std::int32_t>(seen.size());
}

std::unique_ptr<char[]> getTileTextureName(MFnMesh& mesh, unsigned int instance,
                                           TileMessages& messages) {
  MObjectArray groups;
  MIntArray groupOfFace;
  mesh.getConnectedShaders(instance, groups, groupOfFace);
  if (groups.length() != 1) return refuse(messages, kSeveralMaterials);
  const MObject material = sourceNode(groups[0], "surfaceShader");
  if (material.isNull()) return refuse(messages, kNoMaterial);
  const MPlug colour = colourOf(material);
  const MPlugArray textures = sourcesOf(colour);
  if (textures.length() == 0) {
    messages.explain(withoutTexture(mesh, material, colour));
    return refuse(messages, kNoTexture);
  }
  if (textures.length() != 1) return refuse(messages, kSeveralTextures);
  const MObject texture = textures[0].node();
  if (!texture.hasFn(MFn::kFileTexture)) return refuse(messages, kNoFileTexture);
  MString fileName;
  if (plugOf(texture, "fileTextureName").getValue(fileName) != MStatus::kSuccess)
    return refuse(messages, kNoTextureName);
  return copyText(fileName.asChar());
}

std::vector<MObject> shadingNodes(const MDagPath& mesh) {
  MObjectArray groups;
  MIntArray groupOfFace;
  MFnMesh(mesh).getConnectedShaders(mesh.instanceNumber(), groups, groupOfFace);
  std::vector<MObject> nodes;
  for (unsigned int i = 0; i < groups.length(); ++i) {
    nodes.push_back(groups[i]);
    const MObject material = sourceNode(groups[i], "surfaceShader");
    if (material.isNull()) continue;
    nodes.push_back(material);
    const MPlugArray textures = sourcesOf(colourOf(material));
    for (unsigned int t = 0; t < textures.length(); ++t) nodes.push_back(textures[t].node());
  }
  return nodes;
}

MObject findColourTexture(const MDagPath& mesh) {
  for (const MObject& node : shadingNodes(mesh))
    if (node.hasFn(MFn::kFileTexture)) return node;
  return MObject::kNullObj;
}

}  // namespace morvane
