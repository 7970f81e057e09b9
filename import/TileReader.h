#ifndef MORVANE_IMPORT_TILEREADER_H_
#define MORVANE_IMPORT_TILEREADER_H_

#include <maya/MFileObject.h>
#include <maya/MPxFileTranslator.h>
#include <maya/MStatus.h>

namespace morvane {

// Applies a PSD file (or a TGA, which holds no goblins) to the one selected tile. It gives the tile
// a texture network for the file, records the path in the tile shape's `psdFileName`, and makes the
// goblins of the layer "GoblinGeometry" below the tile. Anything but an import is refused.
//
// A call that stops early leaves in the scene what it did before. The result is that of the last
// mesh made.
MStatus readTile(const MFileObject& file, MPxFileTranslator::FileAccessMode mode);

}  // namespace morvane

#endif  // MORVANE_IMPORT_TILEREADER_H_
