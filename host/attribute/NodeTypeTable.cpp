#include "host/attribute/NodeTypeTable.h"

#include <algorithm>
#include <charconv>
#include <string>
#include <string_view>

#include "host/graph/GraphNode.h"

namespace host {
namespace {

// Attributes that several types have.
#define OUT_UV "outUV:o:float2!{outU:ou:float outV:ov:float} "
#define UV_COORD "uvCoord:uv:float2{uCoord:uc:float vCoord:vc:float} "
#define UV_FILTER "uvFilterSize:fs:float2{uvFilterSizeX:fsx:float uvFilterSizeY:fsy:float} "
#define OUT_COLOR "outColor:oc:color! outAlpha:oa:float! "
#define POLY_OUT "output:out:mesh createUVs:cuv:enum axis:ax:double3 "
#define FACE_PLACEMENT                                                                \
  "coverage:c:float2{coverageU:cu:float=1 coverageV:cv:float=1} "                     \
  "translateFrame:tf:float2{translateFrameU:tfu:float translateFrameV:tfv:float} "    \
  "rotateFrame:rf:floatAngle mirrorU:mu:bool mirrorV:mv:bool stagger:s:bool "         \
  "wrapU:wu:bool=1 wrapV:wv:bool=1 "                                                  \
  "repeatUV:re:float2{repeatU:reu:float=1 repeatV:rev:float=1} "                      \
  "offset:of:float2{offsetU:ofu:float offsetV:ofv:float} rotateUV:r:floatAngle "      \
  "noiseUV:n:float2{noiseU:nu:float noiseV:nv:float} "                                \
  "vertexUvOne:vt1:float2{vertexUvOneU:t1u:float vertexUvOneV:t1v:float} "            \
  "vertexUvTwo:vt2:float2{vertexUvTwoU:t2u:float vertexUvTwoV:t2v:float} "            \
  "vertexUvThree:vt3:float2{vertexUvThreeU:t3u:float vertexUvThreeV:t3v:float} "      \
  "vertexCameraOne:vc1:float3{vertexCameraOneX:c1x:float vertexCameraOneY:c1y:float " \
  "vertexCameraOneZ:c1z:float} "

constexpr char kDagNode[] =
    "boundingBox:bb:compound{boundingBoxMin:bbmn:double3 boundingBoxMax:bbmx:double3 "
    "boundingBoxSize:bbsi:double3} center:c:double3 "
    "matrix:m:matrix inverseMatrix:im:matrix worldMatrix:wm:matrix[] "
    "worldInverseMatrix:wim:matrix[] parentMatrix:pm:matrix[] parentInverseMatrix:pim:matrix[] "
    "visibility:v:bool+=1 intermediateObject:io:bool template:tmp:bool "
    "instObjGroups:iog:compound[]{objectGroups:og:compound[]{objectGrpCompList:gcl:componentList "
    "objectGroupId:gid:long objectGrpColor:gco:short}} "
    "objectColor:obc:short useObjectColor:uoc:bool ghosting:gh:bool renderInfo:ri:message "
    "drawOverride:do:compound{overrideDisplayType:ovdt:enum overrideLevelOfDetail:ovlod:enum "
    "overrideShading:ovs:bool=1 overrideTexturing:ovt:bool=1 overridePlayback:ovp:bool=1 "
    "overrideEnabled:ove:bool overrideVisibility:ovv:bool=1 overrideColor:ovc:byte}";

constexpr char kTransform[] =
    "translate:t:double3+ rotate:r:double3+ rotateOrder:ro:enum scale:s:double3+=1 "
    "shear:sh:double3{shearXY:shxy:double shearXZ:shxz:double shearYZ:shyz:double} "
    "rotatePivot:rp:double3 rotatePivotTranslate:rpt:double3 scalePivot:sp:double3 "
    "scalePivotTranslate:spt:double3 rotateAxis:ra:double3 transMinusRotatePivot:tmrp:double3 "
    "xformMatrix:xm:matrix offsetParentMatrix:opm:matrix inheritsTransform:it:bool=1 "
    "displayHandle:dh:bool displayLocalAxis:dla:bool rotateQuaternion:rq:double4{"
    "rotateQuaternionX:rqx:double rotateQuaternionY:rqy:double rotateQuaternionZ:rqz:double "
    "rotateQuaternionW:rqw:double=1}";

constexpr char kMesh[] =
    "inMesh:i:mesh outMesh:o:mesh worldMesh:w:mesh[] cachedInMesh:ci:mesh "
    "vrts:vt:float3[]{vrtx:vx:float vrty:vy:float vrtz:vz:float} "
    "pnts:pt:float3[]{pntx:px:float pnty:py:float pntz:pz:float} edge:ed:long3[] "
    "face:fc:polyFaces[] normals:n:float3[]{normalx:nx:float normaly:ny:float normalz:nz:float} "
    "uvSet:uvst:compound[]{uvSetName:uvsn:string uvSetPoints:uvsp:float2[]{uvSetPointsU:uvpu:float "
    "uvSetPointsV:uvpv:float} uvTweakLocation:uvtw:generic} tweakLocation:twl:generic "
    "currentUVSet:cuvs:string "
    "colorSet:clst:compound[]{colorName:clsn:string clamped:clam:bool representation:rprt:enum "
    "colorSetPoints:clsp:floatArray[]} currentColorSet:ccls:string displayColors:dcol:bool "
    "displayColorChannel:dcc:string creaseData:cd:dataPolyComponent "
    "creaseVertexData:cvd:dataPolyComponent pinData:pd:dataPolyComponent[] "
    "holeFaceData:hfd:dataPolyComponent doubleSided:ds:bool=1 opposite:op:bool "
    "smoothLevel:lev:long quadSplit:qsp:enum=1 useSmoothPreview:usp:bool";

constexpr char kMaterial[] =
    "color:c:color=0.5 transparency:it:color ambientColor:ambc:color incandescence:ic:color "
    "diffuse:dc:float=0.8 translucence:tc:float normalCamera:n:float3 outColor:oc:color! "
    "outTransparency:ot:color! outGlowColor:ogc:color! glowIntensity:gi:float hideSource:hs:bool";

const std::vector<NodeTypeRow> kRows = {
    {"dependNode", "", MFn::kDependencyNode, "",
     "message:msg:message caching:cch:bool isHistoricallyInteresting:ihi:byte=2 nodeState:nds:enum "
     "frozen:fzn:bool binMembership:bnm:string"},
    {"containerBase", "dependNode", MFn::kDependencyNode, "", ""},
    {"entity", "containerBase", MFn::kDependencyNode, "", ""},
    {"dagNode", "entity", MFn::kDagNode, "", kDagNode},
    {"world", "dagNode", MFn::kWorld, "", ""},
    {"transform", "dagNode", MFn::kTransform, "", kTransform},
    {"joint", "transform", MFn::kJoint, "",
     "jointOrient:jo:double3 inverseScale:is:double3=1 segmentScaleCompensate:ssc:bool=1 "
     "radius:radi:float=1 jointType:jt:enum side:sd:enum type:typ:enum otherType:otp:string "
     "drawStyle:ds:enum bindPose:bps:matrix preferredAngle:pa:double3"},
    {"dagContainer", "transform", MFn::kTransform, "", ""},
    {"fosterParent", "dagNode", MFn::kDagNode, "", ""},
    {"constraint", "transform", MFn::kTransform, "", ""},
    {"ikHandle", "transform", MFn::kTransform, "", ""},
    {"ikEffector", "transform", MFn::kTransform, "effector", ""},
    {"place3dTexture", "transform", MFn::kPlace3dTexture, "", ""},
    {"shape", "dagNode", MFn::kShape, "", ""},
    {"geometryShape", "shape", MFn::kGeometric, "",
     "castsShadows:csh:bool=1 receiveShadows:rcsh:bool=1 motionBlur:mb:bool=1 "
     "primaryVisibility:vis:bool=1 visibleInReflections:vir:bool visibleInRefractions:vif:bool "
     "smoothShading:smt:bool=1"},
    {"deformableShape", "geometryShape", MFn::kGeometric, "", ""},
    {"controlPoint", "deformableShape", MFn::kGeometric, "", ""},
    {"surfaceShape", "controlPoint", MFn::kGeometric, "", ""},
    {"curveShape", "controlPoint", MFn::kGeometric, "", ""},
    {"mesh", "surfaceShape", MFn::kMesh, "polySurface", kMesh},
    {"nurbsCurve", "curveShape", MFn::kNurbsCurve, "curve",
     "create:cr:nurbsCurve local:l:nurbsCurve worldSpace:ws:nurbsCurve[] cached:cc:nurbsCurve"},
    {"nurbsSurface", "surfaceShape", MFn::kNurbsSurface, "nurbsSurface",
     "create:cr:nurbsSurface local:l:nurbsSurface worldSpace:ws:nurbsSurface[] "
     "cached:cc:nurbsSurface"},
    {"locator", "shape", MFn::kLocator, "", "localPosition:lp:double3 localScale:los:double3=1"},
    {"camera", "shape", MFn::kCamera, "",
     "renderable:rnd:bool centerOfInterest:coi:double=5 orthographic:o:bool "
     "orthographicWidth:ow:doubleLinear=10 imageName:imn:string depthName:den:string "
     "maskName:man:string "
     "homeCommand:hc:string focalLength:fl:double=35 nearClipPlane:ncp:double=0.1 "
     "farClipPlane:fcp:double=10000 horizontalFilmAperture:hfa:double "
     "verticalFilmAperture:vfa:double cameraAperture:cap:double2{horizontalFilm:hf:double "
     "verticalFilm:vf:double} tumblePivot:tp:double3"},
    {"light", "shape", MFn::kLight, "",
     "color:cl:color=1 intensity:in:float=1 useRayTraceShadows:urs:bool lightData:ltd:lightData"},
    {"ambientLight", "light", MFn::kAmbientLight, "", ""},
    {"nonAmbientLight", "light", MFn::kNonAmbientLight, "", "decayRate:de:enum"},
    {"directionalLight", "nonAmbientLight", MFn::kDirectionalLight, "", ""},
    {"pointLight", "nonAmbientLight", MFn::kPointLight, "", ""},
    {"spotLight", "nonAmbientLight", MFn::kSpotLight, "",
     "coneAngle:ca:doubleAngle=40 penumbraAngle:pa:doubleAngle dropoff:dro:double"},
    {"areaLight", "nonAmbientLight", MFn::kAreaLight, "", ""},

    {"objectSet", "dependNode", MFn::kSet, "set",
     "dagSetMembers:dsm:message[] dnSetMembers:dnsm:message[] memberWireframeColor:mwc:short=-1 "
     "partition:pa:message groupNodes:gn:message[] usedBy:ub:message[] annotation:an:string "
     "isLayer:il:bool renderableOnlySet:ro:bool verticesOnlySet:vo:bool edgesOnlySet:eo:bool "
     "facetsOnlySet:fo:bool editPointsOnlySet:epo:bool"},
    {"shadingEngine", "objectSet", MFn::kShadingEngine, "",
     "surfaceShader:ss:color displacementShader:ds:float volumeShader:vs:color "
     "imageShader:is:color defaultShadows:dsh:message[] defaultLights:dl:message"},
    {"partition", "dependNode", MFn::kPartition, "",
     "sets:st:message[] partitionType:pt:long annotation:an:string"},
    {"groupId", "dependNode", MFn::kGroupId, "", "groupId:id:long"},
    {"groupParts", "dependNode", MFn::kGroupParts, "",
     "inputGeometry:ig:mesh outputGeometry:og:mesh inputComponents:ic:componentList "
     "groupId:gi:long"},
    {"materialInfo", "dependNode", MFn::kMaterialInfo, "",
     "shadingGroup:sg:message material:m:message texture:t:message[]"},

    {"shadingDependNode", "dependNode", MFn::kDependencyNode, "", ""},
    {"lambert", "shadingDependNode", MFn::kLambert, "", kMaterial},
    {"reflect", "lambert", MFn::kReflect, "",
     "specularColor:sc:color=0.5 reflectivity:rfl:float=0.5 reflectedColor:rc:color"},
    {"blinn", "reflect", MFn::kBlinn, "",
     "eccentricity:ec:float=0.3 specularRollOff:sro:float=0.7"},
    {"phong", "reflect", MFn::kPhong, "", "cosinePower:cp:float=20"},
    {"phongE", "reflect", MFn::kPhongExplorer, "",
     "roughness:rn:float=0.7 highlightSize:hls:float=0.5 whiteness:wn:color=0.5"},
    {"anisotropic", "reflect", MFn::kReflect, "", "angle:ag:float roughness:rn:float=0.7"},
    {"surfaceShader", "shadingDependNode", MFn::kSurfaceShader, "",
     "outColor:oc:color outTransparency:ot:color outGlowColor:ogc:color "
     "outMatteOpacity:omo:color=1"},
    {"particleCloud", "shadingDependNode", MFn::kDependencyNode, "",
     "color:c:color=0.5 outColor:oc:color! transparency:t:color"},

    {"texture2d", "shadingDependNode", MFn::kTexture2d, "",
     UV_COORD UV_FILTER OUT_COLOR
     "invert:i:bool alphaIsLuminance:ail:bool colorGain:cg:color=1 colorOffset:co:color "
     "defaultColor:dc:color=0.5 alphaGain:ag:float=1 alphaOffset:ao:float filter:f:float=1 "
     "filterOffset:fo:float"},
    {"file", "texture2d", MFn::kFileTexture, "",
     FACE_PLACEMENT
     "fileTextureName:ftn:string fileTextureNamePattern:ftnp:string useFrameExtension:ufe:bool "
     "frameExtension:fe:long=1 filterType:ft:enum=3 preFilter:pf:bool colorSpace:cs:string "
     "outTransparency:ot:color! uvTilingMode:uvt:enum outSize:os:float2!{outSizeX:osx:float "
     "outSizeY:osy:float} resolution:res:long=256"},
    {"psdFileTex", "file", MFn::kPsdFileTexture, "",
     "layerSetName:lsn:string layerSets:lys:string[] alpha:al:string alphaList:als:string[]"},
    {"PSDTextureNode", "psdFileTex", MFn::kPsdFileTexture, "", ""},
    {"checker", "texture2d", MFn::kChecker, "",
     "color1:c1:color=1 color2:c2:color contrast:ct:float"},
    {"ramp", "texture2d", MFn::kRamp, "",
     "type:t:enum interpolation:in:enum=1 colorEntryList:cel:compound[]{position:ep:float "
     "color:ec:color}"},
    {"layeredTexture", "shadingDependNode", MFn::kLayeredTexture, "",
     OUT_COLOR
     "inputs:cs:compound[]{color:c:color alpha:a:float=1 blendMode:bm:enum isVisible:iv:bool=1}"},
    {"place2dTexture", "shadingDependNode", MFn::kPlace2dTexture, "",
     FACE_PLACEMENT UV_COORD UV_FILTER OUT_UV
     "outUvFilterSize:ofs:float2!{outUvFilterSizeX:ofsx:float outUvFilterSizeY:ofsy:float}"},
    {"bump2d", "shadingDependNode", MFn::kBump, "",
     "bumpValue:bv:float bumpDepth:bd:float=1 bumpInterp:bi:enum outNormal:o:float3!"},

    {"polyPrimitive", "dependNode", MFn::kPolyPrimitive, "", POLY_OUT},
    {"polyPlane", "polyPrimitive", MFn::kPolyPlane, "",
     "width:w:doubleLinear=1 height:h:doubleLinear=1 subdivisionsWidth:sw:long=10 "
     "subdivisionsHeight:sh:long=10"},
    {"polyCube", "polyPrimitive", MFn::kPolyCube, "",
     "width:w:doubleLinear=1 height:h:doubleLinear=1 depth:d:doubleLinear=1 "
     "subdivisionsWidth:sw:long=1 "
     "subdivisionsHeight:sh:long=1 subdivisionsDepth:sd:long=1"},
    {"polySphere", "polyPrimitive", MFn::kPolySphere, "",
     "radius:r:doubleLinear=1 subdivisionsAxis:sa:long=20 subdivisionsHeight:sh:long=20"},
    {"polyCylinder", "polyPrimitive", MFn::kPolyCylinder, "",
     "radius:r:doubleLinear=1 height:h:doubleLinear=2 subdivisionsAxis:sa:long=20 "
     "subdivisionsHeight:sh:long=1 "
     "subdivisionsCaps:sc:long=0 roundCap:rcp:bool"},

    {"polyCone", "polyPrimitive", MFn::kPolyPrimitive, "",
     "radius:r:doubleLinear=1 height:h:doubleLinear=2 subdivisionsAxis:sa:long=20 "
     "subdivisionsHeight:sh:long=1 subdivisionsCaps:sc:long=0 roundCap:rcp:bool "
     "heightBaseline:hbl:double"},
    {"polyPyramid", "polyPrimitive", MFn::kPolyPrimitive, "",
     "sideLength:w:doubleLinear=1 numberOfSides:ns:long=4 subdivisionsHeight:sh:long=1 "
     "subdivisionsCaps:sc:long=0 heightBaseline:hbl:double"},
    {"polyTorus", "polyPrimitive", MFn::kPolyPrimitive, "",
     "radius:r:doubleLinear=1 sectionRadius:sr:doubleLinear=0.5 twist:tw:doubleAngle "
     "subdivisionsAxis:sa:long=20 subdivisionsHeight:sh:long=20 heightBaseline:hbl:double"},
    // The host does not evaluate the types below, but knows which of their attributes are lengths.
    {"polyPipe", "polyPrimitive", MFn::kPolyPrimitive, "",
     "radius:r:doubleLinear=1 height:h:doubleLinear=2 thickness:t:doubleLinear=0.5 "
     "subdivisionsAxis:sa:long=20 subdivisionsHeight:sh:long=1 subdivisionsCaps:sc:long"},
    {"polyPrism", "polyPrimitive", MFn::kPolyPrimitive, "",
     "length:l:doubleLinear=2 sideLength:sl:doubleLinear=1 numberOfSides:ns:long=3 "
     "subdivisionsHeight:sh:long=1 subdivisionsCaps:sc:long"},
    {"polyHelix", "polyPrimitive", MFn::kPolyPrimitive, "",
     "coils:c:double=3 height:h:doubleLinear=2 width:w:doubleLinear=2 radius:r:doubleLinear=0.4 "
     "subdivisionsAxis:sa:long=8 subdivisionsCoil:sco:long=50 subdivisionsCaps:sc:long"},
    {"polyPlatonicSolid", "polyPrimitive", MFn::kPolyPrimitive, "",
     "radius:r:doubleLinear=1 sideLength:sl:doubleLinear=1 solidType:st:enum"},
    {"polyPlatonic", "polyPlatonicSolid", MFn::kPolyPrimitive, "", ""},
    {"polyDisc", "polyPrimitive", MFn::kPolyPrimitive, "",
     "radius:r:doubleLinear=1 sides:s:long=3"},
    {"polyExtrudeFace", "dependNode", MFn::kDependencyNode, "",
     "inputPolymesh:ip:mesh output:out:mesh translate:t:double3 "
     "localTranslate:lt:double3{localTranslateX:ltx:doubleLinear localTranslateY:lty:doubleLinear "
     "localTranslateZ:ltz:doubleLinear} pivot:pvt:float3{pivotX:pvx:floatLinear "
     "pivotY:pvy:floatLinear pivotZ:pvz:floatLinear} thickness:tk:doubleLinear "
     "offset:off:doubleLinear"},
    {"polyPlanarProj", "dependNode", MFn::kDependencyNode, "",
     "inputPolymesh:ip:mesh output:out:mesh "
     "projectionCenter:pc:double3{projectionCenterX:pcx:doubleLinear "
     "projectionCenterY:pcy:doubleLinear projectionCenterZ:pcz:doubleLinear} "
     "rotate:ro:double3{rotateX:rx:doubleAngle rotateY:ry:doubleAngle rotateZ:rz:doubleAngle} "
     "projectionScale:ps:double2{projectionWidth:pw:doubleLinear "
     "projectionHeight:ph:doubleLinear}"},
    {"polyMergeVert", "dependNode", MFn::kDependencyNode, "",
     "inputPolymesh:ip:mesh output:out:mesh distance:d:doubleLinear"},

    {"time", "dependNode", MFn::kTime, "", "outTime:o:time=1 unwarpedTime:unw:time"},
    {"reference", "dependNode", MFn::kDependencyNode, "",
     "placeHolderList:phl:generic[] edits:ed:dataReferenceEdits"},
    {"script", "dependNode", MFn::kScript, "",
     "before:b:string after:a:string scriptType:st:enum sourceType:stp:enum"},
    {"displayLayerManager", "dependNode", MFn::kDisplayLayerManager, "layerManager",
     "displayLayerId:dli:long[] currentDisplayLayer:cdl:long"},
    {"displayLayer", "dependNode", MFn::kDisplayLayer, "layer", "identification:id:long"},
    {"renderLayerManager", "dependNode", MFn::kRenderLayerManager, "",
     "renderLayerId:rlmi:long[] currentRenderLayer:crl:long"},
    {"renderLayer", "dependNode", MFn::kRenderLayer, "", "identification:rlid:long global:g:bool"},
    {"lightLinker", "dependNode", MFn::kLightLink, "", ""},
    {"defaultShaderList", "dependNode", MFn::kShaderList, "", "shaders:s:message[]"},
    {"defaultTextureList", "dependNode", MFn::kTextureList, "", "textures:tx:message[]"},
    {"defaultRenderUtilityList", "dependNode", MFn::kRenderUtilityList, "",
     "utilities:u:message[]"},
    {"defaultRenderingList", "dependNode", MFn::kRenderingList, "", "rendering:r:message[]"},
    {"defaultLightList", "dependNode", MFn::kLightList, "", "lightLists:ls:message[]"},
    {"lightList", "dependNode", MFn::kLightList, "", "lights:l:message[]"},
    {"postProcessList", "dependNode", MFn::kPostProcessList, "", "postProcesses:p:message[]"},
    {"renderGlobalsList", "dependNode", MFn::kRenderGlobalsList, "", "renderGlobals:rg:message[]"},
    {"renderGlobals", "dependNode", MFn::kRenderGlobals, "", ""},
    {"animCurve", "dependNode", MFn::kAnimCurve, "", ""},
};

// Types that build on types of host/graph.
const std::vector<NodeTypeRow> kDerivedRows = {
    {"lookAt", "aimConstraint", MFn::kTransform, "", ""},
    {"poleVectorConstraint", "pointConstraint", MFn::kTransform, "", ""},
    {"tangentConstraint", "constraint", MFn::kTransform, "", ""},
    {"normalConstraint", "constraint", MFn::kTransform, "", ""},
    {"geometryConstraint", "constraint", MFn::kTransform, "", ""},
    {"pointOnPolyConstraint", "constraint", MFn::kTransform, "", ""},
};

std::vector<NodeTypeRow> makeRows() {
  std::vector<NodeTypeRow> rows = kRows;
  for (const GraphNodeType& type : graphNodeTypes()) {
    const auto base = std::find_if(rows.begin(), rows.end(), [&type](const NodeTypeRow& row) {
      return std::string_view(row.name) == type.base;
    });
    if (base != rows.end()) rows.push_back({type.name, type.base, base->kind, "", type.attributes});
  }
  rows.insert(rows.end(), kDerivedRows.begin(), kDerivedRows.end());
  return rows;
}

// Reads an attribute list from the front of `rest_` on.
class TableParser {
 public:
  explicit TableParser(std::string_view text) : rest_(text) {}

