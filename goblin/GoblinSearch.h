#ifndef MORVANE_GOBLIN_GOBLINSEARCH_H_
#define MORVANE_GOBLIN_GOBLINSEARCH_H_

#include <maya/MObject.h>
#include <maya/MSelectionList.h>
#include <maya/MStatus.h>

// Tells goblins from other meshes and gathers both. A goblin is a mesh whose shape carries a text
// attribute `goblinName` that is not empty.
namespace morvane {

bool isGoblin(const MObject& mesh);

// Appends the meshes at and below `root`, depth first, to `found`, announcing each on standard
// output. A root that is not a DAG node is reported there and adds nothing. Always a success.
MStatus collectMeshes(const MObject& root, MSelectionList& found, bool wantGoblins,
                      bool wantOthers);

// One line a mesh on standard output: type, name and goblin name. Always a success.
MStatus printMeshList(const MSelectionList& list);

}  // namespace morvane

#endif  // MORVANE_GOBLIN_GOBLINSEARCH_H_
