#ifndef MORVANE_IMPORT_TEXTURENETWORK_H_
#define MORVANE_IMPORT_TEXTURENETWORK_H_

#include <maya/MObject.h>
#include <maya/MStatus.h>
#include <maya/MString.h>

#include <map>
#include <string>

namespace morvane {

// Makes the shape below `node` a member of a shading group whose colour comes from the texture
// file: that of the first Lambert shader whose texture node holds exactly this name, else that of a
// new texture node, shader and group. What a failing call made before stays in the scene.
MStatus applyTexture(MObject node, const MString& fileName);

// The same for many shapes: the scene's shaders are looked through once. Nothing else may change
// shaders or their textures meanwhile.
class TextureNetworks {
 public:
  MStatus apply(MObject node, const MString& fileName);

 private:
  std::string shaderOf(const std::string& fileName);

  std::map<std::string, std::string> shaders_;  // the first of each texture file
  bool known_ = false;
};

}  // namespace morvane

#endif  // MORVANE_IMPORT_TEXTURENETWORK_H_
