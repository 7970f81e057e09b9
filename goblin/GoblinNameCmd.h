#ifndef MORVANE_GOBLIN_GOBLINNAMECMD_H_
#define MORVANE_GOBLIN_GOBLINNAMECMD_H_

#include <maya/MArgList.h>
#include <maya/MPxCommand.h>
#include <maya/MSelectionList.h>
#include <maya/MStatus.h>

namespace morvane {

// `goblin_name [name]`: gives every mesh below the selection the goblin name (none: the meshes
// become ordinary geometry again) and unlocks its UVs. Not undoable.
class GoblinNameCmd : public MPxCommand {
 public:
  static void* creator();

  ~GoblinNameCmd() override = default;
  MStatus doIt(const MArgList& args) override;
  MStatus undoIt() override;
  MStatus redoIt() override;
  bool isUndoable() const override;

  MSelectionList selection;
  MArgList arguments;
};

}  // namespace morvane

#endif  // MORVANE_GOBLIN_GOBLINNAMECMD_H_
