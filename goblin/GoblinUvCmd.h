#ifndef MORVANE_GOBLIN_GOBLINUVCMD_H_
#define MORVANE_GOBLIN_GOBLINUVCMD_H_

#include <maya/MArgList.h>
#include <maya/MPxCommand.h>
#include <maya/MSelectionList.h>
#include <maya/MStatus.h>

namespace morvane {

class GeometrySearch;

// `goblin_uv [-s | root | goblinRoot uvRoot]`: gives every unlocked goblin the texture coordinates
// of the geometry under it. Not undoable.
class GoblinUvCmd : public MPxCommand {
 public:
  static void* creator();

  ~GoblinUvCmd() override = default;
  MStatus doIt(const MArgList& args) override;
  MStatus undoIt() override;
  MStatus redoIt() override;
  bool isUndoable() const override;

  MSelectionList selection;
  MArgList arguments;
  MSelectionList goblins;     // found by the last run
  MSelectionList uvGeometry;  // candidate geometry of the last run

 private:
  // With "-s" the last selected object is the geometry; the flag counts only with a selection.
  bool usesSelectedSurface() const;
  MSelectionList goblinRoots() const;
  void findGoblins();
  void findGeometry();
  void findGeometryBelow(const MString& name);
  void findGeometryInScene();
  void sampleGoblin(const MObject& goblin, const GeometrySearch& search) const;
};

}  // namespace morvane

#endif  // MORVANE_GOBLIN_GOBLINUVCMD_H_
