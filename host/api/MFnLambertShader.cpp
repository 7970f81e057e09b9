#include <maya/MFnLambertShader.h>

#include "host/api/Status.h"
#include "host/scene/Scene.h"

MFnLambertShader::MFnLambertShader(const MObject& object, MStatus* status) {
  const MStatus attached = setObject(object);
  if (status) *status = attached;
}

MFn::Type MFnLambertShader::type() const {
  return MFn::kLambert;
}

MObject MFnLambertShader::create(bool uiVisible, MStatus* status) {
  host::Scene& scene = host::Scene::current();
  const host::NodePtr made = scene.createNode(*host::NodeType::find("lambert"));
  host::report(status, made != nullptr);
  if (!made) return MObject();
  if (uiVisible) {
    const host::Plug shaders = scene.findPlug("defaultShaderList1.shaders");
    host::connect(*host::Plug::find(made, "message"), host::nextElement(shaders), false);
  }
  setObject(MObject(made));
  return MObject(made);
}
