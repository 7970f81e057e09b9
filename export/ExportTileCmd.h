#ifndef MORVANE_EXPORT_EXPORTTILECMD_H_
#define MORVANE_EXPORT_EXPORTTILECMD_H_

#include <maya/MArgList.h>
#include <maya/MDagPath.h>
#include <maya/MObject.h>
#include <maya/MPxCommand.h>
#include <maya/MStatus.h>

namespace morvane {

// The command `exportTile`: writes the goblins below every selected tile into the layer
// "GoblinGeometry" of the tile's texture file (of a PSD file beside it when the texture is not a
// PSD), in the tagged layout. It takes no arguments, changes nothing in the scene, and tells of
// failures in the message log only.
class ExportTileCmd : public MPxCommand {
 public:
  // Exports the selection at once: the constructor does all of it.
  ExportTileCmd();
  ~ExportTileCmd() override = default;

  static void* creator();

  MStatus doIt(const MArgList& arguments) override;
  MStatus undoIt() override;
  MStatus redoIt() override;
  bool isUndoable() const override;
};

// Exports one tile: the instance at the path, or the first instance of a node. False after any
// failure; each is logged, and the file is then as it was.
bool exportTileAt(MDagPath tile);
bool exportTileNode(MObject node);

}  // namespace morvane

#endif  // MORVANE_EXPORT_EXPORTTILECMD_H_