  std::vector<AttributePtr> parseList() {
    std::vector<AttributePtr> attributes;
    skipBlanks();
    while (!rest_.empty() && rest_.front() != '}') {
      attributes.push_back(parseAttribute());
      skipBlanks();
    }
    if (!rest_.empty()) rest_.remove_prefix(1);
    return attributes;
  }

 private:
  AttributePtr parseAttribute() {
    const std::string longName = takeUntil(":");
    const std::string shortName = takeUntil(":");
    const std::string word = takeUntil(" []={}!+");
    const bool isColour = word == "color";
    auto attribute = std::make_shared<Attribute>(longName, shortName, isColour ? "float3" : word);
    attribute->isColour = isColour;
    if (rest_.substr(0, 1) == "!") {
      attribute->writable = false;
      rest_.remove_prefix(1);
    }
    const bool isKeyable = rest_.substr(0, 1) == "+";
    if (isKeyable) rest_.remove_prefix(1);
    attribute->keyable = isKeyable && !attribute->isNumericCompound();
    if (rest_.substr(0, 2) == "[]") {
      attribute->isArray = true;
      rest_.remove_prefix(2);
    }
    const AttributeValue defaultValue = parseDefault();
    if (!rest_.empty() && rest_.front() == '{') {
      rest_.remove_prefix(1);
      for (const AttributePtr& child : parseList()) Attribute::adopt(attribute, child);
    } else if (attribute->isNumericCompound()) {
      addUsualChildren(attribute, defaultValue, isKeyable);
    } else {
      attribute->defaultValue = defaultValue;
    }
    return attribute;
  }

