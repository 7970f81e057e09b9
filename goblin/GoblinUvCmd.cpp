#include "goblin/GoblinUvCmd.h"

#include <maya/MFnDagNode.h>
#include <maya/MGlobal.h>
#include <maya/MItDag.h>
#include <maya/MItSelectionList.h>
#include <maya/MString.h>

#include <cstdio>
#include <cstring>
#include <new>

#include "goblin/GoblinSearch.h"
#include "goblin/SurfaceSampling.h"
#include "tile/GoblinExtraction.h"
#include "tile/SceneAttributes.h"

namespace morvane {

void* GoblinUvCmd::creator() {
  return new (std::nothrow) GoblinUvCmd;
}

MStatus GoblinUvCmd::doIt(const MArgList& args) {
  arguments = args;
  MGlobal::getActiveSelectionList(selection);
  redoIt();
  return MStatus::kSuccess;
}

MStatus GoblinUvCmd::undoIt() {
  return MStatus::kSuccess;
}

MStatus GoblinUvCmd::redoIt() {
  std::printf("---------- begin goblin_uv (v1.1) ----------\n");
  findGoblins();
  findGeometry();
  std::printf("Found goblins (%u meshes):\n", goblins.length());
  printMeshList(goblins);
  std::printf("Found UVed geometry (%u meshes):\n", uvGeometry.length());
  printMeshList(uvGeometry);
  const GeometrySearch search(uvGeometry);
  for (unsigned i = 0; i < goblins.length(); ++i) {
    MObject goblin;
    goblins.getDependNode(i, goblin);
    sampleGoblin(goblin, search);
  }
  return MStatus::kSuccess;
}

bool GoblinUvCmd::isUndoable() const {
  return false;
}

bool GoblinUvCmd::usesSelectedSurface() const {
  return selection.length() > 0 && arguments.length() > 0 && arguments.asString(0) == "-s";
}

MSelectionList GoblinUvCmd::goblinRoots() const {
  if (usesSelectedSurface()) {
    MSelectionList roots;
    for (unsigned i = 0; i + 1 < selection.length(); ++i) {
      MObject node;
      selection.getDependNode(i, node);
      roots.add(node);
    }
    return roots;
  }
  if (selection.length() > 0 && arguments.length() != 2) return selection;
  MSelectionList roots;
  if (arguments.length() == 1 || arguments.length() == 2) roots.add(arguments.asString(0));
  if (arguments.length() == 0) roots.add(MString("Root"));
  return roots;
}

void GoblinUvCmd::findGoblins() {
  goblins.clear();
  const MSelectionList roots = goblinRoots();
  std::printf("Searching for goblins...\n");
  for (MItSelectionList root(roots); !root.isDone(); root.next()) {
    MObject node;
    root.getDependNode(node);
    collectMeshes(node, goblins, true, false);
  }
}

void GoblinUvCmd::findGeometry() {
  uvGeometry.clear();
  if (usesSelectedSurface()) {
    MObject surface;
    selection.getDependNode(selection.length() - 1, surface);
    uvGeometry.add(surface);
  } else if (arguments.length() == 2) {
    findGeometryBelow(arguments.asString(1));
  } else {
    findGeometryInScene();
  }
}

void GoblinUvCmd::findGeometryBelow(const MString& name) {
  std::printf("Searching for UVed geometry...\n");
  MSelectionList named;
  named.add(name);
  MObject root;
  if (!named.getDependNode(0, root)) {
    std::printf("Error: no object named %s.\n", name.asChar());
    return;
  }
  collectMeshes(root, uvGeometry, false, true);
}

void GoblinUvCmd::findGeometryInScene() {
  for (MItDag walk(MItDag::kDepthFirst, MFn::kMesh); !walk.isDone(); walk.next()) {
    MObject mesh = walk.currentItem();
    // In some hosts a walk starts at the root, whatever the filter.
    if (!isShownMesh(mesh) || isGoblin(mesh)) continue;
    const MString name = MFnDagNode(mesh).name();
    if (std::strstr(name.asChar(), "collision") == nullptr) uvGeometry.add(mesh);
  }
}

void GoblinUvCmd::sampleGoblin(const MObject& goblin, const GeometrySearch& search) const {
  int locked = 0;
  getIntAttr(goblin, "lockUVs", locked, true);
  if (locked != 0) {
    std::printf("Goblin %s locked; skipped.\n", getNodeName(goblin).asChar());
    return;
  }
  unsigned index = uvGeometry.length();
  int polygon = 0;
  search.findClosest(goblin, index, polygon);
  if (index >= uvGeometry.length()) {
    std::printf("No geometry found for goblin %s; skipped.\n", getNodeName(goblin).asChar());
    return;
  }
  sampleGoblinUVs(goblin, uvGeometry, index, polygon);
}

}  // namespace morvane
