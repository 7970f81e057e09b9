// The nodes that every scene has and that scene files rely on.

#include "host/scene/Scene.h"
#include "host/scene/Sets.h"
#include "host/scene/Values.h"

namespace host {
namespace {

struct DefaultNode {
  const char* type;  // made up when the host does not know it
  const char* name;
};

constexpr DefaultNode kDefaultNodes[] = {
    {"time", "time1"},
    {"sequenceManager", "sequenceManager1"},
    {"partition", "renderPartition"},
    {"renderGlobalsList", "renderGlobalsList1"},
    {"defaultLightList", "defaultLightList1"},
    {"defaultShaderList", "defaultShaderList1"},
    {"postProcessList", "postProcessList1"},
    {"defaultRenderUtilityList", "defaultRenderUtilityList1"},
    {"defaultRenderingList", "defaultRenderingList1"},
    {"lightList", "lightList1"},
    {"defaultTextureList", "defaultTextureList1"},
    {"lambert", "lambert1"},
    {"particleCloud", "particleCloud1"},
    {"shadingEngine", "initialShadingGroup"},
    {"shadingEngine", "initialParticleSE"},
    {"materialInfo", "initialMaterialInfo"},
    {"shaderGlow", "shaderGlow1"},
    {"dof", "dof1"},
    {"renderGlobals", "defaultRenderGlobals"},
    {"renderQuality", "defaultRenderQuality"},
    {"resolution", "defaultResolution"},
    {"objectSet", "defaultLightSet"},
    {"objectSet", "defaultObjectSet"},
    {"viewColorManager", "defaultViewColorManager"},
    {"colorManagementGlobals", "defaultColorMgtGlobals"},
    {"hwRenderGlobals", "hardwareRenderGlobals"},
    {"hardwareRenderingGlobals", "hardwareRenderingGlobals"},
    {"hwRenderGlobals", "defaultHardwareRenderGlobals"},
    {"partition", "characterPartition"},
    {"ikSystem", "ikSystem"},
    {"hyperGraphInfo", "hyperGraphInfo"},
    {"hyperLayout", "hyperGraphLayout"},
    {"globalCacheControl", "globalCacheControl"},
    {"strokeGlobals", "strokeGlobals"},
    {"dynController", "dynController1"},
};

struct DefaultConnection {
  const char* source;
  const char* destination;
};

constexpr DefaultConnection kDefaultConnections[] = {
    {"lambert1.outColor", "initialShadingGroup.surfaceShader"},
    {"lambert1.outColor", "initialParticleSE.surfaceShader"},
    {"particleCloud1.outColor", "initialParticleSE.volumeShader"},
    {"initialShadingGroup.partition", "renderPartition.sets[0]"},
    {"initialParticleSE.partition", "renderPartition.sets[1]"},
    {"lambert1.message", "defaultShaderList1.shaders[0]"},
    {"particleCloud1.message", "defaultShaderList1.shaders[1]"},
    {"initialShadingGroup.message", "initialMaterialInfo.shadingGroup"},
    {"lambert1.message", "initialMaterialInfo.material"},
};

void setTriple(const NodePtr& node, const char* attribute, double x, double y, double z) {
  if (const auto plug = Plug::find(node, attribute))
    writeValue(*plug, std::vector<double>{x, y, z});
}

}  // namespace

NodePtr Scene::makeDefault(const char* type, const char* name, const NodePtr& parent) {
  const NodePtr node = addNode(NodeType::findOrInvent(type, false), name, parent ? parent : world_);
  node->isDefault = true;
  return node;
}

NodePtr Scene::makeDefaultNode(const std::string& name) {
  return makeDefault(NumberedName::split(name).stem.c_str(), name.c_str());
}

void Scene::makeDefaultCamera(const char* name, double x, double y, double z, double rx,
                              double ry) {
  const NodePtr transform = makeDefault("transform", name);
  const NodePtr camera = makeDefault("camera", (std::string(name) + "Shape").c_str(), transform);
  setTriple(transform, "translate", x, y, z);
  setTriple(transform, "rotate", rx, ry, 0.0);
  writeValue(*Plug::find(transform, "visibility"), 0.0);
  writeValue(*Plug::find(camera, "orthographic"), std::string_view(name) == "persp" ? 0.0 : 1.0);
}

void Scene::makeDefaultNodes() {
  makeDefaultCamera("persp", 28.0, 21.0, 28.0, -27.938352729602379, 45.0);
  makeDefaultCamera("top", 0.0, 1000.1, 0.0, -90.0, 0.0);
  makeDefaultCamera("front", 0.0, 0.0, 1000.1, 0.0, 0.0);
  makeDefaultCamera("side", 1000.1, 0.0, 0.0, 0.0, 90.0);
  for (const DefaultNode& row : kDefaultNodes) makeDefault(row.type, row.name);
  for (const DefaultConnection& row : kDefaultConnections)
    connect(findPlug(row.source), findPlug(row.destination), false);
}

}  // namespace host
