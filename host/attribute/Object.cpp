#include "host/attribute/Object.h"

#include <iterator>

namespace host {
namespace {

struct KindRow {
  MFn::Type kind;
  MFn::Type base;
  const char* name;
};

#define ROW(kind, base) \
  { MFn::kind, MFn::base, #kind }

// In the order of MFn::Type, so that a kind is its own index.
constexpr KindRow kRows[] = {
    ROW(kInvalid, kInvalid),
    ROW(kBase, kInvalid),
    ROW(kNamedObject, kBase),

    ROW(kDependencyNode, kNamedObject),
    ROW(kUnknown, kDependencyNode),
    ROW(kTime, kDependencyNode),
    ROW(kPartition, kDependencyNode),
    ROW(kSet, kDependencyNode),
    ROW(kShadingEngine, kSet),
    ROW(kGroupId, kDependencyNode),
    ROW(kGroupParts, kDependencyNode),
    ROW(kMaterialInfo, kDependencyNode),
    ROW(kShaderList, kDependencyNode),
    ROW(kTextureList, kDependencyNode),
    ROW(kLightList, kDependencyNode),
    ROW(kLightLink, kDependencyNode),
    ROW(kRenderUtilityList, kDependencyNode),
    ROW(kPostProcessList, kDependencyNode),
    ROW(kRenderingList, kDependencyNode),
    ROW(kDisplayLayer, kDependencyNode),
    ROW(kDisplayLayerManager, kDependencyNode),
    ROW(kRenderLayer, kDependencyNode),
    ROW(kRenderLayerManager, kDependencyNode),
    ROW(kRenderGlobals, kDependencyNode),
    ROW(kRenderGlobalsList, kDependencyNode),
    ROW(kScript, kDependencyNode),
    ROW(kPlace2dTexture, kDependencyNode),
    ROW(kPlace3dTexture, kTransform),
    ROW(kBump, kDependencyNode),
    ROW(kPolyPrimitive, kDependencyNode),
    ROW(kPolyPlane, kPolyPrimitive),
    ROW(kPolyCube, kPolyPrimitive),
    ROW(kPolySphere, kPolyPrimitive),
    ROW(kPolyCylinder, kPolyPrimitive),
    ROW(kMidModifier, kDependencyNode),
    ROW(kAnimCurve, kDependencyNode),

    ROW(kLambert, kDependencyNode),
    ROW(kReflect, kLambert),
    ROW(kBlinn, kReflect),
    ROW(kPhong, kReflect),
    ROW(kPhongExplorer, kReflect),
    ROW(kSurfaceShader, kDependencyNode),

    ROW(kTexture2d, kDependencyNode),
    ROW(kFileTexture, kTexture2d),
    ROW(kPsdFileTexture, kFileTexture),
    ROW(kRamp, kTexture2d),
    ROW(kChecker, kTexture2d),
    ROW(kLayeredTexture, kDependencyNode),

    ROW(kDagNode, kDependencyNode),
    ROW(kUnknownDag, kDagNode),
    ROW(kWorld, kDagNode),
    ROW(kTransform, kDagNode),
    ROW(kJoint, kTransform),
    ROW(kLocator, kShape),
    ROW(kShape, kDagNode),
    ROW(kGeometric, kShape),
    ROW(kMesh, kGeometric),
    ROW(kNurbsCurve, kGeometric),
    ROW(kNurbsSurface, kGeometric),
    ROW(kCamera, kShape),
    ROW(kLight, kShape),
    ROW(kNonAmbientLight, kLight),
    ROW(kAmbientLight, kLight),
    ROW(kDirectionalLight, kNonAmbientLight),
    ROW(kPointLight, kNonAmbientLight),
    ROW(kSpotLight, kNonAmbientLight),
    ROW(kAreaLight, kNonAmbientLight),

    ROW(kComponent, kBase),
    ROW(kMeshComponent, kComponent),
    ROW(kMeshVertComponent, kMeshComponent),
    ROW(kMeshEdgeComponent, kMeshComponent),
    ROW(kMeshPolygonComponent, kMeshComponent),

    ROW(kAttribute, kBase),
    ROW(kNumericAttribute, kAttribute),
    ROW(kEnumAttribute, kAttribute),
    ROW(kTypedAttribute, kAttribute),
    ROW(kCompoundAttribute, kAttribute),
    ROW(kMessageAttribute, kAttribute),
    ROW(kMatrixAttribute, kAttribute),
    ROW(kGenericAttribute, kAttribute),

    ROW(kPlugin, kBase),
};
#undef ROW

constexpr bool rowsMatchKinds() {
  for (std::size_t i = 0; i < std::size(kRows); ++i)
    if (kRows[i].kind != static_cast<MFn::Type>(i)) return false;
  return std::size(kRows) == MFn::kLast;
}
static_assert(rowsMatchKinds(), "a row for every kind, in the order of MFn::Type");

const KindRow& rowOf(MFn::Type kind) {
  const bool known = kind >= MFn::kInvalid && kind < MFn::kLast;
  return kRows[known ? kind : MFn::kInvalid];
}

}  // namespace

MFn::Type baseOf(MFn::Type kind) {
  return rowOf(kind).base;
}

const char* nameOf(MFn::Type kind) {
  return rowOf(kind).name;
}

bool Object::hasFn(MFn::Type kind) const {
  for (MFn::Type own = apiType(); own != MFn::kInvalid; own = baseOf(own))
    if (own == kind) return true;
  return false;
}

}  // namespace host
