#include "export/ExportTileCmd.h"

#include <maya/MDagPath.h>
#include <maya/MGlobal.h>
#include <maya/MSelectionList.h>

#include <new>
#include <string>

#include "psd/PsdDocument.h"
#include "tile/MessageLog.h"
#include "tile/SaveFailure.h"
#include "tile/TileExport.h"
#include "tile/TileLines.h"
#include "tile/TileMessages.h"

namespace morvane {
namespace {

// Replaces only the file that was loaded, or that was looked at before the goblins were gathered.
bool saveTile(const TileExport& tile, TileMessages& messages) {
  PsdReplacement replacement;
  if (tile.document.path == nullptr || tile.file != tile.document.path.get())
    replacement.expected = &tile.existing;
  Status status;
  tile.document.save(tile.file.c_str(), &status, &replacement);
  if (!status.ok()) return messages.fail(kSaveFailed, saveFailureLine(tile.file, status));
  if (replacement.otherNames != 0) {
    const bool isOne = replacement.otherNames == 1;
    messages.warn(tile.file + ": " + std::to_string(replacement.otherNames) +
                  (isOne ? " more name (a hard link) of the file keeps"
                         : " more names (hard links) of the file keep") +
                  " the old content");
  }
  return true;
}

}  // namespace

bool exportTileNode(MObject node) {
  MDagPath tile;
  SpokenMessages messages;
  return MDagPath::getAPathTo(node, tile) == MStatus::kSuccess ? exportTileAt(tile)
                                                               : messages.fail(kNoDagPath);
}

bool exportTileAt(MDagPath tile) {
  SpokenMessages messages;
  TileExport result;
  return prepareTileExport(tile, messages, result) && saveTile(result, messages);
}

ExportTileCmd::ExportTileCmd() {
  MSelectionList selection;
  MGlobal::getActiveSelectionList(selection);
  for (unsigned int i = 0; i < selection.length(); ++i) {
    MObject node;
    if (selection.getDependNode(i, node) != MStatus::kSuccess) continue;
    MDagPath tile;
    const bool isNamed = selection.getDagPath(i, tile) == MStatus::kSuccess;
    if (!(isNamed ? exportTileAt(tile) : exportTileNode(node)))
      logf(1, "*** Error exporting tile %d\n", static_cast<int>(i));
  }
}

void* ExportTileCmd::creator() {
  return new (std::nothrow) ExportTileCmd;
}

MStatus ExportTileCmd::doIt(const MArgList&) {
  return MStatus::kSuccess;
}

MStatus ExportTileCmd::undoIt() {
  return MStatus::kSuccess;
}

MStatus ExportTileCmd::redoIt() {
  return MStatus::kSuccess;
}

bool ExportTileCmd::isUndoable() const {
  return false;
}

}  // namespace morvane
