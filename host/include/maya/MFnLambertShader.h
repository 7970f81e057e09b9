#ifndef MORVANE_MAYA_MFNLAMBERTSHADER_H_
#define MORVANE_MAYA_MFNLAMBERTSHADER_H_

#include <maya/MFnDependencyNode.h>

// Operations on a lambert shader and on those that build on it.
class MFnLambertShader : public MFnDependencyNode {
 public:
  MFnLambertShader() = default;
  explicit MFnLambertShader(const MObject& object, MStatus* status = nullptr);
  MFn::Type type() const override;

  // Makes a lambert with the host's default name and attaches to it. With `uiVisible` it joins the
  // scene's list of shaders.
  MObject create(bool uiVisible = true, MStatus* status = nullptr);
};

#endif  // MORVANE_MAYA_MFNLAMBERTSHADER_H_
