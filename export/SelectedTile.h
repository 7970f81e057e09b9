#ifndef MORVANE_EXPORT_SELECTEDTILE_H_
#define MORVANE_EXPORT_SELECTEDTILE_H_

#include <maya/MDagPath.h>
#include <maya/MObject.h>
#include <maya/MPxFileTranslator.h>
#include <maya/MStatus.h>

namespace morvane {

// What reading and writing with the translator need from the caller. What is missing is reported.
struct TileRequest {
  MPxFileTranslator::FileAccessMode mode;
  const char* selectOne;  // a whole line
  const char* onlyTiles;  // follows the node's name and type
};

// The selected tile. False, after a message on standard output, for another access mode, and when
// the selection is not exactly one transform.
bool getSelectedTile(const TileRequest& request, MPxFileTranslator::FileAccessMode mode,
                     MObject& tile, MDagPath& path);

// Writes a message to standard output and gives the status that goes with it.
MStatus failTranslation(const char* message);

}  // namespace morvane

#endif  // MORVANE_EXPORT_SELECTEDTILE_H_
