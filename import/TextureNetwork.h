#ifndef MORVANE_IMPORT_TEXTURENETWORK_H_
#define MORVANE_IMPORT_TEXTURENETWORK_H_

#include <maya/MObject.h>
#include <maya/MStatus.h>
#include <maya/MString.h>

namespace morvane {

// Makes the shape below `node` a member of a shading group whose colour comes from the texture
// file: that of the first Lambert shader whose texture node holds exactly this name, else that of a
// new texture node, shader and group. What a failing call made before stays in the scene.
MStatus applyTexture(MObject node, const MString& fileName);

}  // namespace morvane

#endif  // MORVANE_IMPORT_TEXTURENETWORK_H_
