#include "import/TextureNetwork.h"

#include <maya/MFnLambertShader.h>
#include <maya/MGlobal.h>
#include <maya/MItDependencyNodes.h>
#include <maya/MStringArray.h>

#include <cstdio>

#include "tile/SceneAttributes.h"

namespace morvane {
namespace {

MStatus run(const MString& command) {
  return MGlobal::executeCommand(command, false, false);
}

// Runs a command that makes a node and tells its name, which is then never empty.
MStatus runForName(const MString& command, MString& name) {
  MStringArray names;
  const MStatus status = MGlobal::executeCommand(command, names, false, false);
  if (status != MStatus::kSuccess) return status;
  if (names.length() == 0 || names[0].length() == 0) return MStatus::kFailure;
  name = names[0];
  return MStatus::kSuccess;
}

// The name of the first node connected to a plug; empty when nothing is.
MStatus firstConnection(const MString& plug, MString& name) {
  MStringArray names;
  const MStatus status =
      MGlobal::executeCommand(MString("listConnections ") + plug, names, false, false);
  name = status == MStatus::kSuccess && names.length() > 0 ? names[0] : MString();
  return status;
}

// False when the shader has no texture that names a file.
bool getTextureOf(const MString& shader, std::string& fileName) {
  MString texture;
  firstConnection(shader + ".color", texture);
  if (texture.length() == 0) return false;
  MStringArray names;
  const MString command = MString("getAttr ") + texture + ".fileTextureName";
  if (MGlobal::executeCommand(command, names, false, false) != MStatus::kSuccess) return false;
  if (names.length() == 0) return false;
  fileName = names[0].asChar();
  return true;
}

MStatus createGroup(const MString& shader, MString& group) {
  return runForName(
      MString("sets -renderable true -noSurfaceShader true -empty -name ") + shader + "SG", group);
}

MStatus connectGroup(const MString& shader, const MString& group) {
  return run(MString("connectAttr -f ") + shader + ".outColor " + group + ".surfaceShader");
}

// The group that an existing shader shades.
MStatus groupOf(const MString& shader, MString& group) {
  const MStatus listed = firstConnection(shader + ".outColor", group);
  if (group.length() != 0) return MStatus::kSuccess;
  const MStatus created = createGroup(shader, group);
  if (created != MStatus::kSuccess || listed != MStatus::kSuccess) return created;
  return connectGroup(shader, group);
}

MStatus createTexture(MString& texture) {
  const MStatus created = runForName(
      "hyperShade -createNode \"PSDTextureNode\" \"hyperShadePanel1HyperShadeEd\";", texture);
  if (created != MStatus::kSuccess) return created;
  const MObject node = getNodeByName(texture);
  if (node.isNull()) return MStatus::kFailure;
  texture = getNodeName(node);
  return MStatus::kSuccess;
}

MStatus createNetwork(const MString& fileName, MString& shader, MString& group) {
  MString texture;
  MStatus status = createTexture(texture);
  if (status != MStatus::kSuccess) return status;
  MFnLambertShader lambert;
  lambert.create(true, &status);
  if (status != MStatus::kSuccess) return status;
  shader = getNodeName(lambert.object());
  status = createGroup(shader, group);
  if (status == MStatus::kSuccess) status = connectGroup(shader, group);
  const MString commands[] = {
      MString("connectAttr ") + texture + ".outColor " + shader + ".color",
      MString("setAttr ") + texture + ".resolution 256",
      MString("setAttr -type \"string\" ") + texture + ".fileTextureName " + quoted(fileName),
  };
  for (const MString& command : commands)
    if (status == MStatus::kSuccess) status = run(command);
  return status;
}

}  // namespace

std::string TextureNetworks::shaderOf(const std::string& fileName) {
  if (!known_) {
    known_ = true;
    for (MItDependencyNodes node(MFn::kLambert); !node.isDone(); node.next()) {
      const MString shader = getNodeName(node.thisNode());
      std::string texture;
      if (getTextureOf(shader, texture)) shaders_.emplace(texture, shader.asChar());
    }
  }
  const auto found = shaders_.find(fileName);
  return found != shaders_.end() ? found->second : std::string();
}

MStatus applyTexture(MObject node, const MString& fileName) {
  return TextureNetworks().apply(node, fileName);
}

MStatus TextureNetworks::apply(MObject node, const MString& fileName) {
  std::printf("Creating texture node...\n");
  MString shader = shaderOf(fileName.asChar()).c_str();
  MString group;
  MStatus found;
  if (shader.length() != 0) {
    found = groupOf(shader, group);
  } else {
    found = createNetwork(fileName, shader, group);
    std::string texture;
    // A network that was only begun counts too: the next call would find it.
    if (shader.length() != 0 && getTextureOf(shader, texture))
      shaders_.emplace(texture, shader.asChar());
  }
  if (found != MStatus::kSuccess) return found;
  // Without a name the command would take the selection instead.
  const MObject shape = getShapeNode(node);
  if (shape.isNull()) return MStatus::kFailure;
  return run(MString("sets -edit -forceElement ") + group + " " + commandName(shape));
}

}  // namespace morvane
