#include "host/binary/NodeTags.h"

#include <algorithm>

#include "host/binary/ChunkWalker.h"

namespace host {
namespace {

struct Tag {
  const char (&letters)[5];
  const char* typeName;
};

// Matched with scenes that exist in both forms, by the nodes' UUIDs and default names.
constexpr Tag kTags[] = {
    {"AMBL", "ambientLight"},
    {"ARLT", "areaLight"},
    {"BLDT", "blindDataTemplate"},
    {"DCAM", "camera"},
    {"DCAV", "cameraView"},
    {"DECT", "deleteComponent"},
    {"DIRL", "directionalLight"},
    {"DLAT", "lookAt"},
    {"DMSH", "mesh"},
    {"DMTI", "materialInfo"},
    {"DORC", "orientConstraint"},
    {"DPAR", "parentConstraint"},
    {"DPLM", "displayLayerManager"},
    {"DPVC", "poleVectorConstraint"},
    {"DSCC", "scaleConstraint"},
    {"DSPL", "displayLayer"},
    {"DUNT", "unitConversion"},
    {"FBLS", "blendShape"},
    {"FMPT", "tweak"},
    {"FPOS", "dagPose"},
    {"FPRN", "fosterParent"},
    {"FSCL", "skinCluster"},
    {"GBIN", "geomBind"},
    {"GPID", "groupId"},
    {"GRPP", "groupParts"},
    {"JOIN", "joint"},
    {"KEFF", "ikEffector"},
    {"KHDL", "ikHandle"},
    {"KRPS", "ikRPsolver"},
    {"KSPS", "ikSplineSolver"},
    {"LOCT", "locator"},
    {"NCRC", "makeNurbCircle"},
    {"NCRV", "nurbsCurve"},
    {"NGEI", "nodeGraphEditorInfo"},
    {"OBST", "objectSet"},
    {"PBV3", "polyBevel3"},
    {"PCON", "polyCone"},
    {"PCPV", "polyColorPerVertex"},
    {"PCTA", "animCurveTA"},
    {"PCTL", "animCurveTL"},
    {"PCTU", "animCurveTU"},
    {"PCUA", "animCurveUA"},
    {"PCUB", "polyCube"},
    {"PCUU", "animCurveUU"},
    {"PCYL", "polyCylinder"},
    {"PCYP", "polyCylProj"},
    {"PEXF", "polyExtrudeFace"},
    {"PMAC", "polyMapCut"},
    {"PMES", "polyPlane"},
    {"POIT", "pointLight"},
    {"PPIP", "polyPipe"},
    {"PPLP", "polyPlanarProj"},
    {"PSDM", "poseInterpolatorManager"},
    {"PSMF", "polySmoothFace"},
    {"PSPH", "polySphere"},
    {"PSPP", "polySphProj"},
    {"PSPR", "polySplitRing"},
    {"PTUV", "polyTweakUV"},
    {"PTWK", "polyTweak"},
    {"PUNI", "polyUnite"},
    {"RBLN", "blinn"},
    {"REFN", "reference"},
    {"RLAM", "lambert"},
    {"RLLK", "lightLinker"},
    {"RNDL", "renderLayer"},
    {"RNLM", "renderLayerManager"},
    {"RPHO", "phong"},
    {"RPL2", "place2dTexture"},
    {"RTFT", "file"},
    {"SCRP", "script"},
    {"SDML", "shapeEditorManager"},
    {"SHAD", "shadingEngine"},
    {"SPTL", "spotLight"},
    {"SQNC", "sequencer"},
    {"TGEO", "transformGeometry"},
    {"XFRM", "transform"},
};

bool isLetterOrDigit(char c) {
  return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9');
}

}  // namespace

std::string NodeTags::nameOf(std::uint32_t tag) const {
  const auto known = std::find_if(std::begin(kTags), std::end(kTags),
                                  [tag](const Tag& row) { return tagOf(row.letters) == tag; });
  if (known != std::end(kTags)) return known->typeName;
  const auto found = fromPlugins_.find(tag);
  if (found != fromPlugins_.end()) return found->second;
  const std::string text = tagText(tag);
  const bool isName = text.size() == 4 && std::all_of(text.begin(), text.end(), isLetterOrDigit) &&
                      (text.front() < '0' || text.front() > '9');
  return isName ? text : "tag" + text;
}

}  // namespace host
