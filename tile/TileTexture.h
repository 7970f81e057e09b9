#ifndef MORVANE_TILE_TILETEXTURE_H_
#define MORVANE_TILE_TILETEXTURE_H_

#include <string>

#include "psd/PsdDocument.h"
#include "util/FileIdentity.h"
#include "util/Status.h"

// The file that a tile's goblins go into.
namespace morvane {

// The texture itself when its name ends in ".psd", in any case; else the PSD file of its name
// beside it.
std::string tileFileOf(const std::string& texture);

// What stands at a path where an export would write.
struct ExistingFile {
  FileIdentity identity;  // not known when there is none
  Status loaded;          // why it does not load
  std::string picture;    // what shows that a person painted it; empty: an export may have made it
};
ExistingFile lookAt(const std::string& file);

// Why an export must not replace the file that tileFileOf() gives for a texture of another kind: it
// holds what no export writes, so somebody made it ("picture (it has the layer "a"), which an
// export of b.tga would replace; ..."). Empty when the export may replace it, when there is no
// file, and for a PSD texture. `found` becomes the identity of the file that was looked at; unknown
// when there is none.
std::string whyNotReplaced(const std::string& texture, FileIdentity& found);

// Removes earlier goblins from a texture. kUnsupported when the bottom layer has the name of the
// goblins' layer: that layer always stays, and readers would take it for the goblins.
Status removeGoblins(PsdDocument& document);

}  // namespace morvane

#endif  // MORVANE_TILE_TILETEXTURE_H_