  AttributeValue parseDefault() {
    if (rest_.empty() || rest_.front() != '=') return {};
    rest_.remove_prefix(1);
    double number = 0.0;
    const auto parsed = std::from_chars(rest_.data(), rest_.data() + rest_.size(), number);
    rest_.remove_prefix(static_cast<std::size_t>(parsed.ptr - rest_.data()));
    return number;
  }

  static void addUsualChildren(const AttributePtr& parent, const AttributeValue& defaultValue,
                               bool areKeyable) {
    const std::string_view longEnds = parent->isColour ? "RGB" : "XYZW";
    const std::string_view shortEnds = parent->isColour ? "rgb" : "xyzw";
    const auto count = static_cast<std::size_t>(numericCompoundSize(parent->typeWord()));
    for (std::size_t i = 0; i < count; ++i) {
      const auto child = std::make_shared<Attribute>(
          parent->longName() + longEnds[i], parent->shortName() + shortEnds[i],
          std::string(numericCompoundElement(parent->typeWord())));
      child->defaultValue = defaultValue;
      child->keyable = areKeyable;
      Attribute::adopt(parent, child);
    }
  }

  // The text up to one of `ends`. A colon that ends it is skipped.
  std::string takeUntil(std::string_view ends) {
    const std::size_t end = std::min(rest_.find_first_of(ends), rest_.size());
    std::string taken(rest_.substr(0, end));
    rest_.remove_prefix(end);
    if (!rest_.empty() && rest_.front() == ':') rest_.remove_prefix(1);
    return taken;
  }

  void skipBlanks() {
    while (!rest_.empty() && rest_.front() == ' ') rest_.remove_prefix(1);
  }

  std::string_view rest_;
};

}  // namespace

const std::vector<NodeTypeRow>& nodeTypeRows() {
  static const std::vector<NodeTypeRow> rows = makeRows();
  return rows;
}

std::vector<AttributePtr> parseAttributeTable(const char* text) {
  return TableParser(text).parseList();
}

}  // namespace host
