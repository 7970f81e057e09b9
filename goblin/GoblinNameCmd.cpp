#include "goblin/GoblinNameCmd.h"

#include <maya/MGlobal.h>
#include <maya/MItSelectionList.h>
#include <maya/MString.h>

#include <cstdio>
#include <new>

#include "goblin/GoblinSearch.h"
#include "tile/SceneAttributes.h"

namespace morvane {

void* GoblinNameCmd::creator() {
  return new (std::nothrow) GoblinNameCmd;
}

MStatus GoblinNameCmd::doIt(const MArgList& args) {
  arguments = args;
  MGlobal::getActiveSelectionList(selection);
  redoIt();
  return MStatus::kSuccess;
}

MStatus GoblinNameCmd::undoIt() {
  return MStatus::kSuccess;
}

MStatus GoblinNameCmd::redoIt() {
  std::printf("---------- begin goblin_name (v1.0) ----------\n");
  MSelectionList meshes;
  for (MItSelectionList item(selection); !item.isDone(); item.next()) {
    MObject node;
    item.getDependNode(node);
    collectMeshes(node, meshes, true, true);
  }
  MString name;
  if (arguments.length() > 0) name = arguments.asString(0);
  std::printf("Found %u meshes:\n", meshes.length());
  printMeshList(meshes);
  for (unsigned i = 0; i < meshes.length(); ++i) {
    MObject mesh;
    meshes.getDependNode(i, mesh);
    setIntAttr(mesh, "lockUVs", 0, true, true);
    setStringAttr(mesh, "goblinName", name, true);
  }
  return MStatus::kSuccess;
}

bool GoblinNameCmd::isUndoable() const {
  return false;
}

}  // namespace morvane
