#ifndef MORVANE_MAYA_MFN_H_
#define MORVANE_MAYA_MFN_H_

// What kinds of object there are. `MObject::hasFn` answers for an object's own kind and for every
// kind that it is a case of. The numbers are this host's own: use the names.
class MFn {
 public:
  enum Type {
    kInvalid = 0,
    kBase,
    kNamedObject,

    kDependencyNode,
    kUnknown,
    kTime,
    kPartition,
    kSet,
    kShadingEngine,
    kGroupId,
    kGroupParts,
    kMaterialInfo,
    kShaderList,
    kTextureList,
    kLightList,
    kLightLink,
    kRenderUtilityList,
    kPostProcessList,
    kRenderingList,
    kDisplayLayer,
    kDisplayLayerManager,
    kRenderLayer,
    kRenderLayerManager,
    kRenderGlobals,
    kRenderGlobalsList,
    kScript,
    kPlace2dTexture,
    kPlace3dTexture,
    kBump,
    kPolyPrimitive,
    kPolyPlane,
    kPolyCube,
    kPolySphere,
    kPolyCylinder,
    kMidModifier,
    kAnimCurve,

    kLambert,
    kReflect,
    kBlinn,
    kPhong,
    kPhongExplorer,
    kSurfaceShader,

    kTexture2d,
    kFileTexture,
    kPsdFileTexture,
    kRamp,
    kChecker,
    kLayeredTexture,

    kDagNode,
    kUnknownDag,
    kWorld,
    kTransform,
    kJoint,
    kLocator,
    kShape,
    kGeometric,
    kMesh,
    kNurbsCurve,
    kNurbsSurface,
    kCamera,
    kLight,
    kNonAmbientLight,
    kAmbientLight,
    kDirectionalLight,
    kPointLight,
    kSpotLight,
    kAreaLight,

    kComponent,
    kMeshComponent,
    kMeshVertComponent,
    kMeshEdgeComponent,
    kMeshPolygonComponent,

    kAttribute,
    kNumericAttribute,
    kEnumAttribute,
    kTypedAttribute,
    kCompoundAttribute,
    kMessageAttribute,
    kMatrixAttribute,
    kGenericAttribute,

    kPlugin,

    kLast,  // how many there are
  };
};

#endif  // MORVANE_MAYA_MFN_H_
