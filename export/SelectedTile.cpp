#include "export/SelectedTile.h"

#include <maya/MGlobal.h>
#include <maya/MSelectionList.h>

#include <cstdio>

#include "tile/SceneAttributes.h"

namespace morvane {

bool getSelectedTile(const TileRequest& request, MPxFileTranslator::FileAccessMode mode,
                     MObject& tile, MDagPath& path) {
  MSelectionList selection;
  MGlobal::getActiveSelectionList(selection);
  if (mode != request.mode || selection.length() != 1) {
    std::printf("%s\n", request.selectOne);
    return false;
  }
  selection.getDependNode(0, tile);
  if (!tile.hasFn(MFn::kTransform)) {
    std::printf("%s (%s): %s\n", getNodeName(tile).asChar(), tile.apiTypeStr(), request.onlyTiles);
    return false;
  }
  selection.getDagPath(0, path);
  return true;
}

MStatus failTranslation(const char* message) {
  std::fputs(message, stdout);
  return MStatus::kFailure;
}

}  // namespace morvane
