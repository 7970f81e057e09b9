#include "goblin/GoblinSearch.h"

#include <maya/MFnDagNode.h>
#include <maya/MItDag.h>
#include <maya/MString.h>

#include <cstdio>

#include "tile/GoblinExtraction.h"
#include "tile/SceneAttributes.h"

namespace morvane {

bool isGoblin(const MObject& mesh) {
  MString name;
  return getStringAttr(mesh, "goblinName", name, true) == MStatus::kSuccess && name.length() != 0;
}

MStatus collectMeshes(const MObject& root, MSelectionList& found, bool wantGoblins,
                      bool wantOthers) {
  if (!root.hasFn(MFn::kDagNode)) {
    std::printf("Error: Dag node doesn't have a DagNode function!\n");
    return MStatus::kSuccess;
  }
  MItDag walk(MItDag::kDepthFirst, MFn::kMesh);
  for (walk.reset(root, MItDag::kDepthFirst, MFn::kMesh); !walk.isDone(); walk.next()) {
    MObject mesh = walk.currentItem();
    // In some hosts a walk starts at the root, whatever the filter.
    if (!isShownMesh(mesh) || !(isGoblin(mesh) ? wantGoblins : wantOthers)) continue;
    std::printf("    Adding %s\n", getNodeName(mesh).asChar());
    found.add(mesh);
  }
  return MStatus::kSuccess;
}

MStatus printMeshList(const MSelectionList& list) {
  for (unsigned i = 0; i < list.length(); ++i) {
    MObject mesh;
    list.getDependNode(i, mesh);
    MFnDagNode node(mesh);
    MString goblinName;
    getStringAttr(mesh, "goblinName", goblinName, true);
    std::printf("   %s   \t%s   \t%s\n", mesh.apiTypeStr(), node.name().asChar(),
                goblinName.asChar());
  }
  return MStatus::kSuccess;
}

}  // namespace morvane
